// The graphic equaliser.

#include <cmath>

#include "client/changes.h"
#include "client/command.h"
#include "client/equaliser.h"
#include "client/parse.h"

namespace {

// One column a decibel, the neutral gain in the middle of what the service accepts.
constexpr int kLowestColumn = -16;
constexpr int kHighestColumn = 19;
constexpr char kBoosted[] = "\033[33m";
constexpr char kCut[] = "\033[36m";
constexpr char kPlain[] = "\033[0m";

std::string bar(double decibels, bool colour) {
    const int level = static_cast<int>(std::lround(decibels));
    std::string columns;
    for (int column = kLowestColumn; column <= kHighestColumn; ++column) {
        const bool filled = (column > 0 && column <= level) || (column < 0 && column >= level);
        columns += column == 0 ? '|' : filled ? '#' : '.';
    }
    if (!colour) return columns;
    return (level > 0 ? kBoosted : level < 0 ? kCut : "") + columns + kPlain;
}

ExitStatus showEqualiser(Session& session) {
    Value enabled;
    Value gains;
    const Property& gainsRow = property("gains");
    const Property& switchRow = property("geq");
    ExitStatus status = readValue(session, switchRow, &enabled);
    if (status == kDone) status = readValue(session, gainsRow, &gains);
    if (status != kDone) return status;
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, {{&switchRow, enabled}, {&gainsRow, gains}});
        json.close().print();
        return kDone;
    }
    printValue(switchRow, enabled);
    printGains(session, gains);
    return kDone;
}

ExitStatus setAndShowGains(Session& session, const Arguments& words) {
    const Property& gains = property("gains");
    Value value;
    ExitStatus status = parseValue(gains, words, &value);
    if (status == kDone) status = applyChanges(session, {{&gains, value}});
    return status == kDone ? showEqualiser(session) : status;
}

Property bandProperty(int32_t band) {
    Property one = property("gains");
    one.count = 1;
    one.selector = band;
    one.get = [](Izyl_kwo_service& service, int32_t selector, Value* value) {
        uint16_t gain = 0;
        const int32_t result = service.getGEQGain(selector, &gain);
        value->numbers = {static_cast<double>(gain)};
        return result;
    };
    one.set = [](Izyl_kwo_service& service, int32_t selector, const Value& value) {
        return service.setGEQGain(selector, static_cast<uint16_t>(value.numbers[0]));
    };
    return one;
}

// By itself: the other bands are not sent again.
ExitStatus setBand(Session& session, const std::string& bandText, const std::string& gainText) {
    int32_t band = 0;
    if (!parseNumber(bandText, &band)) return reportUsage("geq", bandText, "a band: 0 to 9");
    if (band < 0 || band >= kGEQBandCount) {
        return reportRefusal("geq", "there is no band " + bandText + "; bands are 0 to 9");
    }
    const Property one = bandProperty(band);
    Value gain;
    ExitStatus status = parseValue(one, {gainText}, &gain);
    if (status == kDone) status = applyChanges(session, {{&one, gain}});
    return status == kDone ? showEqualiser(session) : status;
}

ExitStatus geq(Session& session, const Arguments& arguments) {
    if (arguments.empty()) return showEqualiser(session);
    const std::string& verb = arguments[0];
    bool on = false;
    if (arguments.size() == 1 && (verb == "toggle" || parseSwitch(verb, &on))) {
        const ExitStatus status = switchTo(session, property("geq"), verb);
        return status == kDone ? showEqualiser(session) : status;
    }
    if (verb == "flat" && arguments.size() == 1) {
        return setAndShowGains(session, Arguments(kGEQBandCount, "0dB"));
    }
    if (verb == "set" && arguments.size() == 3) {
        return setBand(session, arguments[1], arguments[2]);
    }
    if (verb == "set-all" && arguments.size() == 1 + kGEQBandCount) {
        return setAndShowGains(session, Arguments(arguments.begin() + 1, arguments.end()));
    }
    return reportUsage("geq", verb,
                       "on, off, toggle, flat, set BAND GAIN or set-all with ten GAINs");
}

constexpr char kDetails[] =
        "GAIN is 725 to 32767, where 4096 is neutral, or decibels such as +3dB or -1.5dB. Gains "
        "are\n"
        "kept only while the equaliser is on, and it can be switched only while the effect is "
        "on.\n";

}  // namespace

void printGains(const Session& session, const Value& gains) {
    for (size_t band = 0; band < gains.numbers.size(); ++band) {
        const double decibels = decibelsOf(gains.numbers[band]);
        printf("band %zu  %5.0f  %+5.1f dB", band, gains.numbers[band], decibels);
        if (session.options.bars) {
            printf("  %s", bar(decibels, session.options.colour).c_str());
        }
        printf("\n");
    }
}

double decibelsOf(double gain) {
    return gain == 0 ? kLowestColumn : 20 * std::log10(gain / kNeutralGain);
}

const std::vector<Command> kEqualiserCommands = {
        {"geq", "[on|off|toggle|flat]", "show or switch the equaliser, or set it to neutral",
         kDetails, 0, 1 + kGEQBandCount, Command::kService, "--json", geq},
        {"", "set BAND GAIN", "set one band, 0 to 9", "", 0, 0, Command::kService, "", nullptr},
        {"", "set-all GAIN...", "set the ten bands", "", 0, 0, Command::kService, "", nullptr},
};
