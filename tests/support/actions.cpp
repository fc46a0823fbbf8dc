// The short form of the journal.

#include <cstdio>
#include <cstdlib>

#include "lab/conversion/layout.h"
#include "tests/support/phone.h"

namespace {

constexpr char kAnnouncement[] = "audio set ZYL_NEW_PARAM_READY=1";

int blockOf(uint32_t mask) {
    for (int block = 0; block < kCacheBlockCount; ++block) {
        if (g_deviceMasks[block] == mask) return block;
    }
    return -1;
}

// Little-endian hex of up to four bytes as a number; anything longer stays as it is.
std::string valueOf(const std::string& hex) {
    if (hex.size() > 8) return hex;
    std::string turned;
    for (size_t i = 0; i < hex.size(); i += 2) turned = hex.substr(i, 2) + turned;
    return std::to_string(strtoul(turned.c_str(), nullptr, 16));
}

std::string writeAction(uint32_t id, uint32_t size, uint32_t offset, uint32_t mask,
                        const std::string& payload) {
    const std::string block = std::to_string(blockOf(mask));
    if (id == QUORIN_PIPELINE_ID) return "block" + block;
    const Layout& rows = layout();
    for (int row = 0; row < kParameterRowCount; ++row) {
        if (static_cast<uint32_t>(rows.rows[row].id) != id) continue;
        std::string text = "row" + std::to_string(row) + "@" + block;
        if (size != rows.rows[row].size) text += "[" + std::to_string(size) + "]";
        if (offset != static_cast<uint32_t>(rows.rows[row].offset)) text += "[misplaced]";
        const size_t value = payload.find('=');
        return value == std::string::npos ? text : text + "=" + valueOf(payload.substr(value + 1));
    }
    return "unknown-row@" + block;
}

// `line` without "dsp ", or "dsp fail ", in front. Anything but a write or read stays as it is.
std::string requestAction(const std::string& line) {
    char verb[8] = {};
    char payload[256] = {};
    uint32_t id = 0, size = 0, offset = 0, mask = 0;
    const int found = sscanf(line.c_str(), "%7s id=%x size=%u offset=%u mask=%x %255s", verb, &id,
                             &size, &offset, &mask, payload);
    if (found < 5) return line;
    if (verb == std::string("read")) return "read" + std::to_string(blockOf(mask));
    return writeAction(id, size, offset, mask, payload);
}

}  // namespace

std::string Phone::actions() {
    std::string text;
    bool unannounced = false;
    const auto append = [&text, &unannounced](const std::string& action, bool upload) {
        if (unannounced) text += "(silent)";
        if (!text.empty() && !action.empty()) text += ' ';
        text += action;
        unannounced = upload;
    };
    for (const std::string& line : journal()) {
        if (line == kAnnouncement && unannounced) {
            unannounced = false;
        } else if (line == kAnnouncement) {
            append("announce", false);
        } else if (line.compare(0, 9, "dsp fail ") == 0) {
            append("!" + requestAction(line.substr(9)), line.compare(9, 5, "write") == 0);
        } else if (line.compare(0, 4, "dsp ") == 0) {
            append(requestAction(line.substr(4)), line.compare(4, 5, "write") == 0);
        } else {
            append(line, false);
        }
    }
    append("", false);
    return text;
}
