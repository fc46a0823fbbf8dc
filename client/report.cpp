#include "client/report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

struct Meaning {
    int32_t result;
    const char* words;
};

constexpr Meaning kMeanings[] = {
        {kZylKwoBadArgument, "a value is out of range"},
        {kZylKwoTuningNotLoadable, "there is no such tuning file"},
        {kZylKwoUploadFailed, "the DSP did not take or give the data"},
        {kZylKwoTuningTooShort, "the tuning file is too short"},
        {kZylKwoNoMemory, "the service is out of memory"},
        {kZylKwoUnsupported, "this is not supported"},
        {kZylKwoNotAvailable, "not available on this device's settings generation"},
        {kZylKwoNoSharedRegion, "the shared memory is missing or too small"},
        {kZylKwoConversionFailed, "the tuning data cannot be converted"},
        {kZylKwoConversionFailed5, "the tuning data cannot be converted, library code -5"},
        {kZylKwoConversionFailed6, "the tuning data cannot be converted, library code -6"},
        {kZylKwoConversionFailed7, "the tuning data cannot be converted, library code -7"},
        {kZylKwoConversionFailed8, "the tuning data cannot be converted, library code -8"},
        {kZylKwoConversionFailed9, "the tuning data cannot be converted, library code -9"},
        {kZylKwoServiceGone, "the service went away during the call"},
        {kZylKwoCallRefused, "the service speaks another interface"},
        {kZylKwoCallFailed, "the service could not carry it out; its log says why"},
};

const char* wordsFor(int32_t result) {
    for (const Meaning& meaning : kMeanings) {
        if (meaning.result == result) return meaning.words;
    }
    return "the service refused";
}

}  // namespace

ExitStatus reportResult(const char* what, int32_t result) {
    if (result == kZylKwoOk) return kDone;
    fprintf(stderr, "kwoctl: %s: %s (%d)\n", what, wordsFor(result), result);
    return result == kZylKwoServiceGone ? kNoService : kRefused;
}

ExitStatus reportUsage(const char* what, const std::string& given, const char* expected) {
    fprintf(stderr, "kwoctl: %s: '%s' is not %s\n", what, given.c_str(), expected);
    return kWrongUsage;
}

ExitStatus reportFile(const std::string& file) {
    fprintf(stderr, "kwoctl: %s: %s\n", file.c_str(), strerror(errno));
    return kRefused;
}
