#include "client/library/parse.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

bool parseNumber(const std::string& text, int32_t* number) {
    const bool hexadecimal =
            text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const bool negative = !hexadecimal && text[0] == '-';
    const std::string digits = text.substr(hexadecimal ? 2 : negative ? 1 : 0);
    // strtoll takes blanks and signs as well.
    const char* const known = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(known) != std::string::npos) return false;
    errno = 0;
    const long long value = strtoll(digits.c_str(), nullptr, hexadecimal ? 16 : 10);
    const long long highest = hexadecimal ? UINT32_MAX : INT32_MAX;
    if (errno == ERANGE || value > highest + (negative ? 1 : 0)) return false;
    *number = static_cast<int32_t>(negative ? -value : value);
    return true;
}

bool parseReal(const std::string& text, double* number) {
    // Neither blanks nor the words that strtod takes for numbers.
    if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string::npos) {
        return false;
    }
    char* end = nullptr;
    const double value = strtod(text.c_str(), &end);
    if (*end != '\0' || !std::isfinite(value)) return false;
    *number = value;
    return true;
}

bool parseRoute(const std::string& text, int32_t* route) {
    for (int32_t i = 0; i < kKnownRoutes; ++i) {
        if (lowerCase(text) != kRouteNames[i]) continue;
        *route = i;
        return true;
    }
    return parseNumber(text, route);
}

bool parseKnownRoute(const std::string& text, int32_t* route) {
    int32_t number = 0;
    if (!parseRoute(text, &number) || number < 0 || number >= kKnownRoutes) return false;
    *route = number;
    return true;
}

bool parseSwitch(const std::string& text, bool* on) {
    const std::string word = lowerCase(text);
    if (word != "on" && word != "off") return false;
    *on = word == "on";
    return true;
}

bool parseDecibels(const std::string& text, double* decibels) {
    std::string number = lowerCase(trim(text));
    const bool hasUnit = number.size() > 2 && number.compare(number.size() - 2, 2, "db") == 0;
    if (hasUnit) number = trim(number.substr(0, number.size() - 2));
    // No exponents: nobody writes gains with them, and "1e3" would be neither of the two.
    if (number.find_first_not_of("+-.0123456789") != std::string::npos) return false;
    if (!hasUnit && number.find_first_of("+-.") == std::string::npos) return false;
    return parseReal(number, decibels);
}

bool parseGain(const std::string& text, double* gain) {
    double decibels = 0;
    if (parseDecibels(text, &decibels)) {
        *gain = gainOf(decibels);
        return true;
    }
    int32_t raw = 0;
    if (!parseNumber(text, &raw) || raw < 0) return false;
    *gain = raw;
    return true;
}

std::string formatReal(double value) {
    std::string text;
    for (int digits = 6; digits <= 9; ++digits) {
        text = format("%.*g", digits, value);
        if (strtof(text.c_str(), nullptr) == static_cast<float>(value)) break;
    }
    return text;
}

std::string format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    std::string text(static_cast<size_t>(vsnprintf(nullptr, 0, format, arguments)), '\0');
    vsnprintf(&text[0], text.size() + 1, format, again);
    va_end(again);
    va_end(arguments);
    return text;
}

std::string formatDecibels(double decibels) {
    // No "-0.0".
    const double rounded = std::round(decibels * 10) / 10;
    return format("%+.1f dB", rounded == 0 ? 0.0 : rounded);
}

std::string formatFrequency(double hertz) {
    return hertz >= 1000 ? formatReal(hertz / 1000) + " kHz" : formatReal(hertz) + " Hz";
}

std::vector<std::string> splitWords(const std::string& line, const char* separators) {
    std::vector<std::string> words;
    for (size_t start = line.find_first_not_of(separators); start != std::string::npos;) {
        const size_t end = std::min(line.find_first_of(separators, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(separators, end);
    }
    return words;
}

std::string joinWords(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
    return line;
}

std::string trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

std::string lowerCase(const std::string& text) {
    std::string lower = text;
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

double decibelsOf(double gain) {
    return gain <= 0 ? kSilence : 20 * std::log10(gain / kNeutralGain);
}

double gainOf(double decibels) {
    constexpr double kLoudest = 200;  // far outside of all ranges, and still a whole number
    return std::round(kNeutralGain * std::pow(10, std::min(decibels, kLoudest) / 20));
}
