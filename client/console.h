// What kwoctl prints: results on standard output; complaints, warnings and what goes on meanwhile
// on standard error. With --json both carry lines of JSON, and nothing shows what goes on.

#ifndef ZYL_CLIENT_CONSOLE_H
#define ZYL_CLIENT_CONSOLE_H

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

#include "client/library/state.h"
#include "client/session.h"

// "kwoctl: WHAT: WHY; REMEDY" and, where that needs saying, a line about what holds now; or an
// object with the member "error". Nothing when there is nothing to say.
void complain(const Options& options, const Outcome& outcome);
// About something that was done nevertheless.
void warn(const Options& options, const std::string& what, const std::string& why);
// As the member "error" of an object.
void addToJson(Json& json, const Outcome& outcome);

// A line, at once: whoever reads a pipe waits for it.
void print(const Json& json, FILE* out = stdout);
void printValue(const Property& property, const Value& value);
// What was read: a line each, or an object.
void printState(const Session& session, const State& state);
// The same as a person looks at it: the gains one below the other, with their bands' frequencies,
// and what of a curve did not reach them.
void printOverview(const Session& session, const State& state,
                   const std::vector<std::string>& lost);
// "stereo            1 -> 2", a line each.
void printTransitions(const Session& session, const std::vector<Transition>& transitions);

// A line about what was done: on standard error when standard output carries a file's contents.
void printAbout(const std::string& file, const std::string& line);

// "[2/5] WHAT" on standard error, if that is a terminal; an empty text wipes it away.
void showProgress(size_t step, size_t steps, const std::string& what);

// Says on a terminal that a call of the service takes long, for as long as it does.
class Patience {
  public:
    // The connection outlives it.
    explicit Patience(const Connection& connection);
    ~Patience();
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;

  private:
    void watch();

    const Connection& mConnection;
    std::mutex mMutex;
    std::condition_variable mEnd;
    bool mEnded = false;  // guarded by mMutex
    std::thread mThread;
};

#endif  // ZYL_CLIENT_CONSOLE_H
