// The helps.

#ifndef ZYL_CLIENT_HELP_H
#define ZYL_CLIENT_HELP_H

#include <cstdio>

#include "client/command.h"

// What most people want, for a kwoctl without arguments.
void printShortHelp(FILE* out);
void printHelp(FILE* out);
void printHelp(const Command& command);

#endif  // ZYL_CLIENT_HELP_H
