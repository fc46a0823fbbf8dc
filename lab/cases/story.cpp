#include "lab/cases/story.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "lab/conversion/layout.h"
#include "lab/dsp/quorin_device.h"

namespace {

constexpr char kAnnouncement[] = "audio set ZYL_NEW_PARAM_READY=1";
constexpr int kRowCount = 29;

// A line of the journal about a write or a read.
struct Request {
    std::string verb;
    unsigned id = 0, size = 0, offset = 0, mask = 0;
    std::string data;  // hex
};

std::string blockOf(unsigned mask) {
    const unsigned masks[] = {0x2, 0x2000C, 0x3F0};
    for (size_t block = 0; block < std::size(masks); ++block) {
        if (masks[block] == mask) return std::to_string(block);
    }
    return "?";
}

// Bytes in hex, the lowest first, as a number; as they are where they are more than a number has.
std::string valueOf(const std::string& hex) {
    uint64_t value = 0;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        const auto byte = strtoull(hex.substr(i, 2).c_str(), nullptr, 16);
        if (i >= 8 && byte != 0) return "0x" + hex;
        value |= i < 8 ? byte << (4 * i) : 0;
    }
    return std::to_string(value);
}

std::string valuesOf(const std::string& hex, size_t digits) {
    std::string text;
    for (size_t i = 0; i < hex.size(); i += digits) {
        text += (i > 0 ? "," : "") + valueOf(hex.substr(i, digits));
    }
    return text;
}

// The last row up to which rows from `first` on lie side by side and take so many bytes; -1 where
// no rows take just that.
int lastRow(int first, unsigned size) {
    const Row* rows = layout().rows;
    unsigned taken = 0;
    for (int row = first; row < kRowCount && taken <= size; ++row) {
        if (rows[row].offset != rows[first].offset + static_cast<int>(taken)) return -1;
        taken += rows[row].size;
        if (taken == size) return row;
    }
    return -1;
}

std::string wordForSlice(const Request& request) {
    int row = 0;
    while (row < kRowCount && static_cast<unsigned>(layout().rows[row].id) != request.id) ++row;
    const std::string block = "." + blockOf(request.mask);
    const std::string place =
            "[" + std::to_string(request.size) + "@" + std::to_string(request.offset) + "]";
    const std::string raw = request.data.empty() ? "" : "=0x" + request.data;
    if (row == kRowCount) return "?" + block + place + raw;
    std::string name = std::to_string(row);
    const Row& own = layout().rows[row];
    const int last = lastRow(row, request.size);
    if (static_cast<unsigned>(own.offset) != request.offset || last < 0) {
        return name + block + place + raw;
    }
    if (last != row) name += "-" + std::to_string(last);
    // Gains are read best one by one.
    const size_t digits = last != row && own.size == 2 ? 4 : request.data.size();
    if (request.data.empty()) return name + block;
    return name + block +
           (last == row || own.size == 2 ? "=" + valuesOf(request.data, digits) : raw);
}

// A journal line of the DSP's without its "dsp" and without "fail" or "refuse".
std::string wordForRequest(const std::string& line) {
    unsigned number = 0;
    if (sscanf(line.c_str(), "cache size=%u", &number) == 1) return "S" + std::to_string(number);
    if (sscanf(line.c_str(), "config block=%u", &number) == 1) return "C" + std::to_string(number);
    Request request;
    char verb[8] = {};
    char data[128] = {};
    if (sscanf(line.c_str(), "%7s id=%x size=%u offset=%u mask=%x data=%127s", verb, &request.id,
               &request.size, &request.offset, &request.mask, data) < 5) {
        return line;
    }
    request.data = data;
    const bool reads = verb == std::string("read");
    if (request.id == quorin::kWholeBlock) return (reads ? "R" : "W") + blockOf(request.mask);
    return (reads ? "r" : "w") + wordForSlice(request);
}

// "conv SpeakerZylcsTuning mode=1 rate=48000 data=5 work=4 result=0"
std::string wordForConversion(const std::string& line) {
    std::istringstream words(line);
    std::string name;
    std::string argument;
    std::string text;
    std::string result;
    words >> name >> name;
    for (const std::string part : {"Zylcs", "Tuning"}) {
        const size_t at = name.find(part);
        if (at != std::string::npos) name.erase(at, part.size());
    }
    while (words >> argument) {
        const size_t equals = argument.find('=') + 1;
        if (argument.compare(0, equals, "result=") == 0) {
            if (argument != "result=0") result = argument.substr(equals - 1);
        } else {
            text += (text.empty() ? "" : ",") + argument.substr(equals);
        }
    }
    return name + "(" + text + ")" + result;
}

std::string wordFor(const std::string& line) {
    if (line == kAnnouncement) return "a";
    if (line == "saved") return "s";
    if (line.rfind("conv ", 0) == 0) return wordForConversion(line);
    const std::pair<std::string, const char*> marks[] = {
            {"dsp fail ", "x"}, {"dsp refuse ", "!"}, {"dsp ", ""}};
    for (const auto& [head, mark] : marks) {
        if (line.rfind(head, 0) == 0) return mark + wordForRequest(line.substr(head.size()));
    }
    return line;
}

bool isWrite(const std::string& line) {
    return line.rfind("dsp ", 0) == 0 && line.find("write id=") != std::string::npos;
}

// Whether a word stands for a request to the DSP.
bool isRequest(const std::string& word) {
    const size_t at = word[0] == 'x' || word[0] == '!' ? 1 : 0;
    return word.size() > at + 1 && std::string("SCWRwr").find(word[at]) != std::string::npos &&
           isdigit(word[at + 1]) != 0;
}

void append(const std::string& word, std::string* text) {
    if (!word.empty()) *text += (text->empty() ? "" : " ") + word;
}

std::string cleared(int first, int last) {
    std::string text;
    for (int row = first; row <= last; ++row) {
        for (const char* block : {".1=0", ".2=0"}) append("w" + std::to_string(row) + block, &text);
    }
    return text;
}

// A word that names several blocks, one for each.
std::string eachBlock(const std::string& word) {
    const size_t dot = word.find('.');
    const bool whole = word[0] == 'W' || word[0] == 'R' || word[0] == 'C';
    const size_t begin = whole ? 1 : dot == std::string::npos ? word.size() : dot + 1;
    const size_t end = std::min(word.find_first_not_of("0123456789", begin), word.size());
    if (begin >= end || (!whole && word[0] != 'w')) return word;
    std::string text;
    for (size_t i = begin; i < end; ++i) {
        append(word.substr(0, begin) + word[i] + word.substr(end), &text);
    }
    return text;
}

}  // namespace

std::string storyOf(const std::vector<std::string>& journal) {
    std::string text;
    for (size_t i = 0; i < journal.size(); ++i) {
        std::string word = wordFor(journal[i]);
        const bool announced = i + 1 < journal.size() && journal[i + 1] == kAnnouncement;
        if (isWrite(journal[i])) {
            announced ? static_cast<void>(++i) : static_cast<void>(word += "~");
        }
        append(word, &text);
    }
    return text;
}

std::string writtenOut(const std::string& story) {
    std::istringstream words(story);
    std::string word;
    std::string text;
    while (words >> word) {
        int first = 0;
        int last = 0;
        const bool clears = sscanf(word.c_str(), "z%d-%d", &first, &last) == 2;
        append(clears ? cleared(first, last) : eachBlock(word), &text);
    }
    return text;
}

int failingRequest(const std::string& story) {
    std::istringstream words(story);
    std::string word;
    for (int before = 0; words >> word;) {
        if (word[0] == 'x' && isRequest(word)) return before;
        before += isRequest(word) ? 1 : 0;
    }
    return -1;
}

std::string withoutSaves(const std::string& story) {
    std::istringstream words(story);
    std::string word;
    std::string text;
    while (words >> word) {
        if (word != "s") append(word, &text);
    }
    return text;
}
