// What a block of the DSP should hold: its tuning file with the user's settings laid over it.

#ifndef ZYL_CLIENT_EXPECTED_H
#define ZYL_CLIENT_EXPECTED_H

#include "client/parameters.h"
#include "client/session.h"

struct Expected {
    std::string file;
    Bytes block;
    // What the service does not tell and is therefore taken from the block that was found.
    std::string unknown;
};

// `found` is what the block holds: where more than one value is right, it decides. A switch of the
// effect, for one, reaches only some of the words that a whole load writes; the others keep what
// the last load left. Complains itself.
ExitStatus expectBlock(Session& session, int32_t number, const Bytes& found, Expected* expected);

// Whether the block is as forced mode leaves lineout's and bluetooth's.
bool looksForced(const Bytes& block);

#endif  // ZYL_CLIENT_EXPECTED_H
