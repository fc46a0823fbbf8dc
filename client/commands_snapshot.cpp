// All that a user can set, as readable text: a key and its value a line, # before remarks.

#include <algorithm>

#include "client/changes.h"
#include "client/command.h"
#include "client/parameters.h"
#include "client/parse.h"

namespace {

struct Snapshot {
    std::string generation;  // empty when the text does not say
    std::vector<Change> changes;
};

ExitStatus parseLine(const std::string& where, const Arguments& words, Snapshot* snapshot) {
    const Arguments values(words.begin() + 1, words.end());
    if (words[0] == "generation" && values.size() == 1) {
        snapshot->generation = values[0];
        return kDone;
    }
    const Property* property = findProperty(words[0]);
    if (property == nullptr || property->set == nullptr) {
        return reportRefusal(where, "'" + words[0] + "' is nothing that can be set");
    }
    for (const Change& change : snapshot->changes) {
        if (change.property == property) return reportRefusal(where, words[0] + " comes twice");
    }
    Value value;
    const ExitStatus status = parseValue(*property, values, &value);
    if (status != kDone) return reportRefusal(where, "nothing is restored from this");
    snapshot->changes.push_back({property, value});
    return kDone;
}

ExitStatus parseSnapshot(const std::string& name, const Bytes& bytes, Snapshot* snapshot) {
    if (std::find(bytes.begin(), bytes.end(), 0) != bytes.end()) {
        return reportRefusal(name, "no snapshot: it is not text");
    }
    size_t number = 0;
    for (auto start = bytes.begin(); start != bytes.end();) {
        const auto end = std::find(start, bytes.end(), '\n');
        const Arguments words = splitWords(std::string(start, end));
        start = end == bytes.end() ? end : end + 1;
        ++number;
        if (words.empty() || words[0][0] == '#') continue;
        const ExitStatus status =
                parseLine(format("%s:%zu", name.c_str(), number), words, snapshot);
        if (status != kDone) return status;
    }
    if (snapshot->changes.empty()) return reportRefusal(name, "no snapshot: it sets nothing");
    return kDone;
}

ExitStatus snapshot(Session& session, const Arguments& arguments) {
    ExitStatus status = kDone;
    const std::vector<Reading> readings = readAll(
            session, [](const Property&) { return true; }, &status);
    if (status != kDone) return status;
    bool effect = true;
    for (const Reading& reading : readings) {
        if (reading.property == &property("effect")) effect = reading.value.on();
    }
    std::string text = "# What kwoctl restore sets; a remark is not restored.\n";
    for (const Reading& reading : readings) {
        const Property& property = *reading.property;
        const bool told = effect || property.key != std::string("geq");
        const bool kept = property.set != nullptr || property.key == std::string("generation");
        text += kept && told ? "" : "# ";
        text += std::string(property.key) + " " +
                (told ? formatValue(property, reading.value)
                      : "is not told while the effect is off");
        text += "\n";
    }
    status = writeFile(arguments[0], text.data(), text.size());
    if (status == kDone) printAbout(arguments[0], "snapshot       to " + arguments[0]);
    return status;
}

ExitStatus restore(Session& session, const Arguments& arguments) {
    Bytes bytes;
    Snapshot snapshot;
    ExitStatus status = readFile(arguments[0], &bytes);
    if (status == kDone) status = parseSnapshot(arguments[0], bytes, &snapshot);
    Value generation;
    if (status == kDone) status = readValue(session, property("generation"), &generation);
    if (status != kDone) return status;
    if (!snapshot.generation.empty() && snapshot.generation != generation.text) {
        return reportRefusal(arguments[0], "taken on a device of generation " +
                                                   snapshot.generation + ", this one is " +
                                                   generation.text);
    }
    std::vector<Change> plan;
    status = planChanges(session, snapshot.changes, &plan);
    if (status == kDone) status = applyChanges(session, plan, true);
    if (status != kDone) return status;
    printf("restored       %s, %zu step%s\n", arguments[0].c_str(), plan.size(),
           plan.size() == 1 ? "" : "s");
    return kDone;
}

std::string valueIn(const Snapshot& snapshot, const Property& property) {
    for (const Change& change : snapshot.changes) {
        if (change.property == &property) return formatValue(property, change.value);
    }
    return "(not there)";
}

ExitStatus diffSnapshots(const Arguments& names, const Bytes& first, const Bytes& second) {
    Snapshot left;
    Snapshot right;
    ExitStatus status = parseSnapshot(names[0], first, &left);
    if (status == kDone) status = parseSnapshot(names[1], second, &right);
    if (status != kDone) return status;
    if (left.generation != right.generation) {
        status = kRefused;
        printf("%-17s %s -> %s\n", "generation", left.generation.c_str(), right.generation.c_str());
    }
    for (const Property& property : kProperties) {
        const std::string before = valueIn(left, property);
        const std::string after = valueIn(right, property);
        if (before == after) continue;
        status = kRefused;
        printf("%-17s %s -> %s\n", property.key, before.c_str(), after.c_str());
    }
    return status;
}

ExitStatus diff(Session&, const Arguments& names) {
    Bytes first;
    Bytes second;
    ExitStatus status = readFile(names[0], &first);
    if (status == kDone) status = readFile(names[1], &second);
    if (status != kDone) return status;
    const bool firstIsBlock = first.size() == blockSize();
    if (firstIsBlock != (second.size() == blockSize())) {
        return reportRefusal("diff", "one is a block and the other is not; give two of a kind");
    }
    if (!firstIsBlock) return diffSnapshots(names, first, second);
    const std::vector<Difference> differences = compareBlocks(first, second);
    printDifferences(differences, "first", "second");
    return differences.empty() ? kDone : kRefused;
}

constexpr char kSnapshotDetails[] =
        "Writes all that a user can set as text, a key and its value a line. Names of tuning data\n"
        "are remarks: the service does not give the data back.\n";
constexpr char kRestoreDetails[] =
        "Sets what differs from the snapshot, all or none. To set gains it switches effect and\n"
        "equaliser on for a moment, if they are off.\n";

}  // namespace

const std::vector<Command> kSnapshotCommands = {
        {"snapshot", "FILE", "save all that a user can set", kSnapshotDetails, 1, 1,
         Command::kService, "", snapshot},
        {"restore", "FILE", "set what a snapshot holds, all or none", kRestoreDetails, 1, 1,
         Command::kService, "", restore},
        {"diff", "A B", "compare two snapshots or two block files",
         "Exit status 1 when they differ. It needs no service.\n", 2, 2, Command::kNothing, "",
         diff},
};
