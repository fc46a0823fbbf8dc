// Which steps bring a device from what it holds to what is wanted, and in which order. The service
// takes some settings without a word and does not keep them: gains while the equaliser is off, the
// equaliser while the effect is off. Both are switched on for as long as that needs.

#ifndef ZYL_CLIENT_LIBRARY_PLAN_H
#define ZYL_CLIENT_LIBRARY_PLAN_H

#include "client/library/state.h"

struct Change {
    const Property* property;
    Value value;
};

// The same, or a band and the gains that it is one of. Those do not go into one list of changes.
bool overlap(const Property& first, const Property& second);

struct Step {
    const Property* property;
    Value value;
    // To what it was before the first step of the plan that sets it: that is known only then.
    bool asBefore;
};

// With kSkip, what the device holds already makes no step. With kSend it does: the DSP may not have
// followed, and comes in step when it is sent the same again.
enum class Equal { kSkip, kSend };

// `present` without what is not told, see removeUntold(). `wanted` has each property once, in any
// order.
std::vector<Step> planSteps(const State& present, const std::vector<Change>& wanted, Equal equal);

// Refuses a plan that would set something, if only for a moment, that is not among the wanted.
Outcome checkNamed(const std::vector<Step>& steps, const std::vector<Change>& wanted);

// "geq on", or "geq as before".
std::string describe(const Step& step);

#endif  // ZYL_CLIENT_LIBRARY_PLAN_H
