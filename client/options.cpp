#include "client/options.h"

#include <getopt.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "client/library/parse.h"

namespace {

// A conversion may want megabytes to work in; more than a file may have is a slip of the finger.
constexpr int32_t kMostWork = 16 << 20;

enum Letter : int {
    kJson = 0x100,  // behind all characters
    kWait,
    kColour,
    kBands,
    kWork,
    kDryRun,
    kBlind,
    kInterval,
    kNoCheck,
};

constexpr option kLongOptions[] = {
        {"json", no_argument, nullptr, kJson},
        {"wait", required_argument, nullptr, kWait},
        {"color", required_argument, nullptr, kColour},
        {"bands", required_argument, nullptr, kBands},
        {"work", required_argument, nullptr, kWork},
        {"dry-run", no_argument, nullptr, kDryRun},
        {"blind", no_argument, nullptr, kBlind},
        {"interval", required_argument, nullptr, kInterval},
        {"no-check", no_argument, nullptr, kNoCheck},
        {"help", no_argument, nullptr, 'h'},
        {"version", no_argument, nullptr, 'v'},
        {nullptr, 0, nullptr, 0},
};

// "-": words come in their order, wherever options stand. ":": no messages but ours. The digits and
// the point begin negative numbers, which are words.
constexpr char kShortOptions[] = "-:hv0::1::2::3::4::5::6::7::8::9::.::";

struct Named {
    Command::Option option;
    const char* name;
};

constexpr Named kCommandOptions[] = {
        {Command::kWork, "--work"},        {Command::kDryRun, "--dry-run"},
        {Command::kBlind, "--blind"},      {Command::kInterval, "--interval"},
        {Command::kNoCheck, "--no-check"},
};

bool showsColours() {
    const char* terminal = getenv("TERM");
    return getenv("NO_COLOR") == nullptr && terminal != nullptr && strcmp(terminal, "dumb") != 0 &&
           strncmp(terminal, "vt1", 3) != 0;
}

Outcome setColour(Options& options, const std::string& when) {
    if (when != "always" && when != "never" && when != "auto") {
        return wrongUsage("--color", when, "always, never or auto");
    }
    const bool terminal = isatty(STDOUT_FILENO) != 0;
    options.bars = when == "always" || (when == "auto" && terminal);
    options.colour = when == "always" || (options.bars && showsColours());
    return done();
}

Outcome takeSeconds(const char* name, const std::string& text, double lowest, double* seconds) {
    if (parseReal(text, seconds) && *seconds >= lowest) return done();
    return wrongUsage(name, text,
                      format("a number of seconds, %s or more", formatReal(lowest).c_str()));
}

Outcome takeOption(int letter, const char* value, Given* given) {
    constexpr double kShortestInterval = 0.1;
    Options& options = given->options;
    switch (letter) {
        case kJson: options.json = true; return done();
        case 'h': given->help = true; return done();
        case 'v': given->version = true; return done();
        case kWait: return takeSeconds("--wait", value, 0, &options.waitSeconds);
        case kColour: return setColour(options, value);
        case kBands: options.bands = value; return done();
        case kDryRun:
            options.dryRun = true;
            given->commandOptions |= Command::kDryRun;
            return done();
        case kBlind:
            options.blind = true;
            given->commandOptions |= Command::kBlind;
            return done();
        case kNoCheck:
            options.check = false;
            given->commandOptions |= Command::kNoCheck;
            return done();
        case kInterval:
            given->commandOptions |= Command::kInterval;
            return takeSeconds("--interval", value, kShortestInterval, &options.interval);
        case kWork:
            given->commandOptions |= Command::kWork;
            if (parseNumber(value, &options.workSize) && options.workSize >= 0 &&
                options.workSize <= kMostWork) {
                return done();
            }
            return wrongUsage("--work", value, format("a number of bytes, 0 to %d", kMostWork));
        default: break;
    }
    given->words.push_back(std::string("-") + static_cast<char>(letter) +
                           (value == nullptr ? "" : value));
    return done();
}

}  // namespace

Outcome readOptions(int argc, char** argv, Given* given) {
    constexpr int kWord = 1;
    setColour(given->options, "auto");
    opterr = 0;
    for (;;) {
        const int before = optind;
        const int letter = getopt_long(argc, argv, kShortOptions, kLongOptions, nullptr);
        if (letter == -1) break;
        Outcome outcome;
        if (letter == ':') {
            outcome = wrongUsage(argv[before], argv[before], "followed by its value");
        } else if (letter == '?') {
            outcome = wrongUsage(argv[before], argv[before], "an option; see kwoctl help");
        } else if (letter == kWord) {
            given->words.emplace_back(optarg);
        } else {
            outcome = takeOption(letter, optarg, given);
        }
        if (!outcome.ok()) return outcome;
    }
    // What stands behind "--".
    given->words.insert(given->words.end(), argv + optind, argv + argc);
    return done();
}

std::string namesOf(unsigned commandOptions) {
    std::vector<std::string> names;
    for (const Named& row : kCommandOptions) {
        if ((commandOptions & row.option) != 0) names.emplace_back(row.name);
    }
    return joinWords(names);
}
