// What the commands that change something have in common.

#ifndef ZYL_CLIENT_CHANGE_H
#define ZYL_CLIENT_CHANGE_H

#include "client/library/recorded.h"
#include "client/wanted.h"

ChangeRequest makeRequest(const Session& session, const Wanted& wanted);

// Applies and records it, and looks whether the DSP followed. With --dry-run it prints the steps
// instead and sends nothing. `transitions` may be null.
Outcome change(Session& session, const Wanted& wanted, std::vector<Transition>* transitions);

// One property, also when it is set so already.
Outcome changeOne(Session& session, const Property& property, const Value& value);

// The value of a switch after a word: on, off or toggle.
Outcome switchedValue(Session& session, const Property& property, const std::string& word,
                      Value* value);

// Some of the service's calls end well although the DSP did not follow. Reads back what it has.
Outcome checkDsp(Session& session);

// Says when something that was taken will not work later.
void warnAbout(const Session& session, const std::vector<Change>& changes, bool effectOn);

// Prints properties, as lines or as JSON.
Outcome show(Session& session, const Choice& wanted);
Outcome show(Session& session, const Property& property);

#endif  // ZYL_CLIENT_CHANGE_H
