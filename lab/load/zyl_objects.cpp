// zyl_objects CODE...: calls the service with objects where words are expected. Each code is called
// with the service's own binder, one of the client's and a descriptor, at each place among eleven
// words, and with two descriptors in front. A line a call: code, object, words in front of it, the
// call's status.

#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "interface/Izyl_kwo_service.h"

using android::IBinder;
using android::Parcel;
using android::sp;

namespace {

constexpr int kWords = 11;

struct Objects {
    sp<IBinder> service;
    sp<IBinder> client;
    int descriptor;
};

void write(const Objects& objects, const char* kind, Parcel* data) {
    if (strcmp(kind, "service") == 0) data->writeStrongBinder(objects.service);
    if (strcmp(kind, "client") == 0) data->writeStrongBinder(objects.client);
    if (strncmp(kind, "descriptor", 10) == 0) data->writeDupFileDescriptor(objects.descriptor);
    if (strcmp(kind, "descriptors") == 0) data->writeDupFileDescriptor(objects.descriptor);
}

void callWith(const Objects& objects, uint32_t code, const char* kind, int before) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    for (int word = 0; word < kWords; ++word) {
        if (word == before) write(objects, kind, &data);
        data.writeInt32(1);
    }
    printf("%u %s %d %d\n", code, kind, before, objects.service->transact(code, data, &reply));
}

}  // namespace

int main(int argc, char** argv) {
    const Objects objects = {
            android::defaultServiceManager()->checkService(android::String16(kZylKwoServiceName)),
            new android::BBinder, memfd_create("object", MFD_CLOEXEC)};
    if (objects.service == nullptr || objects.descriptor < 0) {
        fputs("zyl_objects: no service, or no memory\n", stderr);
        return 1;
    }
    for (int i = 1; i < argc; ++i) {
        const auto code = static_cast<uint32_t>(atoi(argv[i]));
        for (const char* kind : {"service", "client", "descriptor"}) {
            for (int before = 0; before < kWords; ++before) {
                callWith(objects, code, kind, before);
            }
        }
        callWith(objects, code, "descriptors", 0);
    }
    return 0;
}
