#include "client/change.h"

#include <unistd.h>

#include "client/console.h"
#include "client/expected.h"
#include "client/library/curve.h"
#include "client/library/files.h"
#include "client/library/parse.h"
#include "client/library/tunings.h"

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
    const Outcome parsed = parseValue(*property, values, &value);
    if (parsed.ok()) changes->push_back({property, value});
    return parsed;
}

bool touches(const std::vector<Transition>& transitions, const Wanted& wanted, const char* key) {
    for (const Transition& transition : transitions) {
        if (transition.property->key == key) return true;
    }
    for (const Change& change : wanted.changes) {
        if (change.property->key == key && wanted.equal == Equal::kSend) return true;
    }
    return false;
}

void printSteps(const Session& session, const std::vector<Step>& steps) {
    Json json;
    json.open('{').name("steps").open('[');
    for (size_t i = 0; i < steps.size(); ++i) {
        json.open('{').name("key").text(steps[i].property->key).name("value");
        if (steps[i].asBefore) {
            json.literal("null");
        } else {
            addToJson(json, *steps[i].property, steps[i].value);
        }
        json.close();
        if (!session.options.json) printf("step %-9zu %s\n", i + 1, describe(steps[i]).c_str());
    }
    json.close().close();
    if (session.options.json) print(json);
    if (!session.options.json && steps.empty()) printf("no steps: it is so already\n");
}

// What the service says of a tuning that is not there does not say which there are.
Outcome withTunings(const Outcome& outcome) {
    const Property* const property = findProperty(outcome.what);
    if (outcome.result != kZylKwoTuningNotLoadable || property == nullptr || !isTuning(*property)) {
        return outcome;
    }
    Outcome better = outcome;
    const std::string tunings = describeTunings(property->selector);
    if (!tunings.empty()) better.remedy = tunings;
    return better;
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
        const Outcome parsed = parseAssignment(assignment, &wanted->changes);
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

ChangeRequest makeRequest(const Session& session, const Wanted& wanted) {
    ChangeRequest request;
    request.command = session.command;
    request.wanted = wanted.changes;
    request.equal = wanted.equal;
    request.patience = session.patience();
    if (!session.options.json) request.progress = showProgress;
    if (wanted.onlyNamed) {
        request.check = [&wanted](const std::vector<Step>& steps) {
            return checkNamed(steps, wanted.changes);
        };
    }
    return request;
}

Outcome change(Session& session, const Wanted& wanted, std::vector<Transition>* transitions) {
    ChangeRequest request = makeRequest(session, wanted);
    bool effectOn = true;
    const StepCheck named = request.check;
    request.check = [&](const std::vector<Step>& steps) {
        const Outcome checked = named ? named(steps) : done();
        if (!checked.ok() || !session.options.dryRun) return checked;
        printSteps(session, steps);
        return differs();
    };
    std::vector<Transition> made;
    Outcome outcome = changeRecorded(session, request, &made);
    if (request.progress) showProgress(0, 0, "");
    if (session.options.dryRun) {
        // The steps were printed; there was nothing more to do.
        return outcome.why.empty() ? done() : outcome;
    }
    if (transitions != nullptr) *transitions = made;
    if (!outcome.ok()) return withTunings(outcome);
    Value effect;
    const Property& effectRow = property("effect");
    if (effectRow.get(session.service(), 0, &effect) == kZylKwoOk) effectOn = effect.on();
    warnAbout(session, wanted.changes, effectOn);
    return touches(made, wanted, "effect") ? checkDsp(session) : done();
}

Outcome changeOne(Session& session, const Property& property, const Value& value) {
    Wanted wanted;
    wanted.changes = {{&property, value}};
    wanted.equal = Equal::kSend;
    wanted.onlyNamed = true;
    return change(session, wanted, nullptr);
}

Outcome switchedValue(Session& session, const Property& property, const std::string& word,
                      Value* value) {
    bool on = false;
    if (lowerCase(word) == "toggle") {
        const Outcome read = readValue(session, property, value);
        *value = Value(value->on() ? 0 : 1);
        return read;
    }
    if (!parseSwitch(word, &on)) return wrongUsage(property.key, word, "on, off or toggle");
    *value = Value(on ? 1 : 0);
    return done();
}

Outcome checkDsp(Session& session) {
    if (!session.options.check) return done();
    for (int32_t number = 0; number < kKnownRoutes; ++number) {
        Bytes found;
        const int32_t result = session.fetchBlock(number, &found);
        Outcome outcome;
        if (result != kZylKwoOk) {
            outcome = resultOf("verify", result);
            // Without memory to share nobody can look; that says nothing about the DSP.
            if (result != kZylKwoUploadFailed) return done();
        } else if (followsEffect(session, number, found)) {
            continue;
        } else {
            outcome = refusal("verify", "its block does not hold what the settings say");
        }
        outcome.what = kRouteNames[number];
        outcome.why = "the service keeps it, but the DSP did not follow: " + outcome.why;
        outcome.remedy = "see kwoctl verify; kwoctl reload sends all again";
        return outcome;
    }
    return done();
}

void warnAbout(const Session& session, const std::vector<Change>& changes, bool effectOn) {
    if (effectOn) return;
    for (const Change& change : changes) {
        if (!isTuning(*change.property)) continue;
        const int32_t route = change.property->selector;
        const auto numbers = tuningNumbers(route);
        const auto number = static_cast<int32_t>(change.value.numbers[0]);
        bool there = numbers.empty();
        for (int32_t known : numbers) there = there || known == number;
        if (there) continue;
        warn(session.options, change.property->key,
             format("taken unseen while the effect is off, but there is no %s; %s",
                    tuningFile(route, number).c_str(), describeTunings(route).c_str()));
    }
}

Outcome show(Session& session, const Choice& wanted) {
    State state;
    const Outcome outcome = readState(session, wanted, &state);
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, state);
        print(json.close());
        return outcome;
    }
    for (const Reading& reading : state) printValue(*reading.property, reading.value);
    return outcome;
}

Outcome show(Session& session, const Property& property) {
    Value value;
    const Outcome outcome = readValue(session, property, &value);
    if (!outcome.ok()) return outcome;
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, State{{&property, value}});
        print(json.close());
    } else {
        printValue(property, value);
    }
    return done();
}
