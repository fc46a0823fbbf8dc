// Snapshots, presets, which are snapshots with a name, and what two of them differ in.

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "client/change.h"
#include "client/console.h"
#include "client/library/files.h"
#include "client/library/parse.h"
#include "client/library/snapshot.h"
#include "client/parameters.h"

namespace {

// {"preset":"night"}, or a line for people.
void printDone(const Session& session, const char* name, const std::string& value,
               const std::string& line) {
    if (session.options.json) {
        Json json;
        print(json.open('{').name(name).text(value).close());
    } else {
        printf("%s\n", line.c_str());
    }
}

Outcome takeSnapshot(Session& session, std::string* text) {
    State state;
    Outcome outcome = readState(session, everything, &state);
    *text = formatSnapshot(state);
    return outcome;
}

Outcome snapshot(Session& session, const Arguments& arguments) {
    std::string text;
    Outcome outcome = takeSnapshot(session, &text);
    if (outcome.ok()) outcome = writeFile(arguments[0], text.data(), text.size());
    if (!outcome.ok()) return outcome;
    if (isStandardStream(arguments[0])) {
        printAbout(arguments[0], "snapshot       to " + arguments[0]);
    } else {
        printDone(session, "snapshot", arguments[0], "snapshot       to " + arguments[0]);
    }
    return done();
}

Outcome apply(Session& session, const char* what, const std::string& name, const Wanted& wanted) {
    std::vector<Transition> transitions;
    Outcome outcome = change(session, wanted, &transitions);
    if (!outcome.ok() || session.options.dryRun) return outcome;
    const size_t count = transitions.size();
    if (session.options.json) {
        Json json;
        json.open('{').name(what).text(name).name("changes");
        addToJson(json, transitions);
        print(json.name("steps").number(static_cast<double>(count)).close());
        return done();
    }
    printf("%-14s %s, %zu change%s\n", what, name.c_str(), count, count == 1 ? "" : "s");
    return done();
}

Outcome restore(Session& session, const Arguments& arguments) {
    Wanted wanted;
    Outcome outcome = wantSnapshot(session, arguments[0], &wanted);
    return outcome.ok() ? apply(session, "restored", arguments[0], wanted) : outcome;
}

Outcome listPresets(const Session& session) {
    std::string file;
    Json json;
    json.open('[');
    const std::string directory = storageDirectory() + "presets/";
    for (const std::string& name : namesIn(directory)) {
        if (!presetFile(name, &file).ok()) continue;
        const int64_t time = timeOfFile(file);
        json.open('{').name("name").text(name).name("time").text(timeText(time)).close();
        if (!session.options.json) {
            printf("%-20s saved %s\n", name.c_str(), readableTime(time).c_str());
        }
    }
    if (session.options.json) print(json.close());
    return done();
}

Outcome savePreset(Session& session, const std::string& name, const std::string& file) {
    std::string text;
    Outcome outcome = session.connect(session.options.waitSeconds);
    if (outcome.ok()) outcome = takeSnapshot(session, &text);
    if (outcome.ok()) outcome = makeStorage("presets/");
    if (outcome.ok()) outcome = replaceFile(file, text);
    if (outcome.ok()) printDone(session, "preset", name, "preset         " + name + " saved");
    return outcome;
}

Outcome preset(Session& session, const Arguments& arguments) {
    const std::string verb = lowerCase(arguments[0]);
    if (verb == "list" && arguments.size() == 1) return listPresets(session);
    std::string file;
    if (arguments.size() != 2 || (verb != "save" && verb != "load" && verb != "remove")) {
        return wrongUsage("preset", joinWords(arguments),
                          "list, save NAME, load NAME or remove NAME");
    }
    const std::string& name = arguments[1];
    Outcome outcome = presetFile(name, &file);
    if (!outcome.ok()) return outcome;
    if (verb == "save") return savePreset(session, name, file);
    if (verb == "load") {
        Wanted wanted;
        outcome = session.connect(session.options.waitSeconds);
        if (outcome.ok()) outcome = wantPreset(session, name, &wanted);
        return outcome.ok() ? apply(session, "preset", name, wanted) : outcome;
    }
    if (unlink(file.c_str()) != 0) return refusal("preset", name + ": " + strerror(errno));
    printDone(session, "preset", name, "preset         " + name + " removed");
    return done();
}

Outcome diffBlocks(const Session& session, const Bytes& first, const Bytes& second) {
    const std::vector<Difference> differences = compareBlocks(first, second);
    if (session.options.json) {
        Json json;
        addToJson(json, differences, "first", "second");
        print(json);
    } else {
        printDifferences(differences, "first", "second");
    }
    return differences.empty() ? done() : differs();
}

bool isBlock(const std::string& name, Bytes* bytes) {
    return name != "now" && !isStandardStream(name) && access(name.c_str(), F_OK) == 0 &&
           readFile(name, bytes).ok() && bytes->size() == blockSize();
}

Outcome diff(Session& session, const Arguments& names) {
    Bytes first;
    Bytes second;
    const bool firstIsBlock = isBlock(names[0], &first);
    if (firstIsBlock != isBlock(names[1], &second)) {
        return refusal("diff", "one is a block and the other is not", "give two of a kind");
    }
    if (firstIsBlock) return diffBlocks(session, first, second);
    Snapshot left;
    Snapshot right;
    Outcome outcome = readSnapshot(session, names[0], &left);
    if (outcome.ok()) outcome = readSnapshot(session, names[1], &right);
    if (!outcome.ok()) return outcome;
    const std::vector<Transition> transitions = compareStates(stateOf(left), stateOf(right));
    printTransitions(session, transitions);
    return transitions.empty() ? done() : differs();
}

constexpr char kSnapshotDetails[] =
        "Writes all that a user can set as text, a key and its value a line. Names of tuning data\n"
        "are remarks: the service does not give the data back.\n";
constexpr char kRestoreDetails[] =
        "Sets what differs from the snapshot, all or none. To set gains it switches effect and\n"
        "equaliser on for a moment, if they are off. --dry-run shows the steps and sends nothing.\n"
        "When the service restarts in the middle, it is looked up again and the work is "
        "finished.\n";
constexpr char kPresetDetails[] =
        "Presets are snapshots with a name, kept in $KWOCTL_DIR or /data/local/tmp/kwoctl.UID. "
        "load\n"
        "works like restore.\n";
constexpr char kDiffDetails[] =
        "A and B are files, names of presets, or now, which is what the device holds; two files "
        "of\n"
        "blocks are compared parameter by parameter. Exit status 1 when they differ.\n";

}  // namespace

const CommandTable& snapshotCommands() {
    static const CommandTable table = {
            command("snapshot", "FILE", "save all that a user can set", snapshot)
                    .takes(1, 1)
                    .explained(kSnapshotDetails),
            command("restore", "FILE", "set what a snapshot holds, all or none", restore)
                    .takes(1, 1)
                    .with(Command::kDryRun | Command::kNoCheck)
                    .explained(kRestoreDetails),
            command("preset", "list", "show the presets", preset)
                    .takes(1, 2)
                    .with(Command::kDryRun | Command::kNoCheck)
                    .withoutService()
                    .explained(kPresetDetails),
            also("save|load|remove NAME", "save what is set under a name, and so on"),
            command("diff", "A B", "compare snapshots, presets, the device, or blocks", diff)
                    .takes(2, 2)
                    .withoutService()
                    .explained(kDiffDetails),
    };
    return table;
}
