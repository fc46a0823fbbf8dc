// What the service lets its clients see and set, one row of a table each: by this table values are
// shown, set, saved, restored and written as JSON.

#ifndef ZYL_CLIENT_PROPERTIES_H
#define ZYL_CLIENT_PROPERTIES_H

#include <functional>
#include <string>
#include <vector>

#include "client/errors.h"
#include "client/json.h"
#include "client/session.h"

// A value as the service has it: numbers, or a text.
struct Value {
    std::vector<double> numbers;
    std::string text;

    bool on() const { return !numbers.empty() && numbers[0] != 0; }
    bool operator==(const Value& other) const {
        return numbers == other.numbers && text == other.text;
    }
};

struct Property {
    // How a value is written, and what is accepted.
    enum Kind { kSwitch, kNumber, kRoute, kGains, kReals, kMask, kText };

    const char* key;  // on the command line, in snapshots and, split at its dot, in JSON
    const char* label;
    const char* part;  // of what has several: stands between label and value
    Kind kind;
    size_t count;  // of numbers
    double lowest;
    double highest;
    const char* accepts;  // in words
    int32_t selector;     // passed on to the functions
    // Both return a ZylKwoResult; without `set` a property can only be read. kZylKwoNotAvailable
    // says that this device has no such property.
    int32_t (*get)(Izyl_kwo_service& service, int32_t selector, Value* value);
    int32_t (*set)(Izyl_kwo_service& service, int32_t selector, const Value& value);
};

extern const std::vector<Property> kProperties;

// By key; null when there is none.
const Property* findProperty(const std::string& key);
// By a key of this program's own.
const Property& property(const char* key);

// All keys, or those that can be set, between blanks.
std::string keys(bool settable);

// Reads words as a value. kWrongUsage, or kRefused when out of range, with a complaint.
ExitStatus parseValue(const Property& property, const std::vector<std::string>& words,
                      Value* value);
// What parseValue reads back.
std::string formatValue(const Property& property, const Value& value);

// One line on standard output.
void printValue(const Property& property, const Value& value);
void addToJson(Json& json, const Property& property, const Value& value);

// What the device has, in the order of the table. `status` becomes kRefused or kNoService, with a
// complaint, when something that it has cannot be read.
struct Reading {
    const Property* property;
    Value value;
};
using Choice = std::function<bool(const Property&)>;
std::vector<Reading> readAll(Session& session, const Choice& wanted, ExitStatus* status);

// Reads one property, with a complaint when it cannot be read.
ExitStatus readValue(Session& session, const Property& property, Value* value);

// The readings as members of an object, those of one kind ("tuning.") in an object of their own.
void addToJson(Json& json, const std::vector<Reading>& readings);

#endif  // ZYL_CLIENT_PROPERTIES_H
