// Arguments as people write them, and numbers as they are written for people. Empty when the text
// is none of what is listed. Numbers do not depend on the locale: the program never leaves "C".

#ifndef ZYL_CLIENT_PARSE_H
#define ZYL_CLIENT_PARSE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A whole number that fits into 32 bits: decimal, or hexadecimal after 0x up to 0xffffffff.
std::optional<int32_t> parseNumber(const std::string& text);

// A number with or without a fraction, finite.
std::optional<double> parseReal(const std::string& text);

// "speaker", "lineout", "bluetooth", or the number of a route.
std::optional<int32_t> parseRoute(const std::string& text);

// As parseRoute, but 0 to 2 only.
std::optional<int32_t> parseKnownRoute(const std::string& text);

// "on" or "off".
std::optional<bool> parseSwitch(const std::string& text);

// A raw gain such as 4096, or decibels relative to the neutral gain: with a sign ("+3", "-1.5"),
// with the unit ("3dB"), or both. The range of gains is not looked at; what does not fit into 16
// bits is no gain.
std::optional<uint16_t> parseGain(const std::string& text);

// The fewest digits that give back the same single-precision number.
std::string formatReal(double value);

std::string format(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::vector<std::string> splitWords(const std::string& line);
std::string joinWords(const std::vector<std::string>& words);

constexpr const char* kRouteNames[] = {"speaker", "lineout", "bluetooth"};
constexpr int32_t kKnownRoutes = 3;
constexpr double kNeutralGain = 4096;

#endif  // ZYL_CLIENT_PARSE_H
