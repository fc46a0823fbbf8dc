#include "lab/conversion/layout.h"

#include <fstream>
#include <sstream>

namespace {

constexpr int kFirstGain = 3;
constexpr int kLastGain = 12;
constexpr int32_t kFirstId = 0x10015100;

// Row 27 is wider than row 26, so that a mix-up of the two shows.
constexpr int32_t kOffsets[29] = {16,  32,  64,  100, 102, 104, 106, 108, 110, 112,
                                  114, 116, 118, 132, 148, 164, 180, 196, 212, 228,
                                  244, 260, 276, 292, 308, 324, 352, 400, 448};

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

Layout defaultLayout() {
    Layout layout = {};
    layout.words[0] = 61700;
    for (uint32_t i = 1; i < 9; ++i) layout.words[i] = 0x1000 * i + 0x11 * i;
    for (int row = 0; row < 29; ++row) {
        const bool gain = row >= kFirstGain && row <= kLastGain;
        layout.rows[row] = {kFirstId + kOffsets[row],
                            gain        ? 2u
                            : row == 27 ? 8u
                                        : 4u,
                            kOffsets[row]};
    }
    layout.version = "3.1.0";
    return layout;
}

void setRowSize(Layout& layout, int row, uint32_t size) {
    if (row < kFirstGain || row > kLastGain) {
        layout.rows[row].size = size;
        return;
    }
    for (int gain = kFirstGain; gain <= kLastGain; ++gain) {
        const int32_t offset = kOffsets[kFirstGain] + (gain - kFirstGain) * static_cast<int>(size);
        layout.rows[gain] = {kFirstId + offset, size, offset};
    }
}

Layout& layout() {
    static Layout layout = layoutFromFile();
    return layout;
}
