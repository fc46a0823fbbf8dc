#include "client/change.h"

#include "client/console.h"
#include "client/expected.h"
#include "client/library/parse.h"
#include "client/library/tunings.h"

namespace {

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
        Outcome checked = named ? named(steps) : done();
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
    if (getProperty(session.service(), effectRow, &effect) == kZylKwoOk) effectOn = effect.on();
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
        Outcome read = readValue(session, property, value);
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
    Outcome outcome = readState(session, wanted, &state);
    printState(session, state);
    return outcome;
}

Outcome show(Session& session, const Property& property) {
    Value value;
    Outcome outcome = readValue(session, property, &value);
    if (outcome.ok()) printState(session, {{&property, value}});
    return outcome;
}
