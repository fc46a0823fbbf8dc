// The rows: which operation of the service reads and sets what.

#include <algorithm>
#include <cstring>

#include "client/parse.h"
#include "client/properties.h"

namespace {

using Service = Izyl_kwo_service;

constexpr int kListeningTestValues = 4;
// What all four values of a listening test are while none was taken.
constexpr double kNoListeningTest = -1;

template <int32_t (Service::*kGet)(int32_t*)>
int32_t getWord(Service& service, int32_t, Value* value) {
    int32_t word = 0;
    const int32_t result = (service.*kGet)(&word);
    value->numbers = {static_cast<double>(word)};
    return result;
}

template <int32_t (Service::*kSet)(int32_t)>
int32_t setWord(Service& service, int32_t, const Value& value) {
    return (service.*kSet)(static_cast<int32_t>(value.numbers[0]));
}

int32_t getTuning(Service& service, int32_t route, Value* value) {
    int32_t tuning = 0;
    const int32_t result = service.getTuning(route, &tuning);
    value->numbers = {static_cast<double>(tuning)};
    return result;
}

int32_t setTuning(Service& service, int32_t route, const Value& value) {
    return service.setTuning(route, static_cast<int32_t>(value.numbers[0]));
}

int32_t getGains(Service& service, int32_t, Value* value) {
    uint16_t gains[kGEQBandCount] = {};
    const int32_t result = service.getGEQGainAll(gains);
    value->numbers.assign(gains, gains + kGEQBandCount);
    return result;
}

int32_t setGains(Service& service, int32_t, const Value& value) {
    uint16_t gains[kGEQBandCount];
    for (size_t i = 0; i < kGEQBandCount; ++i) gains[i] = static_cast<uint16_t>(value.numbers[i]);
    return service.setGEQGainAll(gains);
}

int32_t getLevels(Service& service, int32_t, Value* value) {
    int32_t levels[kDbLevelCount] = {};
    const int32_t result = service.getDbLevels(levels);
    value->numbers.assign(levels, levels + kDbLevelCount);
    return result;
}

int32_t setLevels(Service& service, int32_t, const Value& value) {
    int32_t levels[kDbLevelCount];
    for (size_t i = 0; i < kDbLevelCount; ++i) levels[i] = static_cast<int32_t>(value.numbers[i]);
    return service.setDbGain(levels);
}

int32_t getMask(Service& service, int32_t route, Value* value) {
    uint32_t mask = 0;
    const int32_t result = service.getRouteMask(route, &mask);
    value->numbers = {static_cast<double>(mask)};
    return result;
}

// Files and other clients may have left anything in a text, and this one goes to a terminal.
std::string printable(const char* text, size_t size) {
    std::string clean(text, strnlen(text, size));
    for (char& c : clean) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
    }
    return clean;
}

template <int32_t (Service::*kGet)(char*, int32_t*)>
int32_t getName(Service& service, int32_t, Value* value) {
    char name[kZylcsNameSize] = {};
    int32_t length = sizeof(name);
    const int32_t result = (service.*kGet)(name, &length);
    value->text = printable(name, sizeof(name));
    return result;
}

template <int32_t (Service::*kGet)(int32_t, char*, int32_t*)>
int32_t getNameOf(Service& service, int32_t selector, Value* value) {
    char name[kZylcsNameSize] = {};
    int32_t length = sizeof(name);
    const int32_t result = (service.*kGet)(selector, name, &length);
    value->text = printable(name, sizeof(name));
    return result;
}

int32_t setListeningTest(Service& service, int32_t, const Value& value) {
    if (value.numbers == std::vector<double>(kListeningTestValues, kNoListeningTest)) {
        return service.resetListeningTestResult();
    }
    float values[kListeningTestValues];
    for (size_t i = 0; i < kListeningTestValues; ++i) {
        values[i] = static_cast<float>(value.numbers[i]);
    }
    return service.setListeningTestResult(values[0], values[1], values[2], values[3]);
}

// The service does not say it; only one generation has tuning numbers, and only the other one
// names.
int32_t getGeneration(Service& service, int32_t, Value* value) {
    Value unused;
    const int32_t numbers = getTuning(service, 0, &unused);
    const int32_t names = getName<&Service::getSpeakerZylcsTuningName>(service, 0, &unused);
    for (int32_t result : {numbers, names}) {
        if (result != kZylKwoOk && result != kZylKwoNotAvailable) return result;
    }
    value->text = numbers == kZylKwoOk ? "torvane" : names == kZylKwoOk ? "maldor" : "none";
    return kZylKwoOk;
}

// These two calls fail without a result where a device has not what they are for; its generation
// says why.
int32_t explainFailure(Service& service, int32_t result, const std::vector<std::string>& without) {
    if (result != kZylKwoCallFailed) return result;
    Value generation;
    const int32_t asked = getGeneration(service, 0, &generation);
    const bool absent = asked == kZylKwoOk &&
                        std::find(without.begin(), without.end(), generation.text) != without.end();
    return absent ? kZylKwoNotAvailable : result;
}

int32_t getEffect(Service& service, int32_t, Value* value) {
    int32_t enabled = 0;
    const int32_t result = service.getEnabled(&enabled);
    value->numbers = {static_cast<double>(enabled)};
    return explainFailure(service, result, {"none"});
}

int32_t setEffect(Service& service, int32_t, const Value& value) {
    const int32_t result = service.setEnabled(static_cast<int32_t>(value.numbers[0]));
    return explainFailure(service, result, {"none"});
}

int32_t getListeningTest(Service& service, int32_t, Value* value) {
    float values[kListeningTestValues] = {};
    const int32_t result =
            service.getListeningTestResult(&values[0], &values[1], &values[2], &values[3]);
    value->numbers.assign(values, values + kListeningTestValues);
    return explainFailure(service, result, {"none", "torvane"});
}

int32_t getVersion(Service& service, int32_t, Value* value) {
    char text[kVersionStringSize] = {};
    int32_t length = sizeof(text);
    const int32_t result = service.getVersionString(text, &length);
    value->text = printable(text, sizeof(text));
    return result;
}

int32_t getPlatform(Service& service, int32_t, Value* value) {
    PlatformInfoRecord record = {};
    const int32_t result = service.getPlatformInfo(&record);
    value->text = printable(record.version, sizeof(record.version)) +
                  format(", device type %d", record.platformType);
    return result;
}

constexpr double kLow = INT32_MIN;
constexpr double kHigh = INT32_MAX;
constexpr double kLargestReal = 3.4e38;
constexpr char kOnOff[] = "on or off";
constexpr char kTuningNumber[] = "a tuning number, 0 and up as far as there are tuning files";

}  // namespace

const std::vector<Property> kProperties = {
        {"generation", "generation", "", Property::kText, 0, 0, 0, "", 0, getGeneration, nullptr},
        {"effect", "effect", "", Property::kSwitch, 1, kLow, kHigh, kOnOff, 0, getEffect,
         setEffect},
        {"stereo", "stereo mode", "", Property::kNumber, 1, 1, 3, "a stereo mode: 1, 2 or 3", 0,
         getWord<&Service::getStereoMode>, setWord<&Service::setStereoMode>},
        {"tuning.speaker", "tuning", "speaker ", Property::kNumber, 1, 0, kHigh, kTuningNumber, 0,
         getTuning, setTuning},
        {"tuning.lineout", "tuning", "lineout ", Property::kNumber, 1, 0, kHigh, kTuningNumber, 1,
         getTuning, setTuning},
        {"tuning.bluetooth", "tuning", "bluetooth ", Property::kNumber, 1, 0, kHigh, kTuningNumber,
         2, getTuning, setTuning},
        {"data.speaker", "tuning data", "speaker              ", Property::kText, 0, 0, 0, "", 0,
         getName<&Service::getSpeakerZylcsTuningName>, nullptr},
        {"data.second-speaker", "tuning data", "second-speaker       ", Property::kText, 0, 0, 0,
         "", 0, getName<&Service::getSecondSpeakerZylcsTuningName>, nullptr},
        {"data.accessory-lineout", "tuning data", "accessory lineout    ", Property::kText, 0, 0, 0,
         "", 1, getNameOf<&Service::getAccessoryZylcsTuningName>, nullptr},
        {"data.accessory-bluetooth", "tuning data", "accessory bluetooth  ", Property::kText, 0, 0,
         0, "", 2, getNameOf<&Service::getAccessoryZylcsTuningName>, nullptr},
        {"data.stereo-room-1", "tuning data", "stereo-room 1        ", Property::kText, 0, 0, 0, "",
         1, getNameOf<&Service::getStereoRoomZylcsTuningName>, nullptr},
        {"data.stereo-room-2", "tuning data", "stereo-room 2        ", Property::kText, 0, 0, 0, "",
         2, getNameOf<&Service::getStereoRoomZylcsTuningName>, nullptr},
        {"data.multichannel-room", "tuning data", "multichannel-room    ", Property::kText, 0, 0, 0,
         "", 0, getName<&Service::getMultiChannelRoomZylcsTuningName>, nullptr},
        {"listening-test", "listening test", "", Property::kReals, kListeningTestValues,
         -kLargestReal, kLargestReal, "four numbers", 0, getListeningTest, setListeningTest},
        {"geq", "equaliser", "", Property::kSwitch, 1, kLow, kHigh, kOnOff, 0,
         getWord<&Service::getGEQEnable>, setWord<&Service::setGEQEnable>},
        {"gains", "gains", "", Property::kGains, kGEQBandCount, 725, 32767,
         "a gain: 725 to 32767, or like +3dB", 0, getGains, setGains},
        {"levels", "levels", "", Property::kNumber, kDbLevelCount, kLow, kHigh, "a number", 0,
         getLevels, setLevels},
        {"route", "active route", "", Property::kRoute, 1, kLow, kHigh,
         "a route: speaker, lineout, bluetooth or a number", 0, getWord<&Service::getActiveRoute>,
         setWord<&Service::setActiveRoute>},
        {"mask.speaker", "mask", "speaker   ", Property::kMask, 1, 0, 0, "", 0, getMask, nullptr},
        {"mask.lineout", "mask", "lineout   ", Property::kMask, 1, 0, 0, "", 1, getMask, nullptr},
        {"mask.bluetooth", "mask", "bluetooth ", Property::kMask, 1, 0, 0, "", 2, getMask, nullptr},
        {"version", "version", "", Property::kText, 0, 0, 0, "", 0, getVersion, nullptr},
        {"platform", "platform", "", Property::kText, 0, 0, 0, "", 0, getPlatform, nullptr},
};
