// What a device holds at a moment, and what two such states differ in.

#ifndef ZYL_CLIENT_LIBRARY_STATE_H
#define ZYL_CLIENT_LIBRARY_STATE_H

#include <functional>

#include "client/library/connection.h"
#include "client/library/properties.h"

// In the order of the table. What the device does not have is not there.
using State = std::vector<Reading>;

using Choice = std::function<bool(const Property&)>;
bool everything(const Property& property);
bool settable(const Property& property);

// Reads what is chosen. The outcome is the first failure; what could be read is there all the same.
Outcome readState(Connection& connection, const Choice& wanted, State* state);
Outcome readValue(Connection& connection, const Property& property, Value* value);

// Null when it is not there. One band is found in the gains as well.
const Value* find(const State& state, const Property& property, Value* band);
bool has(const State& state, const Property& property);
// False also when it is not there.
bool isOn(const State& state, const Property& property);

// While the effect is off the service gives the equaliser as off, whatever it is. Leaves that out.
void removeUntold(State* state);

// A side that has no value was not there, or was not told.
struct Transition {
    const Property* property;
    bool hasBefore;
    bool hasAfter;
    Value before;
    Value after;
};
std::vector<Transition> compareStates(const State& before, const State& after);

// "off -> on"; of several numbers, those that differ with their places: "3: 4096 -> 5786".
std::string describe(const Transition& transition);
// As an object with a member a property: {"stereo":{"before":1,"after":2}}.
void addToJson(Json& json, const std::vector<Transition>& transitions);

#endif  // ZYL_CLIENT_LIBRARY_STATE_H
