#include "client/parse.h"

#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <sstream>

std::optional<int32_t> parseNumber(const std::string& text) {
    const bool hexadecimal =
            text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* begin = text.data() + (hexadecimal ? 2 : 0);
    const char* end = text.data() + text.size();
    int64_t number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
    if (error != std::errc() || rest != end) return std::nullopt;
    const int64_t highest = hexadecimal ? UINT32_MAX : INT32_MAX;
    if (number > highest || number < (hexadecimal ? 0 : INT32_MIN)) return std::nullopt;
    return static_cast<int32_t>(number);
}

std::optional<double> parseReal(const std::string& text) {
    // Neither blanks nor the words that strtod takes for numbers.
    if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string::npos) {
        return std::nullopt;
    }
    char* end = nullptr;
    const double value = strtod(text.c_str(), &end);
    if (*end != '\0' || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<int32_t> parseRoute(const std::string& text) {
    for (size_t route = 0; route < std::size(kRouteNames); ++route) {
        if (text == kRouteNames[route]) return static_cast<int32_t>(route);
    }
    return parseNumber(text);
}

std::optional<int32_t> parseKnownRoute(const std::string& text) {
    const auto route = parseRoute(text);
    if (!route || *route < 0 || *route >= kKnownRoutes) return std::nullopt;
    return route;
}

std::optional<bool> parseSwitch(const std::string& text) {
    if (text == "on") return true;
    if (text == "off") return false;
    return std::nullopt;
}

std::optional<uint16_t> parseGain(const std::string& text) {
    std::string number = text;
    const bool hasUnit = text.size() > 2 && text.compare(text.size() - 2, 2, "dB") == 0;
    if (hasUnit) number.resize(text.size() - 2);
    const auto value = parseReal(number);
    if (!value) return std::nullopt;
    const bool decibels = hasUnit || number[0] == '+' || number[0] == '-';
    const double gain = decibels ? std::round(kNeutralGain * std::pow(10, *value / 20)) : *value;
    if (gain < 0 || gain > UINT16_MAX || gain != std::floor(gain)) return std::nullopt;
    return static_cast<uint16_t>(gain);
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
    vsnprintf(text.data(), text.size() + 1, format, again);
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
