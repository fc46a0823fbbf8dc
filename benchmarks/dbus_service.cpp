// zyl_dbus_service ADDRESS: on the bus at that address, the least that can answer zyl_dbus_bench.
// It has no settings, no lock and no checks, and leaves the caller's privileges unexamined.

#include <errno.h>

#include <cstdio>
#include <cstring>

#include "benchmarks/dbus.h"

namespace {

int getStereoMode(sd_bus_message* call, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(call, "ii", 0, kStereoMode);
}

const sd_bus_vtable kMethods[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD(kMethodName, "", "ii", getStereoMode, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
};

// Returns only with an error.
int serve(const char* address) {
    sd_bus* bus = connectTo(address);
    if (bus == nullptr) return -ENOTCONN;
    int result =
            sd_bus_add_object_vtable(bus, nullptr, kObjectPath, kInterfaceName, kMethods, nullptr);
    if (result >= 0) result = sd_bus_request_name(bus, kBusName, 0);
    while (result >= 0) {
        result = sd_bus_process(bus, nullptr);
        if (result == 0) result = sd_bus_wait(bus, UINT64_MAX);
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: zyl_dbus_service ADDRESS\n");
        return 2;
    }
    fprintf(stderr, "zyl_dbus_service: %s\n", strerror(-serve(argv[1])));
    return 1;
}
