#include "lab/conversion/layout.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace {

constexpr int kFirstGain = 3;
constexpr int kLastGain = 12;
constexpr int kWideRow = 27;  // wider than row 26, so that a mix-up of the two shows
constexpr uint32_t kFirstId = 0x10015100;

constexpr uint32_t kOffsets[29] = {16,  32,  64,  100, 102, 104, 106, 108, 110, 112,
                                   114, 116, 118, 132, 148, 164, 180, 196, 212, 228,
                                   244, 260, 276, 292, 308, 324, 352, 400, 448};

bool isGain(int row) {
    return row >= kFirstGain && row <= kLastGain;
}

// Every row stays at its own offset unless one before it reaches there; the gains always follow one
// another.
void placeRows(Layout& layout) {
    uint32_t end = 0;
    for (int row = 0; row < 29; ++row) {
        const bool follows = isGain(row) && row != kFirstGain;
        const uint32_t offset = follows ? end : std::max(end, kOffsets[row]);
        layout.rows[row].offset = static_cast<int32_t>(offset);
        layout.rows[row].id = static_cast<int32_t>(kFirstId + offset);
        end = offset + layout.rows[row].size;
    }
}

}  // namespace

Layout defaultLayout() {
    Layout layout = {};
    layout.words[0] = 61700;
    for (uint32_t i = 1; i < 9; ++i) layout.words[i] = 0x1000 * i + 0x11 * i;
    for (int row = 0; row < 29; ++row) layout.rows[row].size = isGain(row) ? 2 : 4;
    layout.rows[kWideRow].size = 8;
    placeRows(layout);
    layout.version = "3.1.0";
    return layout;
}

void setRowSize(Layout& layout, int row, uint32_t size) {
    const int first = isGain(row) ? kFirstGain : row;
    const int last = isGain(row) ? kLastGain : row;
    for (int changed = first; changed <= last; ++changed) layout.rows[changed].size = size;
    placeRows(layout);
}

namespace {

Layout layoutFromFile() {
    Layout layout = defaultLayout();
    std::ifstream file("/etc/zyl/conversion.conf");
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string what;
        std::string size;
        int row = 0;
        words >> what;
        if (what == "pipeline-size") words >> layout.words[0];
        if (what == "no-version") layout.version.reset();
        uint32_t bytes = 0;
        if (what == "row" && words >> row >> size >> bytes && row >= 0 && row < 29) {
            setRowSize(layout, row, bytes);
        }
    }
    return layout;
}

}  // namespace

Layout& layout() {
    static Layout layout = layoutFromFile();
    return layout;
}
