// Arguments as people write them, and numbers as they are written for people. The functions that
// parse return false, and leave the result as it was, when the text is none of what is listed.
// Numbers do not depend on the locale: the program never leaves "C".

#ifndef ZYL_CLIENT_PARSE_H
#define ZYL_CLIENT_PARSE_H

#include <cstdint>
#include <string>
#include <vector>

// A whole number that fits into 32 bits: decimal, or hexadecimal after 0x up to 0xffffffff.
bool parseNumber(const std::string& text, int32_t* number);

// A number with or without a fraction, finite.
bool parseReal(const std::string& text, double* number);

// "speaker", "lineout", "bluetooth", or the number of a route.
bool parseRoute(const std::string& text, int32_t* route);

// As parseRoute, but 0 to 2 only.
bool parseKnownRoute(const std::string& text, int32_t* route);

// "on" or "off".
bool parseSwitch(const std::string& text, bool* on);

// A raw gain such as 4096, or decibels relative to the neutral gain: with a sign ("+3", "-1.5"),
// with the unit ("3dB"), or both. The range of gains is not looked at; what does not fit into 16
// bits is no gain.
bool parseGain(const std::string& text, uint16_t* gain);

// The fewest digits that give back the same single-precision number.
std::string formatReal(double value);

std::string format(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::vector<std::string> splitWords(const std::string& line);
std::string joinWords(const std::vector<std::string>& words);

constexpr const char* kRouteNames[] = {"speaker", "lineout", "bluetooth"};
constexpr int32_t kKnownRoutes = 3;
constexpr double kNeutralGain = 4096;

#endif  // ZYL_CLIENT_PARSE_H
