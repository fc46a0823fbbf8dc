// What clients share through the service, and the DSP's blocks.

#include <cerrno>
#include <cstdio>
#include <memory>

#include "client/command.h"
#include "client/parse.h"
#include "client/report.h"
#include "client/shared_region.h"

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

ExitStatus showRoute(Izyl_kwo_service& service) {
    int32_t route = 0;
    const ExitStatus status = reportResult("route", service.getActiveRoute(&route));
    if (status != kDone) return status;
    const bool named = route >= 0 && route < 3;
    printf("active route   %s\n", named ? kRouteNames[route] : std::to_string(route).c_str());
    return kDone;
}

ExitStatus route(Izyl_kwo_service& service, const Arguments& arguments) {
    if (!arguments.empty()) {
        const auto route = parseRoute(arguments[0]);
        if (!route) return reportUsage("route", arguments[0], "a route name or number");
        const ExitStatus status = reportResult("route", service.setActiveRoute(*route));
        if (status != kDone) return status;
    }
    return showRoute(service);
}

ExitStatus mask(Izyl_kwo_service& service, const Arguments& arguments) {
    int32_t first = 0;
    int32_t last = 2;
    if (!arguments.empty()) {
        const auto route = parseRoute(arguments[0]);
        if (!route)
            return reportUsage("mask", arguments[0], "a route: speaker, lineout, bluetooth");
        first = last = *route;
    }
    for (int32_t route = first; route <= last; ++route) {
        uint32_t bits = 0;
        const ExitStatus status = reportResult("mask", service.getRouteMask(route, &bits));
        if (status != kDone) return status;
        printf("mask           %-9s 0x%08x\n", kRouteNames[route], bits);
    }
    return kDone;
}

ExitStatus levels(Izyl_kwo_service& service, const Arguments& arguments) {
    int32_t values[kDbLevelCount] = {};
    if (!arguments.empty()) {
        if (arguments.size() != kDbLevelCount) {
            return reportUsage("levels", arguments[0], "the first of ten numbers");
        }
        for (size_t i = 0; i < arguments.size(); ++i) {
            const auto value = parseNumber(arguments[i]);
            if (!value) return reportUsage("levels", arguments[i], "a number");
            values[i] = *value;
        }
        const ExitStatus status = reportResult("levels", service.setDbGain(values));
        if (status != kDone) return status;
    }
    const ExitStatus status = reportResult("levels", service.getDbLevels(values));
    if (status != kDone) return status;
    printf("levels        ");
    for (int32_t value : values) printf(" %d", value);
    printf("\n");
    return kDone;
}

ExitStatus version(Izyl_kwo_service& service, const Arguments&) {
    char text[kVersionStringSize] = {};
    int32_t length = sizeof(text);
    ExitStatus status = reportResult("version", service.getVersionString(text, &length));
    if (status != kDone) return status;
    PlatformInfoRecord record = {};
    status = reportResult("version", service.getPlatformInfo(&record));
    if (status != kDone) return status;
    printf("version        %s\n", text);
    printf("platform       %.*s, device type %d\n", static_cast<int>(sizeof(record.version)),
           record.version, record.platformType);
    return kDone;
}

ExitStatus reload(Izyl_kwo_service& service, const Arguments& arguments) {
    bool forced = false;
    if (!arguments.empty()) {
        const auto on = parseSwitch(arguments[0]);
        if (!on) return reportUsage("reload", arguments[0], "on or off");
        forced = *on;
    }
    const ExitStatus status = reportResult("reload", service.setReloadFlag(forced));
    if (status == kDone) printf("reloaded       forced mode %s\n", forced ? "on" : "off");
    return status;
}

ExitStatus fetch(Izyl_kwo_service& service, SharedRegion& region, int32_t number,
                 const std::string& name) {
    const ExitStatus status = reportResult("block fetch", service.fetchCacheBlock(number));
    if (status != kDone) return status;
    File file(fopen(name.c_str(), "we"), fclose);
    if (file == nullptr) return reportFile(name);
    const size_t size = region.blockSize();
    const bool written = fwrite(region.bytes(), 1, size, file.get()) == size;
    if (!written || fclose(file.release()) != 0) return reportFile(name);
    printf("block          %d, %zu bytes to %s\n", number, size, name.c_str());
    return kDone;
}

ExitStatus push(Izyl_kwo_service& service, SharedRegion& region, int32_t number,
                const std::string& name) {
    const File file(fopen(name.c_str(), "re"), fclose);
    if (file == nullptr) return reportFile(name);
    const size_t size = region.blockSize();
    const bool read = fread(region.bytes(), 1, size, file.get()) == size;
    if (!read || fgetc(file.get()) != EOF) {
        fprintf(stderr, "kwoctl: %s: a block has %zu bytes, this file has %s\n", name.c_str(), size,
                read ? "more" : "fewer");
        return kRefused;
    }
    const ExitStatus status = reportResult("block push", service.pushCacheBlock(number));
    if (status == kDone)
        printf("block          %d, %zu bytes from %s\n", number, size, name.c_str());
    return status;
}

ExitStatus block(Izyl_kwo_service& service, const Arguments& arguments) {
    const bool fetching = arguments[0] == "fetch";
    if (!fetching && arguments[0] != "push") {
        return reportUsage("block", arguments[0], "fetch or push");
    }
    const auto number = parseRoute(arguments[1]);
    // The service has an answer for other blocks too, but never one that anyone wants.
    if (!number || *number < 0 || *number > 2) {
        return reportUsage("block", arguments[1], "a block: 0 to 2, or the name of its route");
    }
    SharedRegion region;
    const ExitStatus status = reportResult("block", region.share(service));
    if (status != kDone) return status;
    return (fetching ? fetch : push)(service, region, *number, arguments[2]);
}

}  // namespace

const std::vector<Command> kBlockCommands = {
        {"route", "[ROUTE]", "show or declare the active route", 0, 1, route},
        {"mask", "[ROUTE]", "show the output devices of each route", 0, 1, mask},
        {"levels", "[LEVEL...]", "show or set the ten shared levels", 0, kDbLevelCount, levels},
        {"version", "", "show all versions", 0, 0, version},
        {"reload", "[on|off]", "rebuild all blocks, with or without forced mode", 0, 1, reload},
        {"block", "fetch|push N FILE", "copy a block of the DSP to or from a file", 3, 3, block},
};
