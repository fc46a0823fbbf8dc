// The command line: options, which may stand anywhere, and words.

#ifndef ZYL_CLIENT_OPTIONS_H
#define ZYL_CLIENT_OPTIONS_H

#include "client/command.h"

struct Given {
    Options options;
    Arguments words;
    bool help = false;
    bool version = false;
    unsigned commandOptions = Command::kNone;  // those given that only some commands take
};

Outcome readOptions(int argc, char** argv, Given* given);

// The names of these options, for what is said about them.
std::string namesOf(unsigned commandOptions);

#endif  // ZYL_CLIENT_OPTIONS_H
