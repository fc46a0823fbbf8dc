#include "interface/Izyl_kwo_service.h"

#include "interface/Bp_zyl_kwo_service.h"

const android::String16 Izyl_kwo_service::descriptor("zyl.kwo.Izyl_kwo_service");

android::sp<Izyl_kwo_service> Izyl_kwo_service::asInterface(
        const android::sp<android::IBinder>& binder) {
    if (binder == nullptr) return nullptr;
    const android::sp<android::IInterface> local = binder->queryLocalInterface(descriptor);
    if (local != nullptr) return static_cast<Izyl_kwo_service*>(local.get());
    return new Bp_zyl_kwo_service(binder);
}

const android::String16& Izyl_kwo_service::getInterfaceDescriptor() const {
    return descriptor;
}
