// Curves of equalisers as other programs write them, brought to the ten bands of this one.

#ifndef ZYL_CLIENT_LIBRARY_CURVE_H
#define ZYL_CLIENT_LIBRARY_CURVE_H

#include <string>
#include <vector>

#include "client/library/bands.h"

struct Curve {
    std::vector<double> gains;      // raw, one a band, within the range
    std::vector<std::string> lost;  // what the bands cannot render, a line each
};

// Reads one of
//     ten gains in the order of the bands, between blanks, commas or lines: these need no `bands`
//     GraphicEQ: FREQUENCY GAIN; FREQUENCY GAIN; ...
//     lines "Filter N: ON PK Fc FREQUENCY Hz Gain GAIN dB Q Q"; also low and high shelves (LS, LSC,
//     LSQ, HS, HSC, HSQ), and filters that are OFF
// with # before remarks. The last two may have a line "Preamp: GAIN dB", which lowers all bands. A
// band gets what the curve has at its centre: between points, in a straight line over the logarithm
// of the frequency; of filters, the sum of their responses in decibels.
Outcome parseCurve(const std::string& name, const std::string& text, const Bands& bands,
                   Curve* curve);

// What parseCurve reads back as the same gains, whatever it knows of bands.
std::string formatCurve(const std::vector<double>& gains, const Bands& bands);

#endif  // ZYL_CLIENT_LIBRARY_CURVE_H
