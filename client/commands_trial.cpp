// Trials: what is set goes back by itself unless it is kept.

#include <unistd.h>

#include <chrono>

#include "client/change.h"
#include "client/console.h"
#include "client/library/parse.h"
#include "client/terminal.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLookMilliseconds = 200;
constexpr char kGoesOn[] = "its guard tries for ten minutes, and after that the next kwoctl does";

bool serviceIsGone(Session& session) {
    return android::IInterface::asBinder(&session.service())->pingBinder() != android::NO_ERROR;
}

// Why a trial ends.
struct End {
    bool keep;
    const char* why;
};

class Waiting {
  public:
    Waiting(Session& session, const Trial& trial, double seconds)
        : mSession(session),
          mTrial(trial),
          mEnd(Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(seconds))) {}

    End wait() {
        End end = {false, nullptr};
        while (end.why == nullptr) {
            showTime();
            end = look();
        }
        if (mCounts) fprintf(stderr, "\r%60s\r", "");
        return end;
    }

  private:
    End look() {
        int key = Keyboard::kNoKey;
        if (mKeyboard.isTerminal()) {
            key = mKeyboard.next(kLookMilliseconds);
        } else {
            usleep(kLookMilliseconds * 1000);
        }
        if (key == '\n' || key == '\r') return {true, "key"};
        if (key == Keyboard::kEnd || mInterrupts.happened()) return {false, "interrupted"};
        const HistoryEntry::State state = mTrial.state();
        if (state == HistoryEntry::kKeep) return {true, "keep"};
        if (state == HistoryEntry::kBack) return {false, "undo"};
        if (serviceIsGone(mSession)) return {false, "service"};
        return {false, Clock::now() >= mEnd ? "time" : nullptr};
    }

    void showTime() const {
        if (!mCounts) return;
        const auto left = std::chrono::duration_cast<std::chrono::seconds>(mEnd - Clock::now());
        fprintf(stderr, "\r%3s s  Enter keeps it, Ctrl-C goes back ",
                std::to_string(left.count() + 1).c_str());
    }

    Session& mSession;
    const Trial& mTrial;
    const Clock::time_point mEnd;
    const Interrupts mInterrupts;
    Keyboard mKeyboard;
    const bool mCounts = isatty(STDERR_FILENO) != 0 && !mSession.options.json;
};

void printTrial(const Session& session, const char* state, const char* why, double seconds,
                const std::vector<Transition>& transitions) {
    if (!session.options.json) {
        if (seconds > 0) {
            printTransitions(session, transitions);
            printf("trial          for %s s; kwoctl keep keeps it, kwoctl undo ends it\n",
                   formatReal(seconds).c_str());
        } else {
            printf("trial          %s%s%s\n", state, why[0] == '\0' ? "" : ": ", why);
        }
        fflush(stdout);
        return;
    }
    Json json;
    json.open('{').name("trial").text(state);
    if (seconds > 0) json.name("seconds").number(seconds);
    if (why[0] != '\0') json.name("why").text(why);
    json.name("changes");
    addToJson(json, transitions);
    print(json.close());
}

Outcome endWith(Session& session, Trial& trial, const End& end) {
    bool kept = end.keep;
    const std::vector<Transition> transitions = trial.transitions();
    Outcome outcome = end.keep ? trial.keep() : trial.goBack(session.patience(), &kept);
    if (!outcome.ok()) {
        if (outcome.status == kNoService) outcome.remedy = kGoesOn;
        return outcome;
    }
    printTrial(session, kept ? "kept" : "back", kept ? "" : end.why, 0, transitions);
    return done();
}

Outcome tryOut(Session& session, const Arguments& arguments) {
    double seconds = 0;
    constexpr double kLongest = 86400;
    if (!parseReal(arguments[0], &seconds) || seconds <= 0 || seconds > kLongest) {
        return wrongUsage("try", arguments[0], "a number of seconds, up to 86400");
    }
    Wanted wanted;
    Outcome outcome = want(session, Arguments(arguments.begin() + 1, arguments.end()), &wanted);
    if (!outcome.ok()) return outcome;
    Trial trial(session);
    // From here on a signal does not end the process, so that it can go back.
    Waiting waiting(session, trial, seconds);
    outcome = trial.begin(session.command);
    if (!outcome.ok()) return outcome;
    const ChangeRequest request = makeRequest(session, wanted);
    outcome = trial.apply(request);
    if (request.progress) showProgress(0, 0, "");
    if (!outcome.ok()) {
        bool kept = false;
        Outcome back = trial.goBack(session.patience(), &kept);
        if (!back.ok()) complain(session.options, back);
        return outcome;
    }
    for (const std::string& line : wanted.lost) warn(session.options, "lost", line);
    printTrial(session, "running", "", seconds, trial.transitions());
    return endWith(session, trial, waiting.wait());
}

Outcome keep(Session& session, const Arguments&) {
    Outcome outcome = endTrial(HistoryEntry::kKeep);
    if (!outcome.ok()) return outcome;
    if (session.options.json) {
        Json json;
        print(json.open('{').name("trial").text("kept").close());
    } else {
        printf("trial          kept\n");
    }
    return done();
}

constexpr char kTryDetails[] =
        "Applies it, counts down, and goes back to what was before, unless kwoctl keep, from\n"
        "anywhere, or Enter comes. It also goes back on Ctrl-C, when the terminal is lost, when "
        "the\n"
        "service restarts, when kwoctl is killed, and after a reboot with the next kwoctl. There "
        "is\n"
        "one trial at a time; kwoctl undo ends it at once.\n"
        "    kwoctl try 30 set stereo=3\n"
        "    kwoctl try 20 geq load warm.txt\n";
}  // namespace

const CommandTable& trialCommands() {
    static const CommandTable table = {
            command("try", "SECONDS COMMAND...",
                    "set something that goes back by itself; COMMAND is", tryOut)
                    .waiting()
                    .takes(2, kAnyNumberOfArguments)
                    .explained(kTryDetails),
            also("", "  set KEY=VALUE..., restore FILE, geq load FILE, preset load NAME"),
            command("keep", "", "keep what is tried", keep).withoutService(),
    };
    return table;
}
