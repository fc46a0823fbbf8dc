// What kwoctl says when something does not go as asked. Complaints go to standard error as
// "kwoctl: WHAT: WHY", with what to do behind it where there is something.

#ifndef ZYL_CLIENT_ERRORS_H
#define ZYL_CLIENT_ERRORS_H

#include <cstdint>
#include <string>

#include "client/command.h"

// Says in words why a result is not 0; returns the exit status that goes with the result.
ExitStatus reportResult(const std::string& what, int32_t result);

// A mistake in the arguments: `expected` says what would be right. Returns kWrongUsage.
ExitStatus reportUsage(const std::string& what, const std::string& given,
                       const std::string& expected);

// Anything else that stands in the way. Returns kRefused.
ExitStatus reportRefusal(const std::string& what, const std::string& why);

#endif  // ZYL_CLIENT_ERRORS_H
