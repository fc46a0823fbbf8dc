// Arguments as people write them, and numbers as they are written for people. The functions that
// parse return false, and leave the result as it was, when the text is none of what is listed.
// Numbers do not depend on the locale: the program never leaves "C".

#ifndef ZYL_CLIENT_LIBRARY_PARSE_H
#define ZYL_CLIENT_LIBRARY_PARSE_H

#include <cstdint>
#include <string>
#include <vector>

// A whole number that fits into 32 bits: decimal, or hexadecimal after 0x up to 0xffffffff.
bool parseNumber(const std::string& text, int32_t* number);

// A number with or without a fraction, finite.
bool parseReal(const std::string& text, double* number);

// "speaker", "lineout", "bluetooth", or the number of a route. Letters may be of either case.
bool parseRoute(const std::string& text, int32_t* route);

// As parseRoute, but 0 to 2 only.
bool parseKnownRoute(const std::string& text, int32_t* route);

// "on" or "off", in letters of either case.
bool parseSwitch(const std::string& text, bool* on);

// Decibels relative to the neutral gain when there is a sign, a point or the unit ("+3", "0.5",
// "3dB", "+3 db"); a plain integer is the raw value. Gives the raw value and does not look at its
// range.
bool parseGain(const std::string& text, double* gain);

// As parseGain, but only what means decibels, and gives these.
bool parseDecibels(const std::string& text, double* decibels);

// The fewest digits that give back the same single-precision number.
std::string formatReal(double value);

// "+3.0 dB"
std::string formatDecibels(double decibels);

// "31.5 Hz", "16 kHz"
std::string formatFrequency(double hertz);

std::string format(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::string lowerCase(const std::string& text);

// Between blanks, or between any of the separators.
std::vector<std::string> splitWords(const std::string& line, const char* separators = " \t\r\n");
std::string joinWords(const std::vector<std::string>& words);

// Without the blanks at both ends.
std::string trim(const std::string& text);

constexpr const char* kRouteNames[] = {"speaker", "lineout", "bluetooth"};
constexpr int32_t kKnownRoutes = 3;

// Gains: raw values and decibels. A raw value of 0 has none; it counts as kSilence.
constexpr double kNeutralGain = 4096;
constexpr double kLowestGain = 725;
constexpr double kHighestGain = 32767;
constexpr double kSilence = -100;
constexpr char kGainRange[] = "-15.0 to +18.0 dB, or a plain integer from 725 to 32767";
double decibelsOf(double gain);
double gainOf(double decibels);

#endif  // ZYL_CLIENT_LIBRARY_PARSE_H
