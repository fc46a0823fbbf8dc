#include "client/library/outcome.h"

#include "client/library/parse.h"
#include "interface/Izyl_kwo_service.h"

namespace {

struct Meaning {
    int32_t result;
    const char* why;
    const char* remedy;  // or empty
};

// Values are checked before they are sent, so the first can only be the DSP's.
constexpr Meaning kMeanings[] = {
        {kZylKwoBadArgument, "the DSP refused it", "is /dev/zyl_quorin there? see kwoctl verify"},
        {kZylKwoTuningNotLoadable, "there is no such tuning file",
         "they are in /etc/zyl or /data/misc/zyl"},
        {kZylKwoUploadFailed, "the DSP did not take or give the data", "is /dev/zyl_quorin there?"},
        {kZylKwoTuningTooShort, "the tuning file is too short", "replace it by a whole one"},
        {kZylKwoNoMemory, "there is not enough memory", "restart zyl_kwo_service"},
        {kZylKwoUnsupported, "this is not supported", ""},
        {kZylKwoNotAvailable, "not available on this device's settings generation",
         "see kwoctl get generation"},
        {kZylKwoNoSharedRegion, "the shared memory is missing or too small",
         "another client may have replaced it, try again"},
        {kZylKwoConversionFailed, "the tuning data cannot be converted", ""},
        {kZylKwoConversionFailed5, "the tuning data cannot be converted, library code -5", ""},
        {kZylKwoConversionFailed6, "the tuning data cannot be converted, library code -6", ""},
        {kZylKwoConversionFailed7, "the tuning data cannot be converted, library code -7", ""},
        {kZylKwoConversionFailed8, "the tuning data cannot be converted, library code -8", ""},
        {kZylKwoConversionFailed9, "the tuning data cannot be converted, library code -9", ""},
        {kZylKwoServiceGone, "the service went away during the call",
         "start it with: start zyl_kwo_service"},
        {kZylKwoCallRefused, "the service speaks another interface",
         "use the kwoctl of its release"},
        {kZylKwoCallFailed, "the service could not carry it out", "logcat says why"},
};

}  // namespace

Outcome done() {
    return Outcome();
}

Outcome resultOf(const std::string& what, int32_t result) {
    if (result == kZylKwoOk) return done();
    Outcome outcome = refusal(what, format("the service refused (%d)", result));
    for (const Meaning& meaning : kMeanings) {
        if (meaning.result != result) continue;
        outcome = refusal(what, format("%s (%d)", meaning.why, result), meaning.remedy);
    }
    outcome.result = result;
    if (result == kZylKwoServiceGone) outcome.status = kNoService;
    return outcome;
}

Outcome wrongUsage(const std::string& what, const std::string& given, const std::string& expected) {
    Outcome outcome = refusal(what, "'" + given + "' is not " + expected);
    outcome.status = kWrongUsage;
    return outcome;
}

Outcome refusal(const std::string& what, const std::string& why, const std::string& remedy) {
    Outcome outcome;
    outcome.status = kRefused;
    outcome.what = what;
    outcome.why = why;
    outcome.remedy = remedy;
    return outcome;
}

Outcome differs() {
    return refusal("", "");
}
