// Comparison of two snapshots by ear: a trial that switches between them.

#include <random>

#include "client/change.h"
#include "client/console.h"
#include "client/terminal.h"

namespace {

constexpr int kLookMilliseconds = 200;

struct Side {
    std::string source;
    Wanted wanted;
    std::string label;  // as it is shown: A and B, or, blind, X and Y
};

bool sets(const Wanted& wanted, const Property& property) {
    for (const Change& change : wanted.changes) {
        if (change.property == &property) return true;
    }
    return false;
}

// Takes what only the other side sets from what the device holds now.
void complete(const State& present, const Wanted& other, Wanted* wanted) {
    for (const Reading& reading : present) {
        if (sets(*wanted, *reading.property) || !sets(other, *reading.property)) continue;
        wanted->changes.push_back({reading.property, reading.value});
    }
}

Outcome readSides(Session& session, const Arguments& arguments, Side (&sides)[2]) {
    State present;
    Outcome outcome = readState(session, settable, &present);
    removeUntold(&present);
    for (size_t i = 0; i < 2 && outcome.ok(); ++i) {
        sides[i].source = arguments[i];
        outcome = wantSnapshot(session, arguments[i], &sides[i].wanted);
    }
    if (!outcome.ok()) return outcome;
    complete(present, sides[1].wanted, &sides[0].wanted);
    complete(present, sides[0].wanted, &sides[1].wanted);
    const bool swapped = session.options.blind && std::random_device()() % 2 == 1;
    if (swapped) std::swap(sides[0], sides[1]);
    sides[0].label = session.options.blind ? "X" : "A";
    sides[1].label = session.options.blind ? "Y" : "B";
    return done();
}

void printSide(const Session& session, const Side& side) {
    if (session.options.json) {
        Json json;
        print(json.open('{').name("hears").text(side.label).close());
        return;
    }
    printf("%-14s %s\n", side.label.c_str(), session.options.blind ? "" : side.source.c_str());
    fflush(stdout);
}

void printSolution(const Session& session, const Side (&sides)[2], const Side* kept) {
    Json json;
    json.open('{');
    for (const Side& side : sides) {
        json.name(side.label).text(side.source);
        if (!session.options.json) printf("%s was %s\n", side.label.c_str(), side.source.c_str());
    }
    json.name("kept");
    if (kept == nullptr) {
        json.literal("null");
    } else {
        json.text(kept->source);
    }
    if (session.options.json) {
        print(json.close());
    } else {
        printf("%s\n", kept == nullptr ? "as before" : ("kept: " + kept->source).c_str());
    }
}

// Until the person at the keys has enough. Null when nothing is to be kept.
Outcome listen(Session& session, Trial& trial, const Side (&sides)[2], const Side** kept) {
    const Interrupts interrupts;
    Keyboard keyboard;
    size_t heard = 0;
    for (bool apply = true;;) {
        if (apply) {
            ChangeRequest request = makeRequest(session, sides[heard].wanted);
            request.progress = nullptr;
            Outcome outcome = trial.apply(request);
            if (!outcome.ok()) return outcome;
            printSide(session, sides[heard]);
        }
        const int key = keyboard.next(kLookMilliseconds);
        const HistoryEntry::State state = trial.state();
        if (key == 'k' || state == HistoryEntry::kKeep) {
            *kept = &sides[heard];
            return done();
        }
        if (key == 'q' || key == Keyboard::kEnd || interrupts.happened() ||
            state == HistoryEntry::kBack) {
            return done();
        }
        apply = key == ' ' || key == '\n' || key == '\r' || key == '\t';
        if (apply) heard = 1 - heard;
    }
}

Outcome compareByEar(Session& session, const Arguments& arguments) {
    Side sides[2];
    Outcome outcome = readSides(session, arguments, sides);
    Trial trial(session);
    if (outcome.ok()) outcome = trial.begin(session.command);
    if (!outcome.ok()) return outcome;
    if (!session.options.json) {
        fprintf(stderr, "space switches, k keeps what is heard, q goes back to what was before\n");
    }
    const Side* kept = nullptr;
    Outcome listened = listen(session, trial, sides, &kept);
    bool keptByOther = false;
    outcome = kept != nullptr && listened.ok() ? trial.keep()
                                               : trial.goBack(session.patience(), &keptByOther);
    if (!listened.ok()) return listened;
    if (outcome.ok()) printSolution(session, sides, kept);
    return outcome;
}

constexpr char kAbDetails[] =
        "Switches between two snapshots, presets or files, whenever the space bar is pressed: k\n"
        "keeps what is heard, q goes back to what was before. With --blind they are called X and "
        "Y\n"
        "until the end.\n";

}  // namespace

const CommandTable& comparisonCommands() {
    static const CommandTable table = {
            command("ab", "A B", "switch between two snapshots at a key", compareByEar)
                    .takes(2, 2)
                    .with(Command::kBlind)
                    .waiting()
                    .explained(kAbDetails),
    };
    return table;
}
