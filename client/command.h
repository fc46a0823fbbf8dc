// A command of kwoctl is one row of a table: its name, its arguments, its help and what it does.

#ifndef ZYL_CLIENT_COMMAND_H
#define ZYL_CLIENT_COMMAND_H

#include <cstdio>
#include <string>
#include <vector>

#include "client/library/outcome.h"
#include "client/session.h"

// The words after the command's name, without options.
using Arguments = std::vector<std::string>;

struct Command {
    enum Needs { kNothing, kService };
    // Options that only some commands take.
    enum Option : unsigned {
        kNone = 0,
        kWork = 1 << 0,
        kDryRun = 1 << 1,
        kBlind = 1 << 2,
        kInterval = 1 << 3,
        kNoCheck = 1 << 4,
    };
    using Run = Outcome (*)(Session& session, const Arguments& arguments);

    std::string name;  // empty for a further line of help about the command before it
    std::string arguments;
    std::string summary;
    Run run = nullptr;
    std::string details;  // for its own help: whole lines, or empty
    size_t fewest = 0;    // arguments
    size_t most = 0;
    Needs needs = kService;  // then the session is connected when the command runs
    unsigned options = kNone;
    bool waits = false;  // for a person or for time to pass, not for the service

    // For the makers below, one after the other.
    Command& takes(size_t fewestArguments, size_t mostArguments);
    Command& with(unsigned someOptions);
    Command& withoutService();
    Command& waiting();
    Command& explained(const std::string& text);
};

Command command(const char* name, const char* arguments, const char* summary, Command::Run run);
// A further way to call the command before it.
Command also(const char* arguments, const char* summary);

constexpr size_t kAnyNumberOfArguments = 1000;

using CommandTable = std::vector<Command>;
const CommandTable& settingCommands();
const CommandTable& equaliserCommands();
const CommandTable& snapshotCommands();
const CommandTable& trialCommands();
const CommandTable& historyCommands();
const CommandTable& comparisonCommands();
const CommandTable& tuningCommands();
const CommandTable& blockCommands();
const CommandTable& otherCommands();

// All of them, in the order of the help.
std::vector<const CommandTable*> commandTables();

// Null when there is none.
const Command* findCommand(const std::string& name);
// The command that was probably meant; empty when none is near.
std::string nearestCommand(const std::string& name);

#endif  // ZYL_CLIENT_COMMAND_H
