// What a command line asks for, before anything is sent.

#ifndef ZYL_CLIENT_WANTED_H
#define ZYL_CLIENT_WANTED_H

#include "client/command.h"
#include "client/library/snapshot.h"

// "set", "restore", "geq load" and "preset load" want something, and whatever they want can be
// tried.
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

#endif  // ZYL_CLIENT_WANTED_H
