// What kwoctl says when something does not go as asked. Errors go to standard error as
// "kwoctl: WHAT: WHY".

#ifndef ZYL_CLIENT_REPORT_H
#define ZYL_CLIENT_REPORT_H

#include <cstdint>

#include "client/command.h"

// Says in words why a result is not 0; returns the exit status that goes with the result.
ExitStatus reportResult(const char* what, int32_t result);

// A mistake in the arguments: `expected` says what would be right. Returns kWrongUsage.
ExitStatus reportUsage(const char* what, const std::string& given, const char* expected);

// A file that cannot be used, by errno. Returns kRefused.
ExitStatus reportFile(const std::string& file);

#endif  // ZYL_CLIENT_REPORT_H
