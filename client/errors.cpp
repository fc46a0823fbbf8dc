#include "client/errors.h"

#include <cstdio>

#include "client/parse.h"

namespace {

struct Meaning {
    int32_t result;
    const char* why;
    const char* whatToDo;  // or empty
};

constexpr Meaning kMeanings[] = {
        {kZylKwoBadArgument, "a value is out of range, or the DSP refused it", ""},
        {kZylKwoTuningNotLoadable, "there is no such tuning file",
         "; they are in /etc/zyl or /data/misc/zyl"},
        {kZylKwoUploadFailed, "the DSP did not take or give the data",
         "; is /dev/zyl_quorin there?"},
        {kZylKwoTuningTooShort, "the tuning file is too short", "; replace it by a whole one"},
        {kZylKwoNoMemory, "there is not enough memory", "; restart zyl_kwo_service"},
        {kZylKwoUnsupported, "this is not supported", ""},
        {kZylKwoNotAvailable, "not available on this device's settings generation",
         "; see kwoctl get generation"},
        {kZylKwoNoSharedRegion, "the shared memory is missing or too small",
         "; another client may have replaced it, try again"},
        {kZylKwoConversionFailed, "the tuning data cannot be converted", ""},
        {kZylKwoConversionFailed5, "the tuning data cannot be converted, library code -5", ""},
        {kZylKwoConversionFailed6, "the tuning data cannot be converted, library code -6", ""},
        {kZylKwoConversionFailed7, "the tuning data cannot be converted, library code -7", ""},
        {kZylKwoConversionFailed8, "the tuning data cannot be converted, library code -8", ""},
        {kZylKwoConversionFailed9, "the tuning data cannot be converted, library code -9", ""},
        {kZylKwoServiceGone, "the service went away during the call",
         "; start it with: start zyl_kwo_service"},
        {kZylKwoCallRefused, "the service speaks another interface",
         "; use the kwoctl of its release"},
        {kZylKwoCallFailed, "the service could not carry it out", "; logcat says why"},
};

Meaning meaningOf(int32_t result) {
    for (const Meaning& meaning : kMeanings) {
        if (meaning.result == result) return meaning;
    }
    return {result, "the service refused", ""};
}

// What went well before stands in front, also where both streams are one.
void complain(const std::string& what, const std::string& why) {
    fflush(stdout);
    fprintf(stderr, "kwoctl: %s: %s\n", what.c_str(), why.c_str());
}

}  // namespace

ExitStatus reportResult(const std::string& what, int32_t result) {
    if (result == kZylKwoOk) return kDone;
    const Meaning meaning = meaningOf(result);
    complain(what, format("%s (%d)%s", meaning.why, result, meaning.whatToDo));
    return result == kZylKwoServiceGone ? kNoService : kRefused;
}

ExitStatus reportUsage(const std::string& what, const std::string& given,
                       const std::string& expected) {
    complain(what, "'" + given + "' is not " + expected);
    return kWrongUsage;
}

ExitStatus reportRefusal(const std::string& what, const std::string& why) {
    complain(what, why);
    return kRefused;
}
