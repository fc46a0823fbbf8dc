#include "client/library/state.h"

#include <algorithm>

#include "client/library/parse.h"

namespace {

void addSide(Json& json, const char* name, const Property& property, bool has, const Value& value) {
    json.name(name);
    if (has) {
        addToJson(json, property, value);
    } else {
        json.literal("null");
    }
}

std::string describeSide(const Property& property, bool has, const Value& value) {
    if (!has) return "(not known)";
    return isNone(property, value) ? "none" : formatValue(property, value);
}

}  // namespace

bool everything(const Property&) {
    return true;
}

bool settable(const Property& property) {
    return property.set != nullptr;
}

Outcome readState(Connection& connection, const Choice& wanted, State* state) {
    Outcome outcome;
    // Once it is known, nobody is asked for what this device cannot have.
    std::string generation;
    state->clear();
    for (const Property& property : properties()) {
        if (!wanted(property)) continue;
        if (!generation.empty() && !belongsTo(property, generation)) continue;
        Value value;
        const int32_t result = getProperty(connection.service(), property, &value);
        if (result == kZylKwoNotAvailable) continue;
        if (result == kZylKwoOk) {
            if (property.key == "generation") generation = value.text;
            state->push_back({&property, value});
            continue;
        }
        if (outcome.ok()) outcome = resultOf(property.key, result);
        if (result == kZylKwoServiceGone) break;
    }
    return outcome;
}

Outcome readValue(Connection& connection, const Property& property, Value* value) {
    return resultOf(property.key, getProperty(connection.service(), property, value));
}

const Value* find(const State& state, const Property& wanted, Value* band) {
    for (const Reading& reading : state) {
        if (reading.property == &wanted) return &reading.value;
    }
    const int32_t number = bandOf(wanted);
    if (number < 0) return nullptr;
    const Value* gains = find(state, property("gains"), band);
    if (gains == nullptr) return nullptr;
    *band = Value(gains->numbers[static_cast<size_t>(number)]);
    return band;
}

bool has(const State& state, const Property& property) {
    Value band;
    return find(state, property, &band) != nullptr;
}

bool isOn(const State& state, const Property& property) {
    Value band;
    const Value* value = find(state, property, &band);
    return value != nullptr && value->on();
}

void removeUntold(State* state) {
    if (!has(*state, property("effect")) || isOn(*state, property("effect"))) return;
    const Property& equaliser = property("geq");
    state->erase(std::remove_if(state->begin(), state->end(),
                                [&equaliser](const Reading& reading) {
                                    return reading.property == &equaliser;
                                }),
                 state->end());
}

std::vector<Transition> compareStates(const State& before, const State& after) {
    std::vector<Transition> transitions;
    const auto compare = [&](const Property& property) {
        Value unused;
        const Value* left = find(before, property, &unused);
        const Value* right = find(after, property, &unused);
        if (left == right || (left != nullptr && right != nullptr && *left == *right)) return;
        transitions.push_back({&property, left != nullptr, right != nullptr,
                               left == nullptr ? Value() : *left,
                               right == nullptr ? Value() : *right});
    };
    for (const Property& property : properties()) compare(property);
    return transitions;
}

std::string describe(const Transition& transition) {
    const Property& property = *transition.property;
    const std::vector<double>& before = transition.before.numbers;
    const std::vector<double>& after = transition.after.numbers;
    if (before.size() <= 1 || before.size() != after.size()) {
        return describeSide(property, transition.hasBefore, transition.before) + " -> " +
               describeSide(property, transition.hasAfter, transition.after);
    }
    std::string text;
    for (size_t i = 0; i < before.size(); ++i) {
        if (before[i] == after[i]) continue;
        text += text.empty() ? "" : ", ";
        text += format("%zu: %s -> %s", i, formatReal(before[i]).c_str(),
                       formatReal(after[i]).c_str());
        if (property.kind != Property::kGains) continue;
        text += " (" + formatDecibels(decibelsOf(after[i])) + ")";
    }
    return text;
}

void addToJson(Json& json, const std::vector<Transition>& transitions) {
    json.open('{');
    for (const Transition& transition : transitions) {
        json.name(transition.property->key).open('{');
        addSide(json, "before", *transition.property, transition.hasBefore, transition.before);
        addSide(json, "after", *transition.property, transition.hasAfter, transition.after);
        json.close();
    }
    json.close();
}
