// The last changes that this user made with the client, as a file of readable text. Each is on disk
// before the device is changed, so that it can be taken back whatever happens to the client.

#ifndef ZYL_CLIENT_LIBRARY_HISTORY_H
#define ZYL_CLIENT_LIBRARY_HISTORY_H

#include <string>
#include <vector>

#include "client/library/plan.h"

struct HistoryEntry {
    enum State {
        kIncomplete,  // was not carried out to its end, and not taken back either
        kComplete,
        kUndone,
        kOnTrial,  // will be taken back unless it is kept
        kKeep,     // of a trial: it is to be kept,
        kBack,     // or to be taken back at once
    };

    int number = 0;
    int64_t time = 0;
    std::string command;
    State state = kIncomplete;
    std::vector<Change> before;
    std::vector<Change> after;

    std::vector<Transition> transitions() const;
    // Takes up what a property was, the first time that it is changed.
    void addBefore(const Property& property, const Value& previous);
};

std::string nameOf(HistoryEntry::State state);

// In the order of the numbers.
using History = std::vector<HistoryEntry>;
constexpr size_t kHistoryLength = 50;

std::string formatHistory(const History& history);
// Lines that it does not know are left out: a later version may have written them.
History parseHistory(const std::string& text);

// The last entries that can be undone, newest first; fewer when there are not so many.
std::vector<HistoryEntry> lastUndoable(const History& history, size_t count);
// What takes these back: of a property that several changed, what it was before the oldest.
std::vector<Change> undoing(const std::vector<HistoryEntry>& newestFirst);

// The file. Several processes may use it at a time.
History loadHistory();
// Gives the entry its number and adds it; the oldest make room.
Outcome addToHistory(HistoryEntry* entry);
// Replaces the entry of the same number.
Outcome updateHistory(const HistoryEntry& entry);
// Replaces what is to be gone back to, of the entry of the same number, and nothing else of it.
Outcome updateBefore(const HistoryEntry& entry);
// Changes the state of an entry only while it is one of another. False when it is not.
bool changeState(int number, HistoryEntry::State from, HistoryEntry::State to);
Outcome removeFromHistory(int number);

#endif  // ZYL_CLIENT_LIBRARY_HISTORY_H
