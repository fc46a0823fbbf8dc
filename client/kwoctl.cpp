// kwoctl: the audio-effect service from the command line.

#include <binder/IServiceManager.h>

#include <cstdio>

#include "client/command.h"

namespace {

constexpr const std::vector<Command>* kTables[] = {&kBasicCommands, &kEqualiserCommands,
                                                   &kBlockCommands, &kTuningCommands};

void printHelp(FILE* out) {
    fprintf(out, "Usage: kwoctl COMMAND [ARGUMENT]...\n\n");
    for (const auto* table : kTables) {
        for (const Command& command : *table) {
            fprintf(out, "  %-14s %-24s %s\n", command.name, command.arguments, command.help);
        }
    }
    fprintf(out,
            "\nROUTE is speaker, lineout or bluetooth. GAIN is 725 to 32767, or decibels such as\n"
            "+3dB or -1.5dB. Exit status: 0 done, 1 refused, 2 wrong usage, 3 no service.\n");
}

const Command* findCommand(const std::string& name) {
    for (const auto* table : kTables) {
        for (const Command& command : *table) {
            if (name == command.name && command.run != nullptr) return &command;
        }
    }
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments words(argv + 1, argv + argc);
    if (words.empty()) {
        printHelp(stderr);
        return kWrongUsage;
    }
    if (words[0] == "help" || words[0] == "--help") {
        printHelp(stdout);
        return kDone;
    }
    const Command* command = findCommand(words[0]);
    if (command == nullptr) {
        fprintf(stderr, "kwoctl: %s: no such command; see kwoctl help\n", words[0].c_str());
        return kWrongUsage;
    }
    const Arguments arguments(words.begin() + 1, words.end());
    if (arguments.size() < command->fewestArguments || arguments.size() > command->mostArguments) {
        fprintf(stderr, "kwoctl: usage: kwoctl %s %s\n", command->name, command->arguments);
        return kWrongUsage;
    }
    const android::sp<Izyl_kwo_service> service = Izyl_kwo_service::asInterface(
            android::defaultServiceManager()->checkService(android::String16(kZylKwoServiceName)));
    if (service == nullptr) {
        fprintf(stderr, "kwoctl: %s: not running; start it with: start %s\n", kZylKwoServiceName,
                kZylKwoServiceName);
        return kNoService;
    }
    return command->run(*service, arguments);
}
