// One run of kwoctl: its options, its service, and what it was asked for.

#ifndef ZYL_CLIENT_SESSION_H
#define ZYL_CLIENT_SESSION_H

#include <string>

#include "client/library/bands.h"
#include "client/library/connection.h"

struct Options {
    bool json = false;
    bool bars = false;    // standard output is for a person's eyes
    bool colour = false;  // and shows colours
    bool dryRun = false;
    bool blind = false;
    bool check = true;  // look whether the DSP followed
    double waitSeconds = 0;
    double interval = 1;   // seconds between two looks
    int32_t workSize = 0;  // bytes
    std::string bands;     // a list or a file, see findBands()
};

class Session : public Connection {
  public:
    Session(const Options& given, const std::string& commandLine)
        : options(given), command(commandLine) {}

    // For so long a command waits for a service that went away in the middle.
    double patience() const;

    const Options options;
    const std::string command;  // without options
    Bands bands;
};

#endif  // ZYL_CLIENT_SESSION_H
