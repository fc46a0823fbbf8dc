// What was changed: by kwoctl, to be taken back; and by anybody, as it happens.

#include <unistd.h>

#include <algorithm>
#include <cmath>

#include "client/change.h"
#include "client/console.h"
#include "client/library/parse.h"
#include "client/terminal.h"

namespace {

Outcome parseCount(const char* what, const Arguments& arguments, size_t* count) {
    int32_t number = 0;
    if (arguments.empty()) return done();
    if (!parseNumber(arguments[0], &number) || number < 1) {
        return wrongUsage(what, arguments[0], "a number of changes, 1 or more");
    }
    *count = static_cast<size_t>(number);
    return done();
}

void printEntry(const HistoryEntry& entry) {
    printf("%3d  %s  %-10s  %s\n", entry.number, readableTime(entry.time).c_str(),
           nameOf(entry.state).c_str(), entry.command.c_str());
    for (const Transition& transition : entry.transitions()) {
        printf("     %-17s %s\n", transition.property->key.c_str(), describe(transition).c_str());
    }
}

Outcome history(Session& session, const Arguments& arguments) {
    size_t count = kHistoryLength;
    Outcome parsed = parseCount("history", arguments, &count);
    if (!parsed.ok()) return parsed;
    const History entries = loadHistory();
    Json json;
    json.open('[');
    for (size_t i = entries.size(); i-- > 0 && entries.size() - i <= count;) {
        const HistoryEntry& entry = entries[i];
        if (!session.options.json) {
            printEntry(entry);
            continue;
        }
        json.open('{').name("number").number(entry.number).name("time").text(timeText(entry.time));
        json.name("command").text(entry.command).name("state").text(nameOf(entry.state));
        json.name("changes");
        addToJson(json, entry.transitions());
        json.close();
    }
    if (session.options.json) print(json.close());
    if (!session.options.json && entries.empty()) {
        printf("nothing is recorded in %s\n", storageDirectory().c_str());
    }
    return done();
}

Outcome endRunningTrial(Session& session) {
    Outcome outcome = endTrial(HistoryEntry::kBack);
    if (!outcome.ok()) return outcome;
    if (session.options.json) {
        Json json;
        print(json.open('{').name("trial").text("back").close());
    } else {
        printf("trial          ended, all is as before\n");
    }
    return done();
}

Outcome undoChanges(Session& session, const Arguments& arguments) {
    size_t count = 1;
    Outcome outcome = parseCount("undo", arguments, &count);
    if (!outcome.ok()) return outcome;
    if (currentTrial().number != 0) return endRunningTrial(session);
    Wanted nothing;
    ChangeRequest request = makeRequest(session, nothing);
    std::vector<int> numbers;
    std::vector<Transition> transitions;
    outcome = undo(session, count, request, &numbers, &transitions);
    if (request.progress) showProgress(0, 0, "");
    if (!outcome.ok()) return outcome;
    if (!session.options.json) {
        printTransitions(session, transitions);
        printf("undone         %zu change%s\n", numbers.size(), numbers.size() == 1 ? "" : "s");
    } else {
        Json json;
        json.open('{').name("undone").open('[');
        for (int number : numbers) json.number(number);
        json.close().name("changes");
        addToJson(json, transitions);
        print(json.close());
    }
    for (const Transition& transition : transitions) {
        if (transition.property->key == "effect") return checkDsp(session);
    }
    return done();
}

void printEvent(const Session& session, const char* service,
                const std::vector<Transition>& transitions) {
    const int64_t time = now();
    if (!session.options.json) {
        const std::string clock = readableTime(time);
        if (service != nullptr) printf("%s  the service is %s\n", clock.c_str(), service);
        for (const Transition& transition : transitions) {
            printf("%s  %-17s %s\n", clock.c_str(), transition.property->key.c_str(),
                   describe(transition).c_str());
        }
        fflush(stdout);
        return;
    }
    Json json;
    json.open('{').name("time").text(timeText(time));
    if (service != nullptr) json.name("service").text(service);
    if (!transitions.empty() || service == nullptr || service == std::string("back")) {
        json.name("changes");
        addToJson(json, transitions);
    }
    print(json.close());
}

void printFirst(const Session& session, const State& state) {
    if (!session.options.json) {
        fprintf(stderr, "looking every %s s; Ctrl-C ends it\n",
                formatReal(session.options.interval).c_str());
        return;
    }
    Json json;
    json.open('{').name("time").text(timeText(now())).name("state").open('{');
    addToJson(json, state);
    print(json.close().close());
}

// What the device has, of what clients can change. The rest stays as it is while the service runs,
// and to ask for it leaves lines in its log.
Choice changingIn(const State& state) {
    return [state](const Property& property) {
        return has(state, property) &&
               (settable(property) || property.key.compare(0, 5, "data.") == 0);
    };
}

void removeOthers(const Choice& chosen, State* state) {
    state->erase(std::remove_if(state->begin(), state->end(),
                                [&](const Reading& reading) { return !chosen(*reading.property); }),
                 state->end());
}

Outcome watch(Session& session, const Arguments&) {
    const Interrupts interrupts;
    State known;
    Outcome outcome = readState(session, everything, &known);
    if (!outcome.ok()) return outcome;
    printFirst(session, known);
    Choice changing = changingIn(known);
    removeOthers(changing, &known);
    removeUntold(&known);
    bool there = true;
    while (ferror(stdout) == 0) {
        usleep(static_cast<useconds_t>(std::lround(session.options.interval * 1e6)));
        if (interrupts.happened()) return done();
        State present;
        const bool wasThere = there;
        there = (wasThere || session.connect(0).ok()) &&
                readState(session, wasThere ? changing : everything, &present).status != kNoService;
        if (!there) {
            if (wasThere) printEvent(session, "gone", {});
            continue;
        }
        if (!wasThere) changing = changingIn(present);
        removeOthers(changing, &present);
        removeUntold(&present);
        const std::vector<Transition> transitions = compareStates(known, present);
        if (!wasThere || !transitions.empty()) {
            printEvent(session, wasThere ? nullptr : "back", transitions);
        }
        known = present;
    }
    return done();
}

constexpr char kUndoDetails[] =
        "Sets back what the last change, or the last N, had changed; those that were undone are\n"
        "passed over. Changes are those of this user's kwoctl; tuning data, blocks, reload and "
        "raw\n"
        "calls are not among them. While a trial runs, it ends the trial.\n";
constexpr char kHistoryDetails[] =
        "The last 50 changes are kept, as readable text, in $KWOCTL_DIR or\n"
        "/data/local/tmp/kwoctl.UID; whoever can write neither has no history and no trials.\n";
constexpr char kWatchDetails[] =
        "Prints what differs from one look to the next, until Ctrl-C. The service notifies "
        "nobody,\n"
        "so it looks every second, or as --interval SECONDS says; what changes to and fro in "
        "between\n"
        "is missed.\n";

}  // namespace

const CommandTable& historyCommands() {
    static const CommandTable table = {
            command("undo", "[N]", "take the last changes back", undoChanges)
                    .takes(0, 1)
                    .with(Command::kNoCheck)
                    .explained(kUndoDetails),
            command("history", "[N]", "show the last changes", history)
                    .takes(0, 1)
                    .withoutService()
                    .explained(kHistoryDetails),
            command("watch", "", "print changes as they come", watch)
                    .with(Command::kInterval)
                    .waiting()
                    .explained(kWatchDetails),
    };
    return table;
}
