// The tuning files of a device with tuning numbers, as far as this user may look.

#ifndef ZYL_CLIENT_LIBRARY_TUNINGS_H
#define ZYL_CLIENT_LIBRARY_TUNINGS_H

#include <string>
#include <vector>

#include "client/library/properties.h"

// "/etc/zyl/lineout_3"
std::string tuningFile(int32_t route, int32_t number);

// The numbers that a route has files for, ascending; empty when the directory cannot be read.
std::vector<int32_t> tuningNumbers(int32_t route);

bool isTuning(const Property& property);

// "speaker has the tunings 0, 1, 2"; empty when that is not known.
std::string describeTunings(int32_t route);

#endif  // ZYL_CLIENT_LIBRARY_TUNINGS_H
