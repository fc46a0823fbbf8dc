// A command of kwoctl is one row of a table: its name, its arguments, its help and what it does.

#ifndef ZYL_CLIENT_COMMAND_H
#define ZYL_CLIENT_COMMAND_H

#include <string>
#include <vector>

#include "interface/Izyl_kwo_service.h"

enum ExitStatus {
    kDone = 0,
    kRefused = 1,  // by the service, or by a file that cannot be read or written
    kWrongUsage = 2,
    kNoService = 3,
};

// The words after the command's name.
using Arguments = std::vector<std::string>;

struct Command {
    const char* name;
    const char* arguments;
    const char* help;
    size_t fewestArguments;
    size_t mostArguments;
    ExitStatus (*run)(Izyl_kwo_service& service, const Arguments& arguments);
};

extern const std::vector<Command> kBasicCommands;
extern const std::vector<Command> kEqualiserCommands;
extern const std::vector<Command> kBlockCommands;
extern const std::vector<Command> kTuningCommands;

#endif  // ZYL_CLIENT_COMMAND_H
