// How something went, as data: whoever shows it to a person puts it into a line, or into JSON.

#ifndef ZYL_CLIENT_LIBRARY_OUTCOME_H
#define ZYL_CLIENT_LIBRARY_OUTCOME_H

#include <cstdint>
#include <string>
#include <vector>

// kwoctl ends with these.
enum ExitStatus {
    kDone = 0,
    kRefused = 1,     // by the service, the DSP or a file; or what was compared differs
    kWrongUsage = 2,  // a mistake in the arguments, in their form or their range: nothing was sent
    kNoService = 3,
};

struct Outcome {
    ExitStatus status = kDone;
    std::string what;  // the key, command or file that it is about
    std::string why;   // may be empty, when what was printed says it all
    std::string remedy;
    int32_t result = 0;              // the service's, or 0
    std::vector<std::string> holds;  // what is set now, a property each, when that needs saying

    bool ok() const { return status == kDone; }
};

Outcome done();

// Says in words what a result of the service means. kDone for 0.
Outcome resultOf(const std::string& what, int32_t result);

// A mistake in the arguments: `expected` says what would be right.
Outcome wrongUsage(const std::string& what, const std::string& given, const std::string& expected);

// Anything else that stands in the way.
Outcome refusal(const std::string& what, const std::string& why, const std::string& remedy = "");

// Differences were found and shown; there is no more to say.
Outcome differs();

#endif  // ZYL_CLIENT_LIBRARY_OUTCOME_H
