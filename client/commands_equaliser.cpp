// The graphic equaliser.

#include <cmath>
#include <cstdio>

#include "client/command.h"
#include "client/parse.h"
#include "client/report.h"

namespace {

// One column a decibel, the neutral gain in the middle of what the service accepts.
constexpr int kLowestColumn = -16;
constexpr int kHighestColumn = 19;

std::string bar(double decibels) {
    const int level = static_cast<int>(std::lround(decibels));
    std::string columns;
    for (int column = kLowestColumn; column <= kHighestColumn; ++column) {
        const bool filled = (column > 0 && column <= level) || (column < 0 && column >= level);
        columns += column == 0 ? '|' : filled ? '#' : '.';
    }
    return columns;
}

ExitStatus show(Izyl_kwo_service& service) {
    int32_t enabled = 0;
    ExitStatus status = reportResult("geq", service.getGEQEnable(&enabled));
    if (status != kDone) return status;
    uint16_t gains[kGEQBandCount] = {};
    status = reportResult("geq", service.getGEQGainAll(gains));
    if (status != kDone) return status;
    printf("equaliser      %s\n", enabled != 0 ? "on" : "off");
    for (int band = 0; band < kGEQBandCount; ++band) {
        const double decibels =
                gains[band] == 0 ? kLowestColumn : 20 * std::log10(gains[band] / kNeutralGain);
        printf("band %d  %5d  %+5.1f dB  %s\n", band, gains[band], decibels, bar(decibels).c_str());
    }
    return kDone;
}

// The service keeps gains only while the equaliser is on and says so only in its log.
ExitStatus requireSwitchedOn(Izyl_kwo_service& service) {
    int32_t enabled = 0;
    const ExitStatus status = reportResult("geq", service.getGEQEnable(&enabled));
    if (status != kDone || enabled != 0) return status;
    fprintf(stderr,
            "kwoctl: geq: the equaliser is off, gains are not kept; first: kwoctl geq on\n");
    return kRefused;
}

ExitStatus setSwitch(Izyl_kwo_service& service, bool on) {
    const ExitStatus status = reportResult("geq", service.setGEQEnable(on ? 1 : 0));
    if (status != kDone) return status;
    int32_t enabled = 0;
    if (on && service.getGEQEnable(&enabled) == kZylKwoOk && enabled == 0) {
        fprintf(stderr, "kwoctl: geq: the effect is off; first: kwoctl enable\n");
        return kRefused;
    }
    return show(service);
}

ExitStatus setOne(Izyl_kwo_service& service, const Arguments& arguments) {
    const auto band = parseNumber(arguments[1]);
    if (!band) return reportUsage("geq", arguments[1], "a band: 0 to 9");
    const auto gain = parseGain(arguments[2]);
    if (!gain) return reportUsage("geq", arguments[2], "a gain: 725 to 32767, or like +3dB");
    ExitStatus status = requireSwitchedOn(service);
    if (status == kDone) status = reportResult("geq", service.setGEQGain(*band, *gain));
    return status == kDone ? show(service) : status;
}

ExitStatus setAll(Izyl_kwo_service& service, const uint16_t gains[kGEQBandCount]) {
    ExitStatus status = requireSwitchedOn(service);
    if (status == kDone) status = reportResult("geq", service.setGEQGainAll(gains));
    return status == kDone ? show(service) : status;
}

ExitStatus setEach(Izyl_kwo_service& service, const Arguments& arguments) {
    uint16_t gains[kGEQBandCount];
    for (int band = 0; band < kGEQBandCount; ++band) {
        const std::string& text = arguments[static_cast<size_t>(band) + 1];
        const auto gain = parseGain(text);
        if (!gain) return reportUsage("geq", text, "a gain: 725 to 32767, or like +3dB");
        gains[band] = *gain;
    }
    return setAll(service, gains);
}

ExitStatus setFlat(Izyl_kwo_service& service) {
    uint16_t gains[kGEQBandCount];
    for (uint16_t& gain : gains) gain = static_cast<uint16_t>(kNeutralGain);
    return setAll(service, gains);
}

ExitStatus geq(Izyl_kwo_service& service, const Arguments& arguments) {
    if (arguments.empty()) return show(service);
    const std::string& verb = arguments[0];
    const auto on = parseSwitch(verb);
    if (on && arguments.size() == 1) return setSwitch(service, *on);
    if (verb == "flat" && arguments.size() == 1) return setFlat(service);
    if (verb == "set" && arguments.size() == 3) return setOne(service, arguments);
    if (verb == "set-all" && arguments.size() == 1 + kGEQBandCount) {
        return setEach(service, arguments);
    }
    return reportUsage("geq", verb, "on, off, flat, set BAND GAIN or set-all with ten GAINs");
}

}  // namespace

const std::vector<Command> kEqualiserCommands = {
        {"geq", "", "show the equaliser", 0, 1 + kGEQBandCount, geq},
        {"", "on|off|flat", "switch it, or set all bands to neutral", 0, 0, nullptr},
        {"", "set BAND GAIN", "set one band, 0 to 9", 0, 0, nullptr},
        {"", "set-all GAIN...", "set the ten bands", 0, 0, nullptr},
};
