// Arguments as people write them. Empty when the text is none of what is listed; numbers do not
// depend on the locale.

#ifndef ZYL_CLIENT_PARSE_H
#define ZYL_CLIENT_PARSE_H

#include <cstdint>
#include <optional>
#include <string>

// A decimal number that fits into 32 bits.
std::optional<int32_t> parseNumber(const std::string& text);

// "speaker", "lineout", "bluetooth", or the number of a route.
std::optional<int32_t> parseRoute(const std::string& text);

// "on" or "off".
std::optional<bool> parseSwitch(const std::string& text);

// A raw gain such as 4096, or decibels relative to the neutral gain: with a sign ("+3", "-1.5"),
// with the unit ("3dB"), or both. The range of gains is the service's business; what does not fit
// into 16 bits is no gain.
std::optional<uint16_t> parseGain(const std::string& text);

constexpr const char* kRouteNames[] = {"speaker", "lineout", "bluetooth"};
constexpr double kNeutralGain = 4096;

#endif  // ZYL_CLIENT_PARSE_H
