#include "client/command.h"

#include <algorithm>

namespace {

// How many letters must be added, left out or replaced to make one word of the other.
size_t distance(const std::string& first, const std::string& second) {
    std::vector<size_t> row(second.size() + 1);
    for (size_t i = 0; i < row.size(); ++i) row[i] = i;
    for (size_t i = 1; i <= first.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t k = 1; k < row.size(); ++k) {
            const size_t replaced = diagonal + (first[i - 1] == second[k - 1] ? 0 : 1);
            diagonal = row[k];
            row[k] = std::min({replaced, row[k] + 1, row[k - 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

Command& Command::takes(size_t fewestArguments, size_t mostArguments) {
    fewest = fewestArguments;
    most = mostArguments;
    return *this;
}

Command& Command::with(unsigned someOptions) {
    options = someOptions;
    return *this;
}

Command& Command::withoutService() {
    needs = kNothing;
    return *this;
}

Command& Command::waiting() {
    waits = true;
    return *this;
}

Command& Command::explained(const std::string& text) {
    details = text;
    return *this;
}

Command command(const char* name, const char* arguments, const char* summary, Command::Run run) {
    Command row;
    row.name = name;
    row.arguments = arguments;
    row.summary = summary;
    row.run = run;
    return row;
}

Command also(const char* arguments, const char* summary) {
    return command("", arguments, summary, nullptr);
}

std::vector<const CommandTable*> commandTables() {
    return {&settingCommands(), &equaliserCommands(), &snapshotCommands(),
            &trialCommands(),   &historyCommands(),   &comparisonCommands(),
            &tuningCommands(),  &blockCommands(),     &otherCommands()};
}

const Command* findCommand(const std::string& name) {
    for (const CommandTable* table : commandTables()) {
        for (const Command& command : *table) {
            if (name == command.name && command.run != nullptr) return &command;
        }
    }
    return nullptr;
}

std::string nearestCommand(const std::string& name) {
    constexpr size_t kFarthest = 2;
    std::string nearest;
    size_t shortest = kFarthest + 1;
    for (const CommandTable* table : commandTables()) {
        for (const Command& command : *table) {
            const size_t away = distance(name, command.name);
            // A short word has everything within reach.
            if (command.name.empty() || away >= shortest || away >= name.size()) continue;
            shortest = away;
            nearest = command.name;
        }
    }
    return nearest;
}
