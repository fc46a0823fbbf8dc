// What the commands that change something have in common.

#ifndef ZYL_CLIENT_CHANGE_H
#define ZYL_CLIENT_CHANGE_H

#include "client/command.h"
#include "client/library/recorded.h"
#include "client/library/snapshot.h"

// What a command line asks for, before anything is sent: "set", "restore", "geq load" and
// "preset load" do, and whatever they do can be tried.
struct Wanted {
    std::vector<Change> changes;
    Equal equal = Equal::kSkip;
    bool onlyNamed = false;         // nothing else may be switched on for it, not for a moment
    std::vector<std::string> lost;  // what of a curve the bands cannot render
};

// Each takes the words behind its name.
Outcome wantSet(const Arguments& assignments, Wanted* wanted);
Outcome wantSnapshot(Session& session, const std::string& file, Wanted* wanted);
Outcome wantCurve(Session& session, const std::string& file, Wanted* wanted);
Outcome wantPreset(Session& session, const std::string& name, Wanted* wanted);
// Any of them by its command line, "geq load FILE" for instance. kWrongUsage for others.
Outcome want(Session& session, const Arguments& words, Wanted* wanted);

// The file of a preset. kWrongUsage for a name that makes no file.
Outcome presetFile(const std::string& name, std::string* file);
// Reads a file that is a snapshot, a preset by its name, or, as "now", the device.
Outcome readSnapshot(Session& session, const std::string& source, Snapshot* snapshot);

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
