#include "client/changes.h"

#include <unistd.h>

#include "client/parse.h"

namespace {

// What the service takes without a word and does not keep while something else is off.
struct Dependency {
    const char* key;
    const char* needs;
    bool onlyOn;  // switching it off is kept anyway
    const char* why;
};

constexpr Dependency kDependencies[] = {
        {"geq", "effect", true, "the effect is off; first: kwoctl enable"},
        {"gains", "geq", false, "the equaliser is off, gains are not kept; first: kwoctl geq on"},
};

bool willBeOn(Session& session, const std::vector<Change>& changes, size_t before,
              const Property& wanted, ExitStatus* status) {
    for (size_t i = before; i-- > 0;) {
        if (changes[i].property == &wanted) return changes[i].value.on();
    }
    Value value;
    *status = readValue(session, wanted, &value);
    return value.on();
}

ExitStatus checkDependencies(Session& session, const std::vector<Change>& changes) {
    for (size_t i = 0; i < changes.size(); ++i) {
        for (const Dependency& dependency : kDependencies) {
            if (changes[i].property->key != std::string(dependency.key)) continue;
            if (dependency.onlyOn && !changes[i].value.on()) continue;
            ExitStatus status = kDone;
            if (willBeOn(session, changes, i, property(dependency.needs), &status)) continue;
            if (status != kDone) return status;
            return reportRefusal("geq", dependency.why);
        }
    }
    return kDone;
}

ExitStatus send(Session& session, const Change& change) {
    const Property& property = *change.property;
    const ExitStatus status = reportResult(
            property.key, property.set(session.service(), property.selector, change.value));
    if (status != kDone) return status;
    Value found;
    const ExitStatus read = readValue(session, property, &found);
    if (read != kDone || found == change.value) return read;
    return reportRefusal(property.key, "set to " + formatValue(property, change.value) +
                                               ", but the service has " +
                                               formatValue(property, found));
}

// What a change is to set; kAsBefore is what the property was before the first of the changes to
// it.
Value valueToSend(const Change& change, const std::vector<Change>& previous) {
    if (!(change.value == kAsBefore)) return change.value;
    for (const Change& earlier : previous) {
        if (earlier.property == change.property) return earlier.value;
    }
    return change.value;
}

void takeBack(Session& session, const std::vector<Change>& previous) {
    for (size_t i = previous.size(); i-- > 0;) {
        const Property& property = *previous[i].property;
        const int32_t result =
                property.set(session.service(), property.selector, previous[i].value);
        if (result != kZylKwoOk) reportResult(std::string(property.key) + ": taking back", result);
    }
}

}  // namespace

void showProgress(size_t step, size_t steps, const std::string& what) {
    constexpr int kWidth = 60;
    if (isatty(STDERR_FILENO) == 0) return;
    if (what.empty()) {
        fprintf(stderr, "\r%*s\r", kWidth, "");
        return;
    }
    fprintf(stderr, "\r%-*s", kWidth, format("[%zu/%zu] %s", step, steps, what.c_str()).c_str());
}

ExitStatus applyChanges(Session& session, const std::vector<Change>& changes, bool progress) {
    ExitStatus status = checkDependencies(session, changes);
    std::vector<Change> previous;
    for (size_t i = 0; i < changes.size() && status == kDone; ++i) {
        if (progress) showProgress(i + 1, changes.size(), changes[i].property->key);
        Value value;
        status = readValue(session, *changes[i].property, &value);
        if (status != kDone) break;
        previous.push_back({changes[i].property, value});
        const Change change = {changes[i].property, valueToSend(changes[i], previous)};
        status = send(session, change);
    }
    if (progress) showProgress(0, 0, "");
    if (status != kDone) takeBack(session, previous);
    return status;
}

ExitStatus show(Session& session, const Property& property) {
    Value value;
    const ExitStatus status = readValue(session, property, &value);
    if (status != kDone) return status;
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, std::vector<Reading>{{&property, value}});
        json.close().print();
    } else {
        printValue(property, value);
    }
    return kDone;
}

ExitStatus setAndShow(Session& session, const Property& property,
                      const std::vector<std::string>& words) {
    Value value;
    ExitStatus status = parseValue(property, words, &value);
    if (status == kDone) status = applyChanges(session, {{&property, value}});
    return status == kDone ? show(session, property) : status;
}

ExitStatus switchTo(Session& session, const Property& property, const std::string& word) {
    Value value;
    ExitStatus status = kDone;
    if (word == "toggle") {
        status = readValue(session, property, &value);
        value.numbers = {value.on() ? 0.0 : 1.0};
    } else {
        bool on = false;
        if (!parseSwitch(word, &on)) return reportUsage(property.key, word, "on, off or toggle");
        value.numbers = {on ? 1.0 : 0.0};
    }
    return status == kDone ? applyChanges(session, {{&property, value}}) : status;
}
