// The graphic equaliser for people's eyes.

#ifndef ZYL_CLIENT_EQUALISER_H
#define ZYL_CLIENT_EQUALISER_H

#include "client/properties.h"

// A line a band; with bars where the session shows them.
void printGains(const Session& session, const Value& gains);

// Relative to the neutral gain.
double decibelsOf(double gain);

#endif  // ZYL_CLIENT_EQUALISER_H
