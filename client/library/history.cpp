#include "client/library/history.h"

#include <algorithm>
#include <functional>
#include <sstream>

#include "client/library/files.h"
#include "client/library/parse.h"
#include "client/library/storage.h"

namespace {

struct Name {
    HistoryEntry::State state;
    const char* name;
};

constexpr Name kNames[] = {
        {HistoryEntry::kIncomplete, "incomplete"},
        {HistoryEntry::kComplete, "done"},
        {HistoryEntry::kUndone, "undone"},
        {HistoryEntry::kOnTrial, "on-trial"},
        {HistoryEntry::kKeep, "keep"},
        {HistoryEntry::kBack, "back"},
};

constexpr char kHead[] = "# What kwoctl changed, for kwoctl history and kwoctl undo.\n";

std::string historyFile() {
    return storageDirectory() + "history";
}

std::string changeLines(const char* side, const std::vector<Change>& changes) {
    std::string lines;
    for (const Change& change : changes) {
        lines += std::string(side) + " " + change.property->key + " " +
                 formatValue(*change.property, change.value) + "\n";
    }
    return lines;
}

void parseChange(const std::string& text, std::vector<Change>* changes) {
    std::vector<std::string> words = splitWords(text);
    const Property* const property = words.empty() ? nullptr : findProperty(words[0]);
    if (property == nullptr) return;
    words.erase(words.begin());
    Value value;
    if (parseValue(*property, words, &value).ok()) changes->push_back({property, value});
}

void parseState(const std::string& text, HistoryEntry::State* state) {
    for (const Name& row : kNames) {
        if (text == row.name) *state = row.state;
    }
}

Outcome edit(const std::function<void(History*)>& change) {
    Outcome made = makeStorage("");
    if (!made.ok()) return made;
    FileLock lock;
    if (!lock.take(historyFile() + ".lock", FileLock::kWait)) {
        return refusal(historyFile() + ".lock", "cannot be locked");
    }
    History history = loadHistory();
    change(&history);
    if (history.size() > kHistoryLength) {
        history.erase(history.begin(), history.end() - static_cast<ptrdiff_t>(kHistoryLength));
    }
    return replaceFile(historyFile(), formatHistory(history));
}

}  // namespace

std::string nameOf(HistoryEntry::State state) {
    for (const Name& row : kNames) {
        if (row.state == state) return row.name;
    }
    return "";
}

std::vector<Transition> HistoryEntry::transitions() const {
    std::vector<Transition> transitions;
    for (const Change& change : before) {
        Transition transition = {change.property, true, false, change.value, Value()};
        for (const Change& other : after) {
            if (other.property != change.property) continue;
            transition.hasAfter = true;
            transition.after = other.value;
        }
        if (!transition.hasAfter || transition.before != transition.after) {
            transitions.push_back(transition);
        }
    }
    return transitions;
}

void HistoryEntry::addBefore(const Property& property, const Value& previous) {
    for (const Change& change : before) {
        const bool covers = change.property->count > property.count;
        if (change.property == &property || (covers && overlap(*change.property, property))) return;
    }
    before.push_back({&property, previous});
}

std::string formatHistory(const History& history) {
    std::string text = kHead;
    for (const HistoryEntry& entry : history) {
        text += format("\nchange %d\ntime %lld  # %s\n", entry.number,
                       static_cast<long long>(entry.time), readableTime(entry.time).c_str());
        text += "command " + entry.command + "\nstate " + nameOf(entry.state) + "\n";
        text += changeLines("before", entry.before) + changeLines("after", entry.after);
    }
    return text;
}

History parseHistory(const std::string& text) {
    History history;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const size_t blank = line.find(' ');
        const std::string word = line.substr(0, blank);
        const std::string rest = blank == std::string::npos ? "" : line.substr(blank + 1);
        if (word == "change") {
            history.emplace_back();
            parseNumber(rest, &history.back().number);
        }
        if (history.empty()) continue;
        HistoryEntry& entry = history.back();
        if (word == "time") std::istringstream(rest) >> entry.time;
        if (word == "command") entry.command = rest;
        if (word == "state") parseState(rest, &entry.state);
        if (word == "before") parseChange(rest, &entry.before);
        if (word == "after") parseChange(rest, &entry.after);
    }
    return history;
}

std::vector<HistoryEntry> lastUndoable(const History& history, size_t count) {
    std::vector<HistoryEntry> found;
    for (size_t i = history.size(); i-- > 0 && found.size() < count;) {
        if (history[i].state == HistoryEntry::kUndone) continue;
        found.push_back(history[i]);
    }
    return found;
}

std::vector<Change> undoing(const std::vector<HistoryEntry>& newestFirst) {
    HistoryEntry joined;
    for (size_t i = newestFirst.size(); i-- > 0;) {
        for (const Change& change : newestFirst[i].before) {
            joined.addBefore(*change.property, change.value);
        }
    }
    return joined.before;
}

History loadHistory() {
    std::string text;
    return readTextFile(historyFile(), &text).ok() ? parseHistory(text) : History();
}

Outcome addToHistory(HistoryEntry* entry) {
    return edit([entry](History* history) {
        entry->number = history->empty() ? 1 : history->back().number + 1;
        history->push_back(*entry);
    });
}

Outcome updateHistory(const HistoryEntry& entry) {
    return edit([&entry](History* history) {
        for (HistoryEntry& other : *history) {
            if (other.number == entry.number) other = entry;
        }
    });
}

Outcome updateBefore(const HistoryEntry& entry) {
    return edit([&entry](History* history) {
        for (HistoryEntry& other : *history) {
            if (other.number == entry.number) other.before = entry.before;
        }
    });
}

bool changeState(int number, HistoryEntry::State from, HistoryEntry::State to) {
    bool changed = false;
    Outcome saved = edit([&](History* history) {
        for (HistoryEntry& entry : *history) {
            if (entry.number != number || entry.state != from) continue;
            entry.state = to;
            changed = true;
        }
    });
    return saved.ok() && changed;
}

Outcome removeFromHistory(int number) {
    return edit([number](History* history) {
        history->erase(std::remove_if(history->begin(), history->end(),
                                      [number](const HistoryEntry& entry) {
                                          return entry.number == number;
                                      }),
                       history->end());
    });
}
