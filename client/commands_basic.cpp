// The effect as a whole, its routes and what the service knows about itself.

#include <cstdio>

#include "client/command.h"
#include "client/parse.h"
#include "client/report.h"

namespace {

// Shows what a getter says, or sets and then shows what holds.
ExitStatus showEnabled(Izyl_kwo_service& service) {
    int32_t enabled = 0;
    const ExitStatus status = reportResult("effect", service.getEnabled(&enabled));
    if (status == kDone) printf("effect         %s\n", enabled != 0 ? "on" : "off");
    return status;
}

ExitStatus showStereoMode(Izyl_kwo_service& service) {
    int32_t mode = 0;
    const ExitStatus status = reportResult("stereo mode", service.getStereoMode(&mode));
    if (status == kDone) printf("stereo mode    %d\n", mode);
    return status;
}

ExitStatus showTuning(Izyl_kwo_service& service, int32_t route) {
    int32_t tuning = 0;
    const ExitStatus status = reportResult("tuning", service.getTuning(route, &tuning));
    if (status == kDone) printf("tuning         %s %d\n", kRouteNames[route], tuning);
    return status;
}

ExitStatus status(Izyl_kwo_service& service, const Arguments&) {
    ExitStatus worst = showEnabled(service);
    if (showStereoMode(service) != kDone) worst = kRefused;
    for (int32_t route = 0; route < 3; ++route) {
        int32_t tuning = 0;
        // Devices without tuning numbers have none to show.
        if (service.getTuning(route, &tuning) == kZylKwoNotAvailable) break;
        if (showTuning(service, route) != kDone) worst = kRefused;
    }
    return worst;
}

ExitStatus setEnabled(Izyl_kwo_service& service, bool enabled) {
    const ExitStatus status =
            reportResult(enabled ? "enable" : "disable", service.setEnabled(enabled ? 1 : 0));
    return status == kDone ? showEnabled(service) : status;
}

ExitStatus enable(Izyl_kwo_service& service, const Arguments&) {
    return setEnabled(service, true);
}

ExitStatus disable(Izyl_kwo_service& service, const Arguments&) {
    return setEnabled(service, false);
}

ExitStatus stereo(Izyl_kwo_service& service, const Arguments& arguments) {
    if (!arguments.empty()) {
        const auto mode = parseNumber(arguments[0]);
        if (!mode) return reportUsage("stereo", arguments[0], "a stereo mode: 1, 2 or 3");
        const ExitStatus status = reportResult("stereo", service.setStereoMode(*mode));
        if (status != kDone) return status;
    }
    return showStereoMode(service);
}

ExitStatus tuning(Izyl_kwo_service& service, const Arguments& arguments) {
    const auto route = parseRoute(arguments[0]);
    if (!route || *route < 0 || *route > 2) {
        return reportUsage("tuning", arguments[0], "a route: speaker, lineout or bluetooth");
    }
    if (arguments.size() == 2) {
        const auto number = parseNumber(arguments[1]);
        if (!number) return reportUsage("tuning", arguments[1], "a tuning number");
        const ExitStatus status = reportResult("tuning", service.setTuning(*route, *number));
        if (status != kDone) return status;
    }
    return showTuning(service, *route);
}

}  // namespace

const std::vector<Command> kBasicCommands = {
        {"status", "", "show the effect, the stereo mode and the tunings", 0, 0, status},
        {"enable", "", "switch the effect on", 0, 0, enable},
        {"disable", "", "switch the effect off", 0, 0, disable},
        {"stereo", "[1|2|3]", "show or set the stereo mode", 0, 1, stereo},
        {"tuning", "ROUTE [N]", "show or pick a route's tuning", 1, 2, tuning},
};
