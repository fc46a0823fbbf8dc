// The journal in short, in the words of tests/cases.

#include <cstdio>

#include "lab/conversion/layout.h"
#include "tests/support/phone.h"

namespace {

std::string blockOf(unsigned mask) {
    const unsigned masks[] = {0x2, 0x2000C, 0x3F0};
    for (size_t block = 0; block < std::size(masks); ++block) {
        if (masks[block] == mask) return std::to_string(block);
    }
    return "?";
}

std::string rowOf(unsigned id) {
    for (int row = 0; row < 29; ++row) {
        if (static_cast<unsigned>(layout().rows[row].id) == id) return std::to_string(row);
    }
    return "?";
}

// A journal line of the DSP's without its "dsp" and without "fail" or "refuse".
std::string wordFor(const std::string& line) {
    unsigned number = 0;
    if (sscanf(line.c_str(), "cache size=%u", &number) == 1) return "S" + std::to_string(number);
    if (sscanf(line.c_str(), "config block=%u", &number) == 1) return "C" + std::to_string(number);
    char verb[8] = {};
    char payload[128] = {};
    unsigned id = 0;
    unsigned mask = 0;
    if (sscanf(line.c_str(), "%7s id=%x size=%*u offset=%*u mask=%x data=%127s", verb, &id, &mask,
               payload) < 3) {
        return line;
    }
    const bool reads = verb == std::string("read");
    if (id == quorin::kWholeBlock) return (reads ? "R" : "W") + blockOf(mask);
    const std::string data = payload[0] == '\0' ? "" : "=" + std::string(payload);
    return (reads ? "r" : "w") + rowOf(id) + "." + blockOf(mask) + data;
}

std::string wordOf(const std::string& line) {
    if (line == "audio set ZYL_NEW_PARAM_READY=1") return "a";
    const std::pair<const char*, const char*> marks[] = {
            {"dsp fail ", "x"}, {"dsp refuse ", "!"}, {"dsp ", ""}};
    for (const auto& [head, mark] : marks) {
        if (line.rfind(head, 0) == 0) return mark + wordFor(line.substr(strlen(head)));
    }
    return line;
}

}  // namespace

std::string Phone::story() {
    std::string text;
    for (const std::string& line : journal()) text += (text.empty() ? "" : " ") + wordOf(line);
    return text;
}
