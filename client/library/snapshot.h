// All that a user can set, as readable text: a key and its value a line, # before remarks.

#ifndef ZYL_CLIENT_LIBRARY_SNAPSHOT_H
#define ZYL_CLIENT_LIBRARY_SNAPSHOT_H

#include <string>

#include "client/library/plan.h"

struct Snapshot {
    std::string generation;  // empty when the text does not say
    std::vector<Change> changes;
};

std::string formatSnapshot(const State& state);

// `name` is the file's, for what is said about mistakes.
Outcome parseSnapshot(const std::string& name, const std::string& text, Snapshot* snapshot);

// Refuses one that was taken on a device of another generation than that of `present`.
Outcome checkGeneration(const std::string& name, const Snapshot& snapshot, const State& present);

// As a state that can be compared.
State stateOf(const Snapshot& snapshot);

#endif  // ZYL_CLIENT_LIBRARY_SNAPSHOT_H
