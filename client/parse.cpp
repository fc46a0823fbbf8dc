#include "client/parse.h"

#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <sstream>

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
        if (text != kRouteNames[i]) continue;
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
    if (text != "on" && text != "off") return false;
    *on = text == "on";
    return true;
}

bool parseGain(const std::string& text, uint16_t* gain) {
    std::string number = text;
    const bool hasUnit = text.size() > 2 && text.compare(text.size() - 2, 2, "dB") == 0;
    if (hasUnit) number.resize(text.size() - 2);
    double value = 0;
    if (!parseReal(number, &value)) return false;
    const bool decibels = hasUnit || number[0] == '+' || number[0] == '-';
    if (decibels) value = std::round(kNeutralGain * std::pow(10, value / 20));
    if (value < 0 || value > UINT16_MAX || value != std::floor(value)) return false;
    *gain = static_cast<uint16_t>(value);
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

std::vector<std::string> splitWords(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

std::string joinWords(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
    return line;
}
