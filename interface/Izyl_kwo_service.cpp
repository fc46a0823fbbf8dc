#include "interface/Izyl_kwo_service.h"

const android::String16 Izyl_kwo_service::descriptor("zyl.kwo.Izyl_kwo_service");

const android::String16& Izyl_kwo_service::getInterfaceDescriptor() const {
    return descriptor;
}
