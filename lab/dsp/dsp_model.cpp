#include "lab/dsp/dsp_model.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <thread>

#include "lab/journal/journal.h"

namespace {

// A real cache is a few hundred kilobytes; this only keeps nonsense from taking all memory.
constexpr uint32_t kLargestCache = 64u << 20;
constexpr uint32_t kShownInFull = 32;

uint32_t crc32(const uint8_t* bytes, size_t size) {
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> entries = {};
        for (uint32_t i = 0; i < entries.size(); ++i) {
            uint32_t entry = i;
            for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ (entry & 1 ? 0xEDB88320u : 0);
            entries[i] = entry;
        }
        return entries;
    }();
    uint32_t crc = ~0u;
    for (size_t i = 0; i < size; ++i) crc = (crc >> 8) ^ table[(crc ^ bytes[i]) & 0xFF];
    return ~crc;
}

std::string hex(uint32_t value, int digits = 1) {
    char text[16];
    snprintf(text, sizeof(text), "0x%0*x", digits, value);
    return text;
}

std::string payloadText(const uint8_t* bytes, uint32_t size) {
    if (size > kShownInFull) return "crc=" + hex(crc32(bytes, size), 8);
    std::string text = "data=";
    for (uint32_t i = 0; i < size; ++i) text += hex(bytes[i], 2).substr(2);
    return text;
}

std::string headerText(const ParamBlockHeader& header) {
    return "id=" + hex(header.id) + " size=" + std::to_string(header.size) +
           " offset=" + std::to_string(header.offset) + " mask=" + hex(header.mask);
}

// A request as the journal shows it, but for a payload.
std::string requestText(uint32_t request, const void* record) {
    switch (request) {
        case kRequestSetCacheSize:
            return "cache size=" + std::to_string(*static_cast<const uint32_t*>(record));
        case kRequestConfigureBlock: {
            const auto& config = *static_cast<const CacheBlockConfig*>(record);
            std::string text = "config block=" + std::to_string(config.block) +
                               " mask=" + hex(config.mask) +
                               " offset=" + std::to_string(config.offset) + " words=";
            const auto* words = static_cast<const uint32_t*>(record);
            for (size_t i = 3; i < sizeof(config) / 4; ++i)
                text += (i > 3 ? "," : "") + hex(words[i]);
            return text;
        }
        case kRequestReadBlock:
            return "read " + headerText(*static_cast<const ParamBlockHeader*>(record));
        case kRequestWriteBlock:
            return "write " + headerText(*static_cast<const ParamBlockHeader*>(record));
        default: return "request=" + hex(request);
    }
}

bool isKnown(uint32_t request) {
    return request == kRequestSetCacheSize || request == kRequestConfigureBlock ||
           request == kRequestReadBlock || request == kRequestWriteBlock;
}

}  // namespace

size_t DspModel::recordSize(uint32_t request, const ParamBlockHeader* header) const {
    const std::lock_guard<std::mutex> lock(mLock);
    switch (request) {
        case kRequestSetCacheSize: return sizeof(uint32_t);
        case kRequestConfigureBlock: return sizeof(CacheBlockConfig);
        case kRequestReadBlock:
        case kRequestWriteBlock:
            return header->size <= blockSize() ? sizeof(*header) + header->size : 0;
        default: return 0;
    }
}

int DspModel::request(uint32_t request, void* record, size_t length) {
    const std::lock_guard<std::mutex> serving(mServing);
    if (!isKnown(request)) {
        journal("dsp refuse %s reason=unknown", requestText(request, record).c_str());
        return ENOTTY;
    }
    std::this_thread::sleep_for(delay());
    const std::lock_guard<std::mutex> lock(mLock);
    if (failsNow()) {
        journal("dsp fail %s", requestText(request, record).c_str());
        return EIO;
    }
    switch (request) {
        case kRequestSetCacheSize: return setCacheSize(*static_cast<uint32_t*>(record));
        case kRequestConfigureBlock: return configure(*static_cast<CacheBlockConfig*>(record));
        default: return transfer(request, *static_cast<ParamBlockHeader*>(record), length);
    }
}

std::chrono::milliseconds DspModel::delay() const {
    const std::lock_guard<std::mutex> lock(mLock);
    return std::chrono::milliseconds(mDelay);
}

bool DspModel::failsNow() {
    if (mSkip > 0) {
        --mSkip;
        return false;
    }
    if (mFailures == 0) return false;
    --mFailures;
    return true;
}

int DspModel::refuse(uint32_t request, const void* record, const char* reason) {
    journal("dsp refuse %s reason=%s", requestText(request, record).c_str(), reason);
    return EINVAL;
}

int DspModel::setCacheSize(uint32_t size) {
    if (size > kLargestCache) return refuse(kRequestSetCacheSize, &size, "too-large");
    journal("dsp %s", requestText(kRequestSetCacheSize, &size).c_str());
    mCacheSize = size;
    mBlocks = {};
    return 0;
}

int DspModel::configure(const CacheBlockConfig& config) {
    if (mCacheSize == 0) return refuse(kRequestConfigureBlock, &config, "no-cache");
    if (config.block >= mBlocks.size()) {
        return refuse(kRequestConfigureBlock, &config, "no-such-block");
    }
    if (config.offset > mCacheSize - blockSize()) {
        return refuse(kRequestConfigureBlock, &config, "outside-cache");
    }
    journal("dsp %s", requestText(kRequestConfigureBlock, &config).c_str());
    Block& block = mBlocks[config.block];
    block.configured = true;
    block.mask = config.mask;
    block.bytes.resize(blockSize());
    return 0;
}

// Why a record cannot be carried out, or null.
const char* DspModel::objection(const ParamBlockHeader& header, size_t length) const {
    if (mCacheSize == 0) return "no-cache";
    if (header.size > blockSize() || header.offset > blockSize() - header.size) {
        return "outside-block";
    }
    if (header.size > length - sizeof(header)) return "cut-short";
    const bool whole = header.id == QUORIN_PIPELINE_ID;
    if (whole && (header.offset != 0 || header.size != blockSize())) return "not-a-whole-block";
    const bool bound = std::any_of(mBlocks.begin(), mBlocks.end(), [&header](const Block& block) {
        return block.configured && block.mask == header.mask;
    });
    return bound ? nullptr : "no-such-mask";
}

int DspModel::transfer(uint32_t request, ParamBlockHeader& header, size_t length) {
    const char* reason = objection(header, length);
    if (reason != nullptr) return refuse(request, &header, reason);
    auto* payload = reinterpret_cast<uint8_t*>(&header + 1);
    std::string text = requestText(request, &header);
    if (request == kRequestWriteBlock) text += " " + payloadText(payload, header.size);
    journal("dsp %s", text.c_str());
    for (Block& block : mBlocks) {
        if (!block.configured || block.mask != header.mask) continue;
        uint8_t* place = block.bytes.data() + header.offset;
        if (request == kRequestWriteBlock) {
            memcpy(place, payload, header.size);
        } else {
            memcpy(payload, place, header.size);
        }
    }
    return 0;
}

void DspModel::fail(unsigned skip, unsigned count) {
    const std::lock_guard<std::mutex> lock(mLock);
    mSkip = skip;
    mFailures = count;
}

void DspModel::slow(unsigned milliseconds) {
    const std::lock_guard<std::mutex> lock(mLock);
    mDelay = milliseconds;
}

void DspModel::reset() {
    const std::lock_guard<std::mutex> lock(mLock);
    mSkip = mFailures = mDelay = 0;
}

std::vector<uint8_t> DspModel::block(unsigned number) const {
    const std::lock_guard<std::mutex> lock(mLock);
    return number < mBlocks.size() ? mBlocks[number].bytes : std::vector<uint8_t>();
}
