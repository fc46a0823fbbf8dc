// What the service behind D-Bus and its client must agree on.

#ifndef ZYL_BENCH_DBUS_H
#define ZYL_BENCH_DBUS_H

#include <systemd/sd-bus.h>

#include <cstdint>

constexpr char kBusName[] = "zyl.kwo";
constexpr char kObjectPath[] = "/zyl/kwo";
constexpr char kInterfaceName[] = "zyl.kwo.Stereo";
constexpr char kMethodName[] = "GetStereoMode";
// The method always replies that it went well and this mode.
constexpr int32_t kStereoMode = 2;

// Connects to the bus at this address; null when it does not let one in.
inline sd_bus* connectTo(const char* address) {
    sd_bus* bus = nullptr;
    const bool connected = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address) >= 0 &&
                           sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
    return connected ? bus : nullptr;
}

#endif  // ZYL_BENCH_DBUS_H
