// Which changes bring a device to the wanted values, and in which order.

#include <algorithm>
#include <iterator>

#include "client/changes.h"

namespace {

const Change* findChange(const std::vector<Change>& changes, const Property& property) {
    for (const Change& change : changes) {
        if (change.property == &property) return &change;
    }
    return nullptr;
}

// Leaves out what the device has already.
ExitStatus findDifferences(Session& session, const std::vector<Change>& wanted,
                           std::vector<Change>* differences) {
    for (const Change& change : wanted) {
        Value present;
        const ExitStatus status = readValue(session, *change.property, &present);
        if (status != kDone) return status;
        if (!(present == change.value)) differences->push_back(change);
    }
    return kDone;
}

}  // namespace

ExitStatus planChanges(Session& session, const std::vector<Change>& wanted,
                       std::vector<Change>* plan) {
    const Value on = {{1}, ""};
    const Value off = {{0}, ""};
    const Property& effect = property("effect");
    const Property& equaliser = property("geq");
    const Property& gains = property("gains");
    const auto isJoint = [&](const Change& change) {
        return change.property == &effect || change.property == &equaliser ||
               change.property == &gains;
    };
    std::vector<Change> differences;
    ExitStatus status = findDifferences(session, wanted, &differences);
    if (status != kDone) return status;
    std::remove_copy_if(differences.begin(), differences.end(), std::back_inserter(*plan), isJoint);
    // Not every device has an effect to ask for.
    if (std::none_of(wanted.begin(), wanted.end(), isJoint)) return kDone;
    Value present;
    status = readValue(session, effect, &present);
    if (status != kDone) return status;

    const Change* effectChange = findChange(wanted, effect);
    const bool effectTarget = effectChange != nullptr ? effectChange->value.on() : present.on();
    const Change* newGains = findChange(differences, gains);
    // With the effect off, its equaliser reads as off whatever it is: then it is always set.
    const Change* newSwitch = findChange(present.on() ? differences : wanted, equaliser);
    const bool equalise = newGains != nullptr || newSwitch != nullptr;
    if (!present.on() && (equalise || effectTarget)) plan->push_back({&effect, on});
    if (newGains != nullptr) {
        plan->push_back({&equaliser, on});
        plan->push_back(*newGains);
        const Change* last = findChange(wanted, equaliser);
        if (last == nullptr || !last->value.on()) {
            plan->push_back({&equaliser, last == nullptr ? kAsBefore : off});
        }
    } else if (newSwitch != nullptr) {
        plan->push_back(*newSwitch);
    }
    if (!effectTarget && (present.on() || equalise)) plan->push_back({&effect, off});
    return kDone;
}
