#include "client/library/plan.h"

#include <algorithm>

namespace {

const Change* findChange(const std::vector<Change>& changes, const Property& property) {
    for (const Change& change : changes) {
        if (change.property == &property) return &change;
    }
    return nullptr;
}

bool isNeeded(const State& present, const Change& change, Equal equal) {
    if (equal == Equal::kSend) return true;
    Value band;
    const Value* value = find(present, *change.property, &band);
    return value == nullptr || *value != change.value;
}

// Effect, equaliser and gains, which depend on one another in this order.
class JointPlan {
  public:
    JointPlan(const State& present, const std::vector<Change>& wanted, Equal equal)
        : mPresent(present), mWanted(wanted), mEqual(equal) {}

    void addTo(std::vector<Step>* steps) {
        const bool effectNow = isOn(mPresent, mEffect);
        const Change* const effect = findChange(mWanted, mEffect);
        const bool effectThen = effect == nullptr ? effectNow : effect->value.on();
        const bool sendEffect = effect != nullptr && isNeeded(mPresent, *effect, mEqual);
        std::vector<Step> equaliser;
        addEqualiser(&equaliser);
        const bool forAMoment = !effectNow && !effectThen && !equaliser.empty();
        if (forAMoment || (effectThen && sendEffect)) steps->push_back({&mEffect, Value(1), false});
        steps->insert(steps->end(), equaliser.begin(), equaliser.end());
        if (forAMoment || (!effectThen && sendEffect)) {
            steps->push_back({&mEffect, Value(0), false});
        }
    }

  private:
    void addEqualiser(std::vector<Step>* steps) const {
        const Change* const target = findChange(mWanted, mEqualiser);
        std::vector<Step> gains;
        for (const Change& change : mWanted) {
            if (change.property->kind != Property::kGains || !isNeeded(mPresent, change, mEqual)) {
                continue;
            }
            gains.push_back({change.property, change.value, false});
        }
        if (gains.empty()) {
            if (target == nullptr || !isNeeded(mPresent, *target, mEqual)) return;
            steps->push_back({&mEqualiser, target->value, false});
            return;
        }
        const bool onNow = isOn(mPresent, mEqualiser);
        if (!onNow) steps->push_back({&mEqualiser, Value(1), false});
        // What was recorded of several changes has both; single bands lie over all of them.
        std::stable_sort(gains.begin(), gains.end(), [](const Step& left, const Step& right) {
            return bandOf(*left.property) < bandOf(*right.property);
        });
        steps->insert(steps->end(), gains.begin(), gains.end());
        if (target != nullptr) {
            if (!target->value.on()) steps->push_back({&mEqualiser, target->value, false});
        } else if (!onNow) {
            steps->push_back({&mEqualiser, Value(0), !has(mPresent, mEqualiser)});
        }
    }

    const State& mPresent;
    const std::vector<Change>& mWanted;
    const Equal mEqual;
    const Property& mEffect = property("effect");
    const Property& mEqualiser = property("geq");
};

bool isJoint(const Property& row) {
    return &row == &property("effect") || &row == &property("geq") || row.kind == Property::kGains;
}

}  // namespace

bool overlap(const Property& first, const Property& second) {
    if (&first == &second) return true;
    return first.kind == Property::kGains && second.kind == Property::kGains &&
           first.count != second.count;
}

std::vector<Step> planSteps(const State& present, const std::vector<Change>& wanted, Equal equal) {
    std::vector<Step> steps;
    bool joint = false;
    for (const Change& change : wanted) {
        if (isJoint(*change.property)) {
            joint = true;
        } else if (isNeeded(present, change, equal)) {
            steps.push_back({change.property, change.value, false});
        }
    }
    if (joint) JointPlan(present, wanted, equal).addTo(&steps);
    return steps;
}

Outcome checkNamed(const std::vector<Step>& steps, const std::vector<Change>& wanted) {
    for (const Step& step : steps) {
        if (findChange(wanted, *step.property) != nullptr) continue;
        if (step.property == &property("effect")) {
            return refusal("geq", "the effect is off", "first: kwoctl enable");
        }
        return refusal("gains", "the equaliser is off, gains are not kept", "first: kwoctl geq on");
    }
    return done();
}

std::string describe(const Step& step) {
    return step.property->key + " " +
           (step.asBefore ? "as before" : formatValue(*step.property, step.value));
}
