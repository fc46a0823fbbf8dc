// The centres of the equaliser's bands. They are the maker's and nobody can ask for them, so they
// come from a small file beside the tunings, or from the user.

#ifndef ZYL_CLIENT_LIBRARY_BANDS_H
#define ZYL_CLIENT_LIBRARY_BANDS_H

#include <string>
#include <vector>

#include "client/library/outcome.h"

// In Hz, one a band, ascending; empty when they are not known.
using Bands = std::vector<double>;

// Ten numbers between blanks or commas, with "k" for thousands; # before remarks.
Outcome parseBands(const std::string& where, const std::string& text, Bands* bands);

// `given` is a list, or the name of a file that holds one, or empty: then the maker's file is read,
// if there is one.
Outcome findBands(const std::string& given, Bands* bands);

// "band 3", or "band 3 (250 Hz)".
std::string nameOfBand(const Bands& bands, size_t band);

#endif  // ZYL_CLIENT_LIBRARY_BANDS_H
