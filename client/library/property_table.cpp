// The rows: which operation of the service reads and sets what.

#include <cstring>

#include "client/library/parse.h"
#include "client/library/properties.h"

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

constexpr char kTorvane[] = "torvane";
constexpr char kMaldor[] = "maldor";
constexpr char kNone[] = "none";

// The service does not say it; only one generation has tuning numbers, and only the other one
// names.
int32_t getGeneration(Service& service, int32_t, Value* value) {
    Value unused;
    value->text = kTorvane;
    int32_t result = getTuning(service, 0, &unused);
    if (result != kZylKwoNotAvailable) return result;
    value->text = kMaldor;
    result = getName<&Service::getSpeakerZylcsTuningName>(service, 0, &unused);
    if (result != kZylKwoNotAvailable) return result;
    value->text = kNone;
    return kZylKwoOk;
}

int32_t getEffect(Service& service, int32_t, Value* value) {
    int32_t enabled = 0;
    const int32_t result = service.getEnabled(&enabled);
    value->numbers = {static_cast<double>(enabled)};
    return result;
}

int32_t getListeningTest(Service& service, int32_t, Value* value) {
    float values[kListeningTestValues] = {};
    const int32_t result =
            service.getListeningTestResult(&values[0], &values[1], &values[2], &values[3]);
    value->numbers.assign(values, values + kListeningTestValues);
    return result;
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

int32_t getBand(Service& service, int32_t band, Value* value) {
    uint16_t gain = 0;
    const int32_t result = service.getGEQGain(band, &gain);
    value->numbers = {static_cast<double>(gain)};
    return result;
}

int32_t setBand(Service& service, int32_t band, const Value& value) {
    return service.setGEQGain(band, static_cast<uint16_t>(value.numbers[0]));
}

constexpr double kLow = INT32_MIN;
constexpr double kHigh = INT32_MAX;
constexpr double kLargestReal = 3.4e38;

struct Range {
    double lowest;
    double highest;
    const char* accepts;
};

constexpr Range kOnOff = {kLow, kHigh, "on or off"};
constexpr Range kStereoModes = {1, 3, "a stereo mode: 1, 2 or 3"};
constexpr Range kTunings = {0, kHigh, "a tuning number, 0 and up as far as there are tuning files"};
constexpr Range kAnyNumber = {kLow, kHigh, "a number"};
constexpr Range kAnyReal = {-kLargestReal, kLargestReal, "a number"};
constexpr Range kAnyRoute = {kLow, kHigh, "a route: speaker, lineout, bluetooth or a number"};

// The makers of rows: what is read only, what is one value, and what is several.
Property readOnly(const char* key, const char* label, Property::Kind kind, Property::Getter get) {
    return {key, label, "", kind, kind == Property::kText ? 0U : 1U, 0, 0, "", 0, get, nullptr, {}};
}

Property text(const char* key, const char* label, Property::Getter get) {
    return readOnly(key, label, Property::kText, get);
}

Property several(size_t count, const char* key, const char* label, Property::Kind kind,
                 const Range& range, Property::Getter get, Property::Setter set) {
    return {key,           label,         "", kind, count, range.lowest,
            range.highest, range.accepts, 0,  get,  set,   {}};
}

Property one(const char* key, const char* label, Property::Kind kind, const Range& range,
             Property::Getter get, Property::Setter set) {
    return several(1, key, label, kind, range, get, set);
}

// One of those that share a label and differ by the selector.
Property part(const char* name, int32_t selector, Property property) {
    property.part = name;
    property.selector = selector;
    return property;
}

Property of(const std::vector<std::string>& generations, Property property) {
    property.generations = generations;
    return property;
}

Property tuning(const char* key, const char* name, int32_t route) {
    return of({kTorvane},
              part(name, route,
                   one(key, "tuning", Property::kNumber, kTunings, getTuning, setTuning)));
}

Property data(const char* key, const char* name, int32_t selector, Property::Getter get) {
    return of({kMaldor}, part(name, selector, text(key, "tuning data", get)));
}

Property mask(const char* key, const char* name, int32_t route) {
    return part(name, route, readOnly(key, "mask", Property::kMask, getMask));
}

Range gainRange() {
    static const std::string accepts = std::string("a gain: ") + kGainRange;
    return {kLowestGain, kHighestGain, accepts.c_str()};
}

std::vector<Property> makeTable() {
    constexpr auto kAccessory = getNameOf<&Service::getAccessoryZylcsTuningName>;
    constexpr auto kRoom = getNameOf<&Service::getStereoRoomZylcsTuningName>;
    const std::vector<std::string> settings = {kTorvane, kMaldor};
    return {
            text("generation", "generation", getGeneration),
            of(settings, one("effect", "effect", Property::kSwitch, kOnOff, getEffect,
                             setWord<&Service::setEnabled>)),
            of(settings, one("stereo", "stereo mode", Property::kNumber, kStereoModes,
                             getWord<&Service::getStereoMode>, setWord<&Service::setStereoMode>)),
            tuning("tuning.speaker", "speaker ", 0),
            tuning("tuning.lineout", "lineout ", 1),
            tuning("tuning.bluetooth", "bluetooth ", 2),
            data("data.speaker", "speaker              ", 0,
                 getName<&Service::getSpeakerZylcsTuningName>),
            data("data.second-speaker", "second-speaker       ", 0,
                 getName<&Service::getSecondSpeakerZylcsTuningName>),
            data("data.accessory-lineout", "accessory lineout    ", 1, kAccessory),
            data("data.accessory-bluetooth", "accessory bluetooth  ", 2, kAccessory),
            data("data.stereo-room-1", "stereo-room 1        ", 1, kRoom),
            data("data.stereo-room-2", "stereo-room 2        ", 2, kRoom),
            data("data.multichannel-room", "multichannel-room    ", 0,
                 getName<&Service::getMultiChannelRoomZylcsTuningName>),
            of({kMaldor}, several(kListeningTestValues, "listening-test", "listening test",
                                  Property::kReals, kAnyReal, getListeningTest, setListeningTest)),
            of(settings, one("geq", "equaliser", Property::kSwitch, kOnOff,
                             getWord<&Service::getGEQEnable>, setWord<&Service::setGEQEnable>)),
            of(settings, several(kGEQBandCount, "gains", "gains", Property::kGains, gainRange(),
                                 getGains, setGains)),
            several(kDbLevelCount, "levels", "levels", Property::kNumber, kAnyNumber, getLevels,
                    setLevels),
            one("route", "active route", Property::kRoute, kAnyRoute,
                getWord<&Service::getActiveRoute>, setWord<&Service::setActiveRoute>),
            mask("mask.speaker", "speaker   ", 0),
            mask("mask.lineout", "lineout   ", 1),
            mask("mask.bluetooth", "bluetooth ", 2),
            text("version", "version", getVersion),
            text("platform", "platform", getPlatform),
    };
}

std::vector<Property> makeBands() {
    std::vector<Property> bands;
    bands.reserve(kGEQBandCount);
    for (int32_t band = 0; band < kGEQBandCount; ++band) {
        bands.push_back(part("", band,
                             one(format("gains.%d", band).c_str(), format("band %d", band).c_str(),
                                 Property::kGains, gainRange(), getBand, setBand)));
    }
    return bands;
}

}  // namespace

const std::vector<Property>& properties() {
    static const std::vector<Property> table = makeTable();
    return table;
}

const Property& bandProperty(int32_t band) {
    static const std::vector<Property> bands = makeBands();
    return bands[static_cast<size_t>(band)];
}

bool isNone(const Property& property, const Value& value) {
    return property.key == "listening-test" &&
           value.numbers == std::vector<double>(kListeningTestValues, kNoListeningTest);
}
