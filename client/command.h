// A command of kwoctl is one row of a table: its name, its arguments, its help and what it does.

#ifndef ZYL_CLIENT_COMMAND_H
#define ZYL_CLIENT_COMMAND_H

#include <cstdio>
#include <string>
#include <vector>

#include "client/session.h"

enum ExitStatus {
    kDone = 0,
    kRefused = 1,  // by the service, or by a file; or what was compared differs
    kWrongUsage = 2,
    kNoService = 3,
};

// The words after the command's name, without options.
using Arguments = std::vector<std::string>;

struct Command {
    enum Needs { kNothing, kService };

    const char* name;
    const char* arguments;
    const char* summary;
    const char* details;  // for its own help: whole lines, or empty
    size_t fewestArguments;
    size_t mostArguments;
    Needs needs;          // with kService the session has one when the command runs
    const char* options;  // which of --json and --work it takes, in one text
    ExitStatus (*run)(Session& session, const Arguments& arguments);
};

constexpr size_t kAnyNumber = 1000;

extern const std::vector<Command> kSettingCommands;
extern const std::vector<Command> kEqualiserCommands;
extern const std::vector<Command> kTuningCommands;
extern const std::vector<Command> kSnapshotCommands;
extern const std::vector<Command> kBlockCommands;
extern const std::vector<Command> kOtherCommands;

// In the order of the help.
constexpr const std::vector<Command>* kCommandTables[] = {&kSettingCommands, &kEqualiserCommands,
                                                          &kTuningCommands,  &kSnapshotCommands,
                                                          &kBlockCommands,   &kOtherCommands};

// Null when there is none.
const Command* findCommand(const std::string& name);
void printHelp(FILE* out);
void printHelp(const Command& command);

#endif  // ZYL_CLIENT_COMMAND_H
