// Setting properties: several of them all, or none.

#ifndef ZYL_CLIENT_CHANGES_H
#define ZYL_CLIENT_CHANGES_H

#include <string>
#include <vector>

#include "client/properties.h"

struct Change {
    const Property* property;
    Value value;
};

// As the value of a change: what the property was before the first of the changes to it.
const Value kAsBefore = {};

// Sends the changes in order. What would not be kept is refused before the first is sent; when one
// is refused or does not read back as it was set, those before it are taken back. `progress` shows
// on a terminal how far it is.
ExitStatus applyChanges(Session& session, const std::vector<Change>& changes,
                        bool progress = false);

// Applies the one change and prints what then holds.
ExitStatus setAndShow(Session& session, const Property& property,
                      const std::vector<std::string>& words);

// Sets a switch to a word: on, off or toggle.
ExitStatus switchTo(Session& session, const Property& property, const std::string& word);

// Prints a property, by itself or as JSON.
ExitStatus show(Session& session, const Property& property);

// What brings the device to the wanted values: leaves out what it has already, and switches effect
// and equaliser on for as long as gains need it.
ExitStatus planChanges(Session& session, const std::vector<Change>& wanted,
                       std::vector<Change>* plan);

// "[2/5] WHAT" on standard error, if that is a terminal; an empty text wipes it away.
void showProgress(size_t step, size_t steps, const std::string& what);

#endif  // ZYL_CLIENT_CHANGES_H
