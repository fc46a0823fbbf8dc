// The graphic equaliser.

#include <cmath>

#include "client/change.h"
#include "client/console.h"
#include "client/library/curve.h"
#include "client/library/files.h"
#include "client/library/parse.h"

namespace {

constexpr char kVerbs[] =
        "on, off, toggle, flat, set BAND GAIN, add BAND DECIBELS, set-all with ten GAINs, load "
        "FILE "
        "or save FILE";

Outcome showEqualiser(Session& session, const std::vector<std::string>& lost) {
    State state;
    Outcome outcome = readState(
            session,
            [](const Property& row) { return row.key == "geq" || row.kind == Property::kGains; },
            &state);
    if (!outcome.ok()) return outcome;
    printOverview(session, state, lost);
    return done();
}

Outcome changeAndShow(Session& session, const Property& property, const Arguments& words) {
    Value value;
    Outcome outcome = parseValue(property, words, &value);
    if (outcome.ok()) outcome = changeOne(session, property, value);
    return outcome.ok() ? showEqualiser(session, {}) : outcome;
}

Outcome parseBand(const std::string& text, int32_t* band) {
    int32_t number = 0;
    if (!parseNumber(text, &number) || number < 0 || number >= kGEQBandCount) {
        return wrongUsage("geq", text, format("a band: 0 to %d", kGEQBandCount - 1));
    }
    *band = number;
    return done();
}

// By itself: the other bands are not sent again.
Outcome setBand(Session& session, const Arguments& words) {
    int32_t band = 0;
    Outcome parsed = parseBand(words[1], &band);
    if (!parsed.ok()) return parsed;
    return changeAndShow(session, bandProperty(band), Arguments(words.begin() + 2, words.end()));
}

Outcome addToBand(Session& session, const Arguments& words) {
    int32_t band = 0;
    Outcome outcome = parseBand(words[1], &band);
    if (!outcome.ok()) return outcome;
    const std::string text = joinWords(Arguments(words.begin() + 2, words.end()));
    double decibels = 0;
    if (!parseDecibels(text, &decibels)) {
        return wrongUsage("geq", text, "what to add in decibels, such as +1.5 or -2dB");
    }
    Value gain;
    outcome = readValue(session, bandProperty(band), &gain);
    if (!outcome.ok()) return outcome;
    const double sum = gainOf(decibelsOf(gain.numbers[0]) + decibels);
    if (sum < kLowestGain || sum > kHighestGain) {
        outcome = wrongUsage("geq", "", "");
        outcome.why = format("%s %s makes %s, out of range; it takes a gain: %s",
                             nameOfBand(session.bands, static_cast<size_t>(band)).c_str(),
                             formatDecibels(decibels).c_str(),
                             formatDecibels(decibelsOf(sum)).c_str(), kGainRange);
        return outcome;
    }
    outcome = changeOne(session, bandProperty(band), Value(sum));
    return outcome.ok() ? showEqualiser(session, {}) : outcome;
}

Outcome load(Session& session, const std::string& file) {
    Wanted wanted;
    Outcome outcome = wantCurve(session, file, &wanted);
    if (outcome.ok()) outcome = change(session, wanted, nullptr);
    if (!outcome.ok() || session.options.dryRun) return outcome;
    return showEqualiser(session, wanted.lost);
}

Outcome save(Session& session, const std::string& file) {
    Value gains;
    Outcome outcome = readValue(session, property("gains"), &gains);
    const std::string text = formatCurve(gains.numbers, session.bands);
    if (outcome.ok()) outcome = writeFile(file, text.data(), text.size());
    if (!outcome.ok() || isStandardStream(file)) return outcome;
    if (session.options.json) return showEqualiser(session, {});
    printAbout(file, "gains          to " + file);
    return done();
}

Outcome switchEqualiser(Session& session, const std::string& word) {
    Value value;
    Outcome outcome = switchedValue(session, property("geq"), word, &value);
    if (outcome.ok()) outcome = changeOne(session, property("geq"), value);
    return outcome.ok() ? showEqualiser(session, {}) : outcome;
}

Outcome geq(Session& session, const Arguments& arguments) {
    if (arguments.empty()) return showEqualiser(session, {});
    const std::string verb = lowerCase(arguments[0]);
    const size_t count = arguments.size();
    bool on = false;
    if (count == 1 && (verb == "toggle" || parseSwitch(verb, &on))) {
        return switchEqualiser(session, verb);
    }
    if (verb == "flat" && count == 1) {
        return changeAndShow(session, property("gains"), Arguments(kGEQBandCount, "0dB"));
    }
    if (verb == "set" && count >= 3) return setBand(session, arguments);
    if (verb == "add" && count >= 3) return addToBand(session, arguments);
    if (verb == "set-all" && count > 1) {
        return changeAndShow(session, property("gains"),
                             Arguments(arguments.begin() + 1, arguments.end()));
    }
    if (verb == "load" && count == 2) return load(session, arguments[1]);
    if (verb == "save" && count == 2) return save(session, arguments[1]);
    return wrongUsage("geq", joinWords(arguments), kVerbs);
}

std::string details() {
    return std::string("GAIN is ") + kGainRange +
           ", where 4096 is neutral.\nA sign, a point or dB says decibels: +3, 0.5, 3dB; a plain "
           "integer is the raw value.\nGains are kept only while the equaliser is on, and it can "
           "be "
           "switched only while the\neffect is on.\n\n"
           "load reads ten gains in the order of the bands; or, when the centres of the bands are\n"
           "known, a line \"GraphicEQ: 25 -3.1; 40 2; ...\", or lines \"Filter 1: ON PK Fc 105 Hz\n"
           "Gain -2.5 dB Q 0.70\" (PK, LS, HS), both with \"Preamp: -6.5 dB\", which lowers all\n"
           "bands. Gains out of range are cut, and what is lost is printed. save writes ten\n"
           "gains that load reads back as they are.\n";
}

}  // namespace

const CommandTable& equaliserCommands() {
    static const CommandTable table = {
            command("geq", "[on|off|toggle|flat]",
                    "show or switch the equaliser, or set it to neutral", geq)
                    .takes(0, kAnyNumberOfArguments)
                    .with(Command::kDryRun)
                    .explained(details()),
            also("set BAND GAIN", "set one band, 0 to 9"),
            also("add BAND DECIBELS", "raise or lower one band"),
            also("set-all GAIN...", "set the ten bands"),
            also("load FILE", "set the bands after a curve"),
            also("save FILE", "write the bands' gains"),
    };
    return table;
}
