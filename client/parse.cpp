#include "client/parse.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>

std::optional<int32_t> parseNumber(const std::string& text) {
    int32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) return std::nullopt;
    return number;
}

std::optional<int32_t> parseRoute(const std::string& text) {
    for (size_t route = 0; route < std::size(kRouteNames); ++route) {
        if (text == kRouteNames[route]) return static_cast<int32_t>(route);
    }
    return parseNumber(text);
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
    if (number.empty() || number.find_first_not_of("+-.0123456789") != std::string::npos) {
        return std::nullopt;
    }
    const bool decibels = hasUnit || number[0] == '+' || number[0] == '-';
    char* end = nullptr;
    const double value = strtod(number.c_str(), &end);
    if (end != number.c_str() + number.size()) return std::nullopt;
    const double gain = decibels ? std::round(kNeutralGain * std::pow(10, value / 20)) : value;
    if (gain < 0 || gain > UINT16_MAX || gain != std::floor(gain)) return std::nullopt;
    return static_cast<uint16_t>(gain);
}
