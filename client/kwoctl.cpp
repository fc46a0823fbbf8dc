// kwoctl: the audio-effect service from the command line.

#include <memory>

#include "client/command.h"
#include "client/console.h"
#include "client/help.h"
#include "client/library/parse.h"
#include "client/library/recorded.h"
#include "client/options.h"

namespace {

constexpr char kVersion[] = "2.0";

// A guard has no terminal, and nobody who reads what it says. It waits as long as a phone may take
// to get its service back.
ExitStatus guard() {
    constexpr double kPatience = 600;
    Connection connection;
    HistoryEntry ended;
    return recoverTrial(connection, FileLock::kWait, kPatience, &ended).status;
}

Outcome checkUsage(const Command& command, const Given& given) {
    const size_t count = given.words.size() - 1;
    if (count < command.fewest || count > command.most) {
        Outcome outcome = wrongUsage(command.name, "", "");
        outcome.why = trim("usage: kwoctl " + command.name + " " + command.arguments);
        return outcome;
    }
    const unsigned refused = given.commandOptions & ~command.options;
    if (refused == 0) return done();
    return wrongUsage(command.name, namesOf(refused), "an option of this command");
}

// A trial whose process was killed together with its guard, by a reboot for instance, is ended by
// the next that comes along.
Outcome endForgottenTrial(Session& session) {
    HistoryEntry ended;
    Outcome outcome = recoverTrial(session, FileLock::kTry, session.patience(), &ended);
    if (ended.number == 0 || !outcome.ok()) return outcome;
    warn(session.options, "try",
         "the trial of " + readableTime(ended.time) + " was cut off; " +
                 (ended.state == HistoryEntry::kKeep ? "it is kept" : "it is taken back"));
    return done();
}

Outcome run(const Command& command, Session& session, const Arguments& arguments) {
    Outcome outcome = findBands(session.options.bands, &session.bands);
    if (!outcome.ok() && !session.options.bands.empty()) return outcome;
    // The maker's mistake is no reason to do nothing at all.
    if (!outcome.ok()) warn(session.options, outcome.what, outcome.why);
    outcome = done();
    if (command.needs == Command::kService) {
        outcome = session.connect(session.options.waitSeconds);
        if (outcome.ok()) outcome = endForgottenTrial(session);
    }
    if (outcome.ok()) outcome = command.run(session, arguments);
    // What was read is lost when it cannot be written: a full disk, say.
    const bool written = fflush(stdout) == 0 && ferror(stdout) == 0;
    return written || !outcome.ok() ? outcome : refusal("standard output", "cannot be written");
}

Outcome unknownCommand(const std::string& name) {
    const std::string nearest = nearestCommand(name);
    Outcome outcome = wrongUsage(name, "", "");
    outcome.why = "no such command";
    outcome.remedy = nearest.empty() ? "see kwoctl help" : "did you mean " + nearest + "?";
    return outcome;
}

Outcome runCommandLine(const Given& given) {
    Arguments words = given.words;
    if (given.help) words.insert(words.begin(), "help");
    const Command* const command = findCommand(words[0]);
    if (command == nullptr) return unknownCommand(words[0]);
    if (given.help && words.size() > 2) words.resize(2);
    Outcome usage = given.help ? done() : checkUsage(*command, given);
    if (!usage.ok()) return usage;
    Session session(given.options, joinWords(words));
    std::unique_ptr<Patience> patience;
    if (!command->waits) patience = std::make_unique<Patience>(session);
    return run(*command, session, Arguments(words.begin() + 1, words.end()));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && argv[1] == std::string(kGuardCommand)) return guard();
    Given given;
    Outcome outcome = readOptions(argc, argv, &given);
    if (outcome.ok() && given.version) {
        printf("kwoctl %s\n", kVersion);
        return kDone;
    }
    if (outcome.ok() && given.words.empty() && !given.help) {
        printShortHelp(stderr);
        return kWrongUsage;
    }
    if (outcome.ok()) outcome = runCommandLine(given);
    complain(given.options, outcome);
    return outcome.status;
}
