// What a block of the DSP should hold: its tuning file with the user's settings laid over it.
//
// This is an oracle of its own. It goes by the documents and by what the service tells its clients,
// and shares no source with what makes the blocks, so that a mistake there shows here. A change of
// what a block holds is made in both places.

#ifndef ZYL_CLIENT_EXPECTED_H
#define ZYL_CLIENT_EXPECTED_H

#include "client/library/connection.h"
#include "client/parameters.h"

struct Expected {
    std::string file;
    Bytes block;
    // What the service does not say and is therefore taken from the block that was found.
    std::string unknown;
};

// `found` is what the block holds: where more than one value is right, it decides. A switch of the
// effect, for one, reaches only some of the words that a whole load writes; the others keep what
// the last load left.
Outcome expectBlock(Connection& connection, int32_t number, const Bytes& found, Expected* expected);

struct Verdict {
    int32_t number = 0;
    Expected expected;
    std::vector<Difference> differences;
    // It is as forced mode leaves lineout's and bluetooth's. The differences are then those that
    // forced mode does not account for.
    bool forced = false;
};
Outcome examineBlock(Connection& connection, int32_t number, Verdict* verdict);

// False when the block does not hold the effect as it is set. True, too, when nobody can tell.
bool followsEffect(Connection& connection, int32_t number, const Bytes& found);

#endif  // ZYL_CLIENT_EXPECTED_H
