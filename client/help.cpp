#include "client/help.h"

#include "client/library/parse.h"
#include "client/library/properties.h"
#include "client/options.h"

namespace {

constexpr char kUsage[] = "Usage: kwoctl [OPTION]... COMMAND [ARGUMENT]...\n\n";

constexpr char kHelpEnd[] =
        "\n"
        "Options, anywhere:\n"
        "  --json            print results, and what goes wrong, as JSON\n"
        "  --wait SECONDS    wait until the service is there\n"
        "  --bands LIST|FILE the centres of the ten bands in Hz; else those of /etc/zyl/bands or\n"
        "                    /data/misc/zyl/bands, if the maker has such a file\n"
        "  --color WHEN      bars and colours: always, never, or auto, on a terminal\n"
        "  -h, --help, -v, --version\n"
        "\n"
        "ROUTE is speaker, lineout or bluetooth. FILE may be - for standard input or output.\n"
        "GAIN is %s;\n"
        "a sign, a point or dB says decibels: +3, 0.5, -1.5dB. kwoctl help COMMAND tells more.\n"
        "Exit status: 0 done, 1 refused or different, 2 wrong usage, 3 no service.\n";

constexpr const char* kShortList[] = {"status", "effect", "stereo", "geq",
                                      "try",    "undo",   "preset", "verify"};

void printLine(FILE* out, const Command& command) {
    fprintf(out, "  %-14s %-26s %s\n", command.name.c_str(), command.arguments.c_str(),
            command.summary.c_str());
}

}  // namespace

void printShortHelp(FILE* out) {
    fputs(kUsage, out);
    for (const char* name : kShortList) printLine(out, *findCommand(name));
    fputs("\nkwoctl help lists all commands, kwoctl help COMMAND tells more about one.\n", out);
}

void printHelp(FILE* out) {
    fputs(kUsage, out);
    for (const CommandTable* table : commandTables()) {
        for (const Command& command : *table) printLine(out, command);
    }
    fprintf(out, kHelpEnd, kGainRange);
}

void printHelp(const Command& command) {
    const char* usage = "Usage: ";
    bool shown = false;
    for (const CommandTable* table : commandTables()) {
        for (const Command& row : *table) {
            // A command's further rows follow it without a name.
            if (!row.name.empty()) shown = &row == &command;
            if (!shown) continue;
            printf("%skwoctl %s %s\n           %s\n", usage, command.name.c_str(),
                   row.arguments.c_str(), row.summary.c_str());
            usage = "       ";
        }
    }
    if (command.options != Command::kNone)
        printf("\nTakes %s.\n", namesOf(command.options).c_str());
    if (!command.details.empty()) printf("\n%s", command.details.c_str());
    const bool sets = command.name == "set";
    if (sets || command.name == "get") {
        printf("\nKeys: %s\n", joinWords(keys(sets)).c_str());
        printf("gains.0 to gains.%d are the bands by themselves.\n", kGEQBandCount - 1);
    }
}
