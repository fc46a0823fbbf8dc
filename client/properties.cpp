#include "client/properties.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "client/parse.h"

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
        case Property::kGains: return parseAs(parseGain, word, number);
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

std::string formatOne(const Property& property, double number) {
    switch (property.kind) {
        case Property::kSwitch: return number != 0 ? "on" : "off";
        case Property::kRoute:
            if (number >= 0 && number < kKnownRoutes) return kRouteNames[static_cast<int>(number)];
            return format("%.0f", number);
        case Property::kMask: return format("0x%08x", static_cast<uint32_t>(number));
        case Property::kReals: return formatReal(number);
        default: return format("%.0f", number);
    }
}

// "tuning" of "tuning.speaker"; empty when there is no dot.
std::string groupOf(const Property& property) {
    const char* dot = strchr(property.key, '.');
    return dot == nullptr ? "" : std::string(property.key, dot);
}

}  // namespace

const Property* findProperty(const std::string& key) {
    for (const Property& property : kProperties) {
        if (key == property.key) return &property;
    }
    return nullptr;
}

const Property& property(const char* key) {
    const Property* found = findProperty(key);
    if (found == nullptr) abort();
    return *found;
}

std::string keys(bool settable) {
    std::vector<std::string> keys;
    for (const Property& property : kProperties) {
        if (!settable || property.set != nullptr) keys.emplace_back(property.key);
    }
    return joinWords(keys);
}

ExitStatus parseValue(const Property& property, const std::vector<std::string>& words,
                      Value* value) {
    if (property.set == nullptr) return reportUsage(property.key, joinWords(words), "to be set");
    if (words.size() != property.count) {
        const std::string found = words.empty() ? "" : words[0];
        return reportUsage(property.key, found,
                           property.count == 1 ? property.accepts
                                               : format("the first of %zu values", property.count));
    }
    value->numbers.clear();
    for (const std::string& word : words) {
        double number = 0;
        if (!parseOne(property, word, &number)) {
            return reportUsage(property.key, word, property.accepts);
        }
        if (number < property.lowest || number > property.highest) {
            return reportRefusal(property.key,
                                 word + " is out of range; it takes " + property.accepts);
        }
        value->numbers.push_back(number);
    }
    return kDone;
}

std::string formatValue(const Property& property, const Value& value) {
    if (property.kind == Property::kText) return value.text;
    std::vector<std::string> words;
    for (double number : value.numbers) words.push_back(formatOne(property, number));
    return joinWords(words);
}

void printValue(const Property& property, const Value& value) {
    printf("%-14s %s%s\n", property.label, property.part, formatValue(property, value).c_str());
}

void addToJson(Json& json, const Property& property, const Value& value) {
    if (property.kind == Property::kText) {
        json.text(value.text);
        return;
    }
    const bool list = property.count > 1;
    if (list) json.open('[');
    for (double number : value.numbers) {
        const std::string word = formatOne(property, number);
        const bool named =
                property.kind == Property::kRoute && number >= 0 && number < kKnownRoutes;
        if (property.kind == Property::kSwitch) {
            json.literal(number != 0 ? "true" : "false");
        } else if (named) {
            json.text(word);
        } else {
            json.number(number);
        }
    }
    if (list) json.close();
}

std::vector<Reading> readAll(Session& session, const Choice& wanted, ExitStatus* status) {
    std::vector<Reading> readings;
    for (const Property& property : kProperties) {
        if (!wanted(property)) continue;
        Value value;
        const int32_t result = property.get(session.service(), property.selector, &value);
        if (result == kZylKwoNotAvailable) continue;
        if (result != kZylKwoOk) {
            *status = reportResult(property.key, result);
            if (*status == kNoService) break;
            continue;
        }
        readings.push_back({&property, value});
    }
    return readings;
}

ExitStatus readValue(Session& session, const Property& property, Value* value) {
    return reportResult(property.key, property.get(session.service(), property.selector, value));
}

void addToJson(Json& json, const std::vector<Reading>& readings) {
    std::string open;
    for (const Reading& reading : readings) {
        const std::string group = groupOf(*reading.property);
        if (!open.empty() && group != open) json.close();
        if (!group.empty() && group != open) json.name(group).open('{');
        open = group;
        const char* dot = strchr(reading.property->key, '.');
        json.name(dot == nullptr ? reading.property->key : dot + 1);
        addToJson(json, *reading.property, reading.value);
    }
    if (!open.empty()) json.close();
}
