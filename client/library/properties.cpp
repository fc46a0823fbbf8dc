#include "client/library/properties.h"

#include <algorithm>
#include <cstdlib>

#include "client/library/parse.h"

namespace {

template <typename T>
bool parseAs(bool (*parse)(const std::string& text, T* number), const std::string& word,
             double* number) {
    T parsed = {};
    if (!parse(word, &parsed)) return false;
    *number = static_cast<double>(parsed);
    return true;
}

bool parseOne(const Property& property, const std::string& word, double* number) {
    switch (property.kind) {
        case Property::kSwitch: return parseAs(parseSwitch, word, number);
        case Property::kNumber: return parseAs(parseNumber, word, number);
        case Property::kRoute: return parseAs(parseRoute, word, number);
        case Property::kGains: return parseGain(word, number);
        case Property::kReals:
            if (!parseReal(word, number)) return false;
            // The service keeps single precision.
            *number = static_cast<float>(*number);
            return true;
        case Property::kMask:
        case Property::kText: return false;
    }
    return false;
}

bool isNamedRoute(double number) {
    return number >= 0 && number < kKnownRoutes;
}

std::string formatOne(const Property& property, double number) {
    switch (property.kind) {
        case Property::kSwitch: return number != 0 ? "on" : "off";
        case Property::kRoute:
            if (isNamedRoute(number)) return kRouteNames[static_cast<int>(number)];
            return format("%.0f", number);
        case Property::kMask: return format("0x%08x", static_cast<uint32_t>(number));
        case Property::kReals: return formatReal(number);
        default: return format("%.0f", number);
    }
}

// "tuning" of "tuning.speaker"; empty when there is no dot.
std::string groupOf(const Property& property) {
    const size_t dot = property.key.find('.');
    return bandOf(property) >= 0 || dot == std::string::npos ? "" : property.key.substr(0, dot);
}

// "+3 dB" comes as two words.
std::vector<std::string> joinUnits(const std::vector<std::string>& words) {
    std::vector<std::string> joined;
    for (const std::string& word : words) {
        if (lowerCase(word) == "db" && !joined.empty()) {
            joined.back() += word;
        } else {
            joined.push_back(word);
        }
    }
    return joined;
}

std::string inWords(size_t count) {
    constexpr const char* kWords[] = {"no",  "one",   "two",   "three", "four", "five",
                                      "six", "seven", "eight", "nine",  "ten"};
    return count <= 10 ? kWords[count] : format("%zu", count);
}

Outcome wrongCount(const Property& property, size_t given) {
    Outcome outcome = wrongUsage(property.key, "", "");
    outcome.why = format("takes %s number%s, %zu given", inWords(property.count).c_str(),
                         property.count == 1 ? "" : "s", given);
    return outcome;
}

// Some calls fail without a result where a device has not what they are for; its generation says
// why.
int32_t explained(Izyl_kwo_service& service, const Property& failed, int32_t result) {
    if (result != kZylKwoCallFailed || failed.generations.empty()) return result;
    const Property& generation = property("generation");
    Value value;
    const int32_t asked = generation.get(service, generation.selector, &value);
    return asked == kZylKwoOk && !belongsTo(failed, value.text) ? kZylKwoNotAvailable : result;
}

}  // namespace

int32_t getProperty(Izyl_kwo_service& service, const Property& property, Value* value) {
    return explained(service, property, property.get(service, property.selector, value));
}

int32_t setProperty(Izyl_kwo_service& service, const Property& property, const Value& value) {
    return explained(service, property, property.set(service, property.selector, value));
}

bool belongsTo(const Property& property, const std::string& generation) {
    const auto& all = property.generations;
    return all.empty() || std::find(all.begin(), all.end(), generation) != all.end();
}

const Property* findProperty(const std::string& key) {
    for (const Property& property : properties()) {
        if (key == property.key) return &property;
    }
    for (int32_t band = 0; band < kGEQBandCount; ++band) {
        if (key == bandProperty(band).key) return &bandProperty(band);
    }
    return nullptr;
}

const Property& property(const std::string& key) {
    const Property* found = findProperty(key);
    if (found == nullptr) abort();
    return *found;
}

int32_t bandOf(const Property& property) {
    return property.kind == Property::kGains && property.count == 1 ? property.selector : -1;
}

std::vector<std::string> keys(bool settable) {
    std::vector<std::string> keys;
    for (const Property& property : properties()) {
        if (!settable || property.set != nullptr) keys.push_back(property.key);
    }
    return keys;
}

Outcome parseValue(const Property& property, const std::vector<std::string>& given, Value* value) {
    if (property.set == nullptr) return wrongUsage(property.key, joinWords(given), "to be set");
    const auto words = property.kind == Property::kGains ? joinUnits(given) : given;
    if (words.size() != property.count) {
        return words.size() == 1 && property.count == 1
                       ? wrongUsage(property.key, words[0], property.accepts)
                       : wrongCount(property, words.size());
    }
    Value parsed;
    for (const std::string& word : words) {
        double number = 0;
        if (!parseOne(property, word, &number)) {
            return wrongUsage(property.key, word, property.accepts);
        }
        if (number < property.lowest || number > property.highest) {
            Outcome outcome = wrongUsage(property.key, word, "");
            outcome.why = word + " is out of range; it takes " + property.accepts;
            return outcome;
        }
        parsed.numbers.push_back(number);
    }
    *value = parsed;
    return done();
}

std::string formatValue(const Property& property, const Value& value) {
    if (property.kind == Property::kText) return value.text;
    std::vector<std::string> words;
    for (double number : value.numbers) words.push_back(formatOne(property, number));
    return joinWords(words);
}

void addToJson(Json& json, const Property& property, const Value& value) {
    if (property.kind == Property::kText) {
        json.text(value.text);
        return;
    }
    if (isNone(property, value)) {
        json.literal("null");
        return;
    }
    const bool list = property.count > 1;
    if (list) json.open('[');
    for (double number : value.numbers) {
        if (property.kind == Property::kSwitch) {
            json.boolean(number != 0);
        } else if (property.kind == Property::kRoute && isNamedRoute(number)) {
            json.text(formatOne(property, number));
        } else {
            json.number(number);
        }
    }
    if (list) json.close();
}

void addToJson(Json& json, const std::vector<Reading>& readings) {
    std::string open;
    for (const Reading& reading : readings) {
        const std::string group = groupOf(*reading.property);
        if (!open.empty() && group != open) json.close();
        if (!group.empty() && group != open) json.name(group).open('{');
        open = group;
        const std::string& key = reading.property->key;
        json.name(group.empty() ? key : key.substr(group.size() + 1));
        addToJson(json, *reading.property, reading.value);
    }
    if (!open.empty()) json.close();
}
