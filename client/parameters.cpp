#include "client/parameters.h"

#include <algorithm>
#include <cstdio>

#include "client/library/parse.h"
#include "driver/zyl_convert_api.h"

namespace {

// Data that belongs to no parameter may differ in hundreds of places.
constexpr int kMostRuns = 8;

std::string nameOf(size_t row) {
    switch (row) {
        case kRowEffect1: return "effect-1";
        case kRowEffect2: return "effect-2";
        case kRowStereo: return "stereo-mode";
        case kRowEqualiser: return "equaliser";
        case kRowEffect3: return "effect-3";
        case kRowEffect4: return "effect-4";
        case kRowListeningTest: return "listening-test";
        default: break;
    }
    return row < kRowEqualiser ? format("gain-%zu", row - kRowFirstGain)
                               : format("forced-%zu", row - kRowFirstForced);
}

std::vector<Parameter> askLibrary() {
    std::vector<Parameter> table;
    for (size_t row = 0; row < kRowCount; ++row) {
        int id = 0;
        unsigned int size = 0;
        int offset = 0;
        ZYL_Convert_API_GetParameterTableInfo(static_cast<_zylQuorinPipelineParamEnum>(row), &id,
                                              &size, &offset);
        // A negative offset lies outside every block.
        table.push_back({nameOf(row), static_cast<uint32_t>(id), size,
                         offset < 0 ? SIZE_MAX : static_cast<size_t>(offset)});
    }
    return table;
}

std::string describe(const Bytes& block, size_t offset, size_t size) {
    constexpr size_t kMostBytes = 8;
    if (size <= sizeof(uint32_t)) {
        const uint32_t word = wordAt(block, offset, size);
        return format("%u", word);
    }
    std::string text = "0x";
    for (size_t i = 0; i < std::min(size, kMostBytes); ++i)
        text += format("%02x", block[offset + i]);
    return size > kMostBytes ? text + ".." : text;
}

bool differ(const Bytes& first, const Bytes& second, size_t offset, size_t size) {
    return !std::equal(first.data() + offset, first.data() + offset + size, second.data() + offset);
}

}  // namespace

const std::vector<Parameter>& parameters() {
    static const std::vector<Parameter> table = askLibrary();
    return table;
}

size_t blockSize() {
    _zylZylcsQuorinPipeLineInfo info = {};
    ZYL_Convert_API_GetPipelineSize(&info);
    return info.words[0];
}

uint32_t wordAt(const Bytes& block, size_t offset, size_t size) {
    uint32_t word = 0;
    for (size_t i = 0; i < std::min(size, sizeof(word)) && offset + i < block.size(); ++i) {
        word |= static_cast<uint32_t>(block[offset + i]) << (8 * i);
    }
    return word;
}

std::vector<Difference> compareBlocks(const Bytes& first, const Bytes& second) {
    std::vector<Difference> differences;
    const auto add = [&](const std::string& name, size_t offset, size_t size) {
        differences.push_back({name, offset, size, describe(first, offset, size),
                               describe(second, offset, size)});
    };
    std::vector<bool> named(first.size());
    for (const Parameter& parameter : parameters()) {
        if (!parameter.within(first)) continue;
        std::fill_n(named.begin() + static_cast<ptrdiff_t>(parameter.offset), parameter.size, true);
        if (differ(first, second, parameter.offset, parameter.size)) {
            add(parameter.name, parameter.offset, parameter.size);
        }
    }
    const auto differsAt = [&](size_t i) { return !named[i] && first[i] != second[i]; };
    for (size_t start = 0; start < first.size(); ++start) {
        if (!differsAt(start)) continue;
        size_t end = start + 1;
        while (end < first.size() && differsAt(end)) ++end;
        add("data", start, end - start);
        start = end;
    }
    return differences;
}

void printDifferences(const std::vector<Difference>& differences, const char* first,
                      const char* second) {
    int runs = 0;
    for (const Difference& difference : differences) {
        if (difference.name == "data" && ++runs > kMostRuns) continue;
        printf("  %-14s offset %5zu, %zu byte%s: %s %s, %s %s\n", difference.name.c_str(),
               difference.offset, difference.size, difference.size == 1 ? "" : "s", first,
               difference.first.c_str(), second, difference.second.c_str());
    }
    if (runs > kMostRuns) printf("  data           and %d more places\n", runs - kMostRuns);
}

void addToJson(Json& json, const std::vector<Difference>& differences, const char* first,
               const char* second) {
    json.open('[');
    for (const Difference& difference : differences) {
        json.open('{').name("name").text(difference.name);
        json.name("offset").number(static_cast<double>(difference.offset));
        json.name("size").number(static_cast<double>(difference.size));
        json.name(first).text(difference.first).name(second).text(difference.second).close();
    }
    json.close();
}
