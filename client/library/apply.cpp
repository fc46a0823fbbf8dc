#include "client/library/apply.h"

#include "client/library/parse.h"

namespace {

constexpr int kMostRestarts = 3;

const Value* findValue(const std::vector<Change>& changes, const Property& property) {
    for (const Change& change : changes) {
        if (change.property == &property) return &change.value;
    }
    return nullptr;
}

bool isJoint(const Property& property) {
    return property.key == "effect" || property.key == "geq" || property.kind == Property::kGains;
}

// What a plan for these changes must know.
Choice neededFor(const std::vector<Change>& wanted) {
    bool joint = false;
    for (const Change& change : wanted) joint = joint || isJoint(*change.property);
    return [&wanted, joint](const Property& property) {
        if (joint && isJoint(property)) return true;
        for (const Change& change : wanted) {
            if (change.property == &property) return true;
        }
        return false;
    };
}

}  // namespace

Outcome Application::run(const std::vector<Step>& steps) {
    Outcome outcome = sendAll(steps, kStop);
    for (int restarts = 0; restarts < kMostRestarts && retry(outcome); ++restarts) {
        outcome = sendAll(steps, kStop);
    }
    if (outcome.ok()) return outcome;
    if (outcome.result == kZylKwoServiceGone) {
        giveUp(&outcome);
        return outcome;
    }
    const bool reached = takeBack();
    if (reached) {
        describeWhatHolds(&outcome);
    } else {
        giveUp(&outcome);
    }
    return outcome;
}

std::vector<Transition> Application::transitions() const {
    std::vector<Transition> transitions;
    for (const Change& previous : mPrevious) {
        const Value* const after = findValue(mSent, *previous.property);
        if (after == nullptr || *after == previous.value) continue;
        transitions.push_back({previous.property, true, true, previous.value, *after});
    }
    return transitions;
}

Outcome Application::sendAll(const std::vector<Step>& steps, Refusals refusals) {
    Outcome outcome;
    for (size_t i = 0; i < steps.size() && outcome.ok(); ++i) {
        if (mProgress) mProgress(i + 1, steps.size(), steps[i].property->key);
        outcome = record(*steps[i].property);
        if (outcome.ok()) outcome = send(steps[i]);
        if (refusals == kGoOn && outcome.result != kZylKwoServiceGone) outcome = done();
    }
    return outcome;
}

Outcome Application::record(const Property& property) {
    if (findValue(mPrevious, property) != nullptr) return done();
    Value previous;
    Outcome outcome = readValue(mConnection, property, &previous);
    if (outcome.ok() && mRecorder) outcome = mRecorder(property, previous);
    if (outcome.ok()) mPrevious.push_back({&property, previous});
    return outcome;
}

Outcome Application::send(const Step& step) {
    const Property& property = *step.property;
    const Value value = step.asBefore ? *findValue(mPrevious, property) : step.value;
    Outcome sent = resultOf(property.key, setProperty(mConnection.service(), property, value));
    if (!sent.ok()) return sent;
    bool known = false;
    for (Change& change : mSent) {
        if (change.property != &property) continue;
        change.value = value;
        known = true;
    }
    if (!known) mSent.push_back({&property, value});
    Value found;
    Outcome read = readValue(mConnection, property, &found);
    if (!read.ok() || found == value) return read;
    return refusal(property.key, "set to " + formatValue(property, value) +
                                         ", but the service has " + formatValue(property, found));
}

bool Application::retry(const Outcome& outcome) {
    return outcome.result == kZylKwoServiceGone && mConnection.connect(mPatience).ok();
}

// False when the service cannot be reached. A setter that the DSP refuses has changed the setting
// all the same, so refusals do not matter here; what holds is read afterwards.
bool Application::takeBack() {
    Outcome outcome;
    do {
        State present;
        outcome = readState(mConnection, neededFor(mPrevious), &present);
        if (outcome.result == kZylKwoServiceGone) continue;
        removeUntold(&present);
        Application back(mConnection, mPatience);
        outcome = back.sendAll(planSteps(present, mPrevious, Equal::kSend), kGoOn);
    } while (retry(outcome));
    return outcome.result != kZylKwoServiceGone;
}

void Application::describeWhatHolds(Outcome* outcome) {
    mTookBack = true;
    for (const Change& previous : mPrevious) {
        const Property& property = *previous.property;
        Value value;
        const bool known = readValue(mConnection, property, &value).ok();
        mTookBack = mTookBack && known && value == previous.value;
        outcome->holds.push_back(property.key + " " +
                                 (!known ? "cannot be read"
                                  : value == previous.value
                                          ? formatValue(property, value) + " as before"
                                          : formatValue(property, value) + ", before " +
                                                    formatValue(property, previous.value)));
    }
}

void Application::giveUp(Outcome* outcome) const {
    outcome->status = kNoService;
    outcome->result = kZylKwoServiceGone;
    outcome->why +=
            format("; the service did not come back within %s s", formatReal(mPatience).c_str());
    outcome->remedy = "when it is back: kwoctl undo";
    for (const Change& previous : mPrevious) {
        const Value* const sent = findValue(mSent, *previous.property);
        const std::string before = formatValue(*previous.property, previous.value);
        outcome->holds.push_back(
                previous.property->key + " " +
                (sent == nullptr ? before + " or what was being set"
                                 : formatValue(*previous.property, *sent) + ", before " + before));
    }
}

Outcome planAndApply(Connection& connection, const std::vector<Change>& wanted, Equal equal,
                     const StepCheck& planned, Application* application) {
    State present;
    Outcome outcome = readState(connection, neededFor(wanted), &present);
    if (application->retry(outcome)) {
        outcome = readState(connection, neededFor(wanted), &present);
    }
    if (!outcome.ok()) return outcome;
    removeUntold(&present);
    const std::vector<Step> steps = planSteps(present, wanted, equal);
    if (planned) outcome = planned(steps);
    return outcome.ok() ? application->run(steps) : outcome;
}
