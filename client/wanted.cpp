#include "client/wanted.h"

#include <unistd.h>

#include "client/library/curve.h"
#include "client/library/files.h"
#include "client/library/parse.h"
#include "client/library/storage.h"

namespace {

constexpr char kPresets[] = "presets/";

// KEY=VALUE; several numbers stand between commas.
Outcome parseAssignment(const std::string& text, std::vector<Change>* changes) {
    const size_t equals = text.find('=');
    const Property* const property = findProperty(lowerCase(text.substr(0, equals)));
    if (equals == std::string::npos || property == nullptr || property->set == nullptr) {
        return wrongUsage("set", text, "KEY=VALUE, where KEY is one of: " + joinWords(keys(true)));
    }
    for (const Change& change : *changes) {
        if (!overlap(*change.property, *property)) continue;
        Outcome outcome = wrongUsage("set", "", "");
        outcome.why = property->key + " comes twice";
        return outcome;
    }
    Value value;
    const auto values = splitWords(text.substr(equals + 1), ", \t");
    Outcome parsed = parseValue(*property, values, &value);
    if (parsed.ok()) changes->push_back({property, value});
    return parsed;
}

}  // namespace

Outcome wantSet(const Arguments& assignments, Wanted* wanted) {
    // "gains.3=+3 dB" may come as two words.
    Arguments joined;
    for (const std::string& word : assignments) {
        if (lowerCase(word) == "db" && !joined.empty()) {
            joined.back() += word;
        } else {
            joined.push_back(word);
        }
    }
    for (const std::string& assignment : joined) {
        Outcome parsed = parseAssignment(assignment, &wanted->changes);
        if (!parsed.ok()) return parsed;
    }
    wanted->equal = Equal::kSend;
    wanted->onlyNamed = true;
    return done();
}

Outcome readSnapshot(Session& session, const std::string& source, Snapshot* snapshot) {
    State state;
    std::string text;
    std::string file = source;
    Outcome outcome;
    if (source == "now") {
        if (!session.connected()) outcome = session.connect(session.options.waitSeconds);
        if (outcome.ok()) outcome = readState(session, everything, &state);
        text = formatSnapshot(state);
    } else {
        std::string preset;
        const bool named = !isStandardStream(source) && access(source.c_str(), F_OK) != 0 &&
                           presetFile(source, &preset).ok() && access(preset.c_str(), F_OK) == 0;
        outcome = readTextFile(named ? preset : source, &text);
    }
    return outcome.ok() ? parseSnapshot(source, text, snapshot) : outcome;
}

Outcome wantSnapshot(Session& session, const std::string& file, Wanted* wanted) {
    Snapshot snapshot;
    Outcome outcome = readSnapshot(session, file, &snapshot);
    State present;
    if (outcome.ok()) {
        outcome = readState(
                session, [](const Property& row) { return row.key == "generation"; }, &present);
    }
    if (outcome.ok()) outcome = checkGeneration(file, snapshot, present);
    wanted->changes = snapshot.changes;
    return outcome;
}

Outcome wantCurve(Session& session, const std::string& file, Wanted* wanted) {
    std::string text;
    Curve curve;
    Outcome outcome = readTextFile(file, &text);
    if (outcome.ok()) outcome = parseCurve(file, text, session.bands, &curve);
    if (!outcome.ok()) return outcome;
    Value gains;
    gains.numbers = curve.gains;
    wanted->changes = {{&property("gains"), gains}};
    wanted->equal = Equal::kSend;
    wanted->onlyNamed = true;
    wanted->lost = curve.lost;
    return done();
}

Outcome presetFile(const std::string& name, std::string* file) {
    constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    if (name.empty() || name[0] == '.' || name.find_first_not_of(kLetters) != std::string::npos) {
        return wrongUsage("preset", name, "a name of letters, digits, '.', '_' and '-'");
    }
    *file = storageDirectory() + kPresets + name;
    return done();
}

Outcome wantPreset(Session& session, const std::string& name, Wanted* wanted) {
    std::string file;
    Outcome outcome = presetFile(name, &file);
    if (outcome.ok() && access(file.c_str(), F_OK) != 0) {
        outcome = refusal("preset", "there is no preset " + name, "see kwoctl preset list");
    }
    return outcome.ok() ? wantSnapshot(session, file, wanted) : outcome;
}

Outcome want(Session& session, const Arguments& words, Wanted* wanted) {
    const std::string verb = words.empty() ? "" : words[0];
    const std::string second = words.size() < 2 ? "" : words[1];
    if (verb == "set" && words.size() > 1) {
        return wantSet(Arguments(words.begin() + 1, words.end()), wanted);
    }
    if (verb == "restore" && words.size() == 2) return wantSnapshot(session, second, wanted);
    if (verb == "geq" && second == "load" && words.size() == 3) {
        return wantCurve(session, words[2], wanted);
    }
    if (verb == "preset" && second == "load" && words.size() == 3) {
        return wantPreset(session, words[2], wanted);
    }
    return wrongUsage("try", joinWords(words),
                      "set KEY=VALUE..., restore FILE, geq load FILE or preset load NAME");
}
