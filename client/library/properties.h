// What the service lets its clients see and set, one row of a table each: by this table values are
// shown, set, saved, restored and written as JSON.

#ifndef ZYL_CLIENT_LIBRARY_PROPERTIES_H
#define ZYL_CLIENT_LIBRARY_PROPERTIES_H

#include <string>
#include <vector>

#include "client/library/json.h"
#include "client/library/outcome.h"
#include "interface/Izyl_kwo_service.h"

// A value as the service has it: numbers, or a text.
struct Value {
    Value() = default;
    explicit Value(double number) : numbers{number} {}

    bool on() const { return !numbers.empty() && numbers[0] != 0; }
    bool operator==(const Value& other) const {
        return numbers == other.numbers && text == other.text;
    }
    bool operator!=(const Value& other) const { return !(*this == other); }

    std::vector<double> numbers;
    std::string text;
};

struct Property {
    // How a value is written, and what is accepted.
    enum Kind { kSwitch, kNumber, kRoute, kGains, kReals, kMask, kText };
    // Both return one of the service's results.
    using Getter = int32_t (*)(Izyl_kwo_service& service, int32_t selector, Value* value);
    using Setter = int32_t (*)(Izyl_kwo_service& service, int32_t selector, const Value& value);

    std::string key;    // on the command line, in snapshots and, split at its dot, in JSON
    std::string label;  // in front of the value
    std::string part;   // of what has several: stands between label and value
    Kind kind;
    size_t count;  // of numbers
    double lowest;
    double highest;
    std::string accepts;  // in words
    int32_t selector;     // passed on to the functions
    Getter get;
    Setter set;                            // null: it can only be read
    std::vector<std::string> generations;  // that have it; empty: all
};

// Return one of the service's results; kZylKwoNotAvailable says that this device has no such
// property.
int32_t getProperty(Izyl_kwo_service& service, const Property& property, Value* value);
int32_t setProperty(Izyl_kwo_service& service, const Property& property, const Value& value);
// Whether devices of that settings generation have it.
bool belongsTo(const Property& property, const std::string& generation);

// In the order in which they are shown.
const std::vector<Property>& properties();

// By key; null when there is none. "gains.3" is the fourth of the gains, by itself.
const Property* findProperty(const std::string& key);
// By a key of this program's own.
const Property& property(const std::string& key);
// One of the bands, 0 to 9.
const Property& bandProperty(int32_t band);
// The band, or -1 for any other property.
int32_t bandOf(const Property& property);

// All keys, or those that can be set.
std::vector<std::string> keys(bool settable);

// Reads words as a value.
Outcome parseValue(const Property& property, const std::vector<std::string>& words, Value* value);
// What parseValue reads back.
std::string formatValue(const Property& property, const Value& value);
// Of a listening test: that none was taken.
bool isNone(const Property& property, const Value& value);

void addToJson(Json& json, const Property& property, const Value& value);

struct Reading {
    const Property* property;
    Value value;
};

// The readings as members of an object, those of one kind ("tuning.") in an object of their own.
void addToJson(Json& json, const std::vector<Reading>& readings);

#endif  // ZYL_CLIENT_LIBRARY_PROPERTIES_H
