// kwoctl: the audio-effect service from the command line.

#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "client/command.h"
#include "client/errors.h"
#include "client/parse.h"
#include "client/properties.h"

namespace {

constexpr char kVersion[] = "1.0";

constexpr char kHelpEnd[] =
        "\n"
        "Options:\n"
        "  --json          print what is read as JSON\n"
        "  --wait SECONDS  wait until the service is there\n"
        "  --color WHEN    bars and colours: always, never, or auto, on a terminal\n"
        "  --work BYTES    tune: the size of the conversion library's work area\n"
        "  --help, --version\n"
        "\n"
        "ROUTE is speaker, lineout or bluetooth. GAIN is 725 to 32767, or decibels such as +3dB "
        "or\n"
        "-1.5dB. FILE may be - for standard input or output. kwoctl help COMMAND tells more.\n"
        "Exit status: 0 done, 1 refused or different, 2 wrong usage, 3 no service.\n";

struct Given {
    Options options;
    Arguments words;
    bool help = false;
    bool version = false;
};

bool showsColours() {
    const char* terminal = getenv("TERM");
    return getenv("NO_COLOR") == nullptr && terminal != nullptr && strcmp(terminal, "dumb") != 0 &&
           strncmp(terminal, "vt1", 3) != 0;
}

ExitStatus setColour(Options& options, const std::string& when) {
    if (when != "always" && when != "never" && when != "auto") {
        return reportUsage("--color", when, "always, never or auto");
    }
    const bool terminal = isatty(STDOUT_FILENO) != 0;
    options.bars = when == "always" || (when == "auto" && terminal);
    options.colour = when == "always" || (options.bars && showsColours());
    return kDone;
}

ExitStatus takeValue(Options& options, const std::string& option, const std::string& value) {
    if (option == "--color") return setColour(options, value);
    if (option == "--wait") {
        double seconds = 0;
        if (!parseReal(value, &seconds) || seconds < 0) {
            return reportUsage(option, value, "a number of seconds");
        }
        options.waitSeconds = seconds;
        return kDone;
    }
    int32_t bytes = 0;
    if (!parseNumber(value, &bytes) || bytes < 0) {
        return reportUsage(option, value, "a number of bytes");
    }
    options.workSize = bytes;
    return kDone;
}

// Options may stand anywhere; behind "--" nothing is an option. A negative number is none.
ExitStatus takeArguments(const Arguments& words, Given* given) {
    setColour(given->options, "auto");
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            given->words.insert(given->words.end(), words.begin() + static_cast<ptrdiff_t>(i) + 1,
                                words.end());
            return kDone;
        }
        if (word.compare(0, 2, "--") != 0) {
            given->words.push_back(word);
        } else if (word == "--json") {
            given->options.json = true;
        } else if (word == "--help") {
            given->help = true;
        } else if (word == "--version") {
            given->version = true;
        } else if (word == "--wait" || word == "--color" || word == "--work") {
            if (++i == words.size()) return reportUsage(word, word, "followed by its value");
            const ExitStatus status = takeValue(given->options, word, words[i]);
            if (status != kDone) return status;
        } else {
            return reportUsage(word, word, "an option; see kwoctl help");
        }
    }
    return kDone;
}

ExitStatus checkUsage(const Command& command, const Given& given) {
    const Arguments& words = given.words;
    const size_t count = words.size() - 1;
    if (count < command.fewestArguments || count > command.mostArguments) {
        fprintf(stderr, "kwoctl: usage: kwoctl %s %s\n", command.name, command.arguments);
        return kWrongUsage;
    }
    const auto refuses = [&](bool set, const char* option) {
        return set && strstr(command.options, option) == nullptr;
    };
    if (refuses(given.options.json, "--json")) {
        return reportUsage(command.name, "--json", "an option of this command");
    }
    if (refuses(given.options.workSize >= 0, "--work")) {
        return reportUsage(command.name, "--work", "an option of this command");
    }
    return kDone;
}

}  // namespace

const Command* findCommand(const std::string& name) {
    for (const auto* table : kCommandTables) {
        for (const Command& command : *table) {
            if (name == command.name && command.run != nullptr) return &command;
        }
    }
    return nullptr;
}

void printHelp(FILE* out) {
    fprintf(out, "Usage: kwoctl [OPTION]... COMMAND [ARGUMENT]...\n\n");
    for (const auto* table : kCommandTables) {
        for (const Command& command : *table) {
            fprintf(out, "  %-14s %-22s %s\n", command.name, command.arguments, command.summary);
        }
    }
    fputs(kHelpEnd, out);
}

void printHelp(const Command& command) {
    const char* usage = "Usage: ";
    bool shown = false;
    for (const auto* table : kCommandTables) {
        for (const Command& row : *table) {
            // A command's further rows follow it without a name.
            if (row.name[0] != '\0') shown = &row == &command;
            if (!shown) continue;
            printf("%skwoctl %s %s\n           %s\n", usage, command.name, row.arguments,
                   row.summary);
            usage = "       ";
        }
    }
    if (command.details[0] != '\0') printf("\n%s", command.details);
    const bool sets = command.name == std::string("set");
    if (sets || command.name == std::string("get")) printf("\nKeys: %s\n", keys(sets).c_str());
}

int main(int argc, char** argv) {
    Given given;
    const ExitStatus taken = takeArguments(Arguments(argv + 1, argv + argc), &given);
    if (taken != kDone) return taken;
    if (given.version) {
        printf("kwoctl %s\n", kVersion);
        return kDone;
    }
    if (given.help) given.words.insert(given.words.begin(), "help");
    if (given.words.empty()) {
        printHelp(stderr);
        return kWrongUsage;
    }
    const Command* command = findCommand(given.words[0]);
    if (command == nullptr) {
        fprintf(stderr, "kwoctl: %s: no such command; see kwoctl help\n", given.words[0].c_str());
        return kWrongUsage;
    }
    if (given.help) given.words.resize(std::min<size_t>(given.words.size(), 2));
    const ExitStatus usage = checkUsage(*command, given);
    if (usage != kDone) return usage;
    Session session(given.options);
    if (command->needs == Command::kService && !session.connect()) return kNoService;
    const ExitStatus status =
            command->run(session, Arguments(given.words.begin() + 1, given.words.end()));
    // What was read is lost when it cannot be written: a full disk, say.
    const bool written = fflush(stdout) == 0 && ferror(stdout) == 0;
    return written || status != kDone ? status
                                      : reportRefusal("standard output", "cannot be written");
}
