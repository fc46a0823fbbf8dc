#include "client/library/snapshot.h"

#include <algorithm>

#include "client/library/parse.h"

namespace {

Outcome parseLine(const std::string& where, std::vector<std::string> words, Snapshot* snapshot) {
    const std::string key = words[0];
    words.erase(words.begin());
    if (key == "generation" && words.size() == 1) {
        snapshot->generation = words[0];
        return done();
    }
    const Property* const property = findProperty(key);
    if (property == nullptr || property->set == nullptr) {
        return refusal(where, "'" + key + "' is nothing that can be set");
    }
    for (const Change& change : snapshot->changes) {
        if (overlap(*change.property, *property)) return refusal(where, key + " comes twice");
    }
    Value value;
    Outcome parsed = parseValue(*property, words, &value);
    if (!parsed.ok()) return refusal(where, key + ": " + parsed.why, "nothing is restored");
    snapshot->changes.push_back({property, value});
    return done();
}

}  // namespace

std::string formatSnapshot(const State& state) {
    std::string text = "# What kwoctl restore sets; a remark is not restored.\n";
    State told = state;
    removeUntold(&told);
    for (const Reading& reading : state) {
        const Property& property = *reading.property;
        const bool isTold = has(told, property);
        const bool kept = property.set != nullptr || property.key == "generation";
        text += kept && isTold ? "" : "# ";
        text += property.key + " " +
                (isTold ? formatValue(property, reading.value)
                        : "is not told while the effect is off") +
                "\n";
    }
    return text;
}

Outcome parseSnapshot(const std::string& name, const std::string& text, Snapshot* snapshot) {
    size_t number = 0;
    for (size_t start = 0; start < text.size(); ++number) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const auto words = splitWords(text.substr(start, end - start));
        start = end + 1;
        if (words.empty() || words[0][0] == '#') continue;
        Outcome parsed = parseLine(format("%s:%zu", name.c_str(), number + 1), words, snapshot);
        if (!parsed.ok()) return parsed;
    }
    return snapshot->changes.empty() ? refusal(name, "no snapshot: it sets nothing") : done();
}

Outcome checkGeneration(const std::string& name, const Snapshot& snapshot, const State& present) {
    Value unused;
    const Value* const here = find(present, property("generation"), &unused);
    if (snapshot.generation.empty() || here == nullptr || here->text == snapshot.generation) {
        return done();
    }
    return refusal(name, "taken on a device of generation " + snapshot.generation +
                                 ", this one is " + here->text);
}

State stateOf(const Snapshot& snapshot) {
    State state;
    if (!snapshot.generation.empty()) {
        Value generation;
        generation.text = snapshot.generation;
        state.push_back({&property("generation"), generation});
    }
    for (const Change& change : snapshot.changes) {
        state.push_back({change.property, change.value});
    }
    return state;
}
