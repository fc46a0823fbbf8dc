#include "lab/dsp/dsp_model.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <thread>

#include "lab/dsp/quorin_device.h"
#include "lab/journal/journal.h"

using namespace quorin;

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

std::string sliceText(const uint32_t* slice) {
    return "id=" + hex(slice[slice::kId]) + " size=" + std::to_string(slice[slice::kLength]) +
           " offset=" + std::to_string(slice[slice::kStart]) + " mask=" + hex(slice[slice::kMask]);
}

// A request as the journal shows it, without a payload.
std::string requestText(uint32_t request, const uint32_t* argument) {
    switch (request) {
        case kSetCache: return "cache size=" + std::to_string(*argument);
        case kBindBlock: {
            std::string text = "config block=" + std::to_string(argument[binding::kBlock]) +
                               " mask=" + hex(argument[binding::kMask]) +
                               " offset=" + std::to_string(argument[binding::kStart]) + " words=";
            for (int i = binding::kPipeline; i < binding::kWords; ++i)
                text += (i > binding::kPipeline ? "," : "") + hex(argument[i]);
            return text;
        }
        case kRead: return "read " + sliceText(argument);
        case kWrite: return "write " + sliceText(argument);
        default: return "request=" + hex(request);
    }
}

bool isKnown(uint32_t request) {
    return request == kSetCache || request == kBindBlock || request == kRead || request == kWrite;
}

}  // namespace

size_t DspModel::argumentSize(uint32_t request, const uint32_t* slice) const {
    const std::lock_guard<std::mutex> lock(mLock);
    switch (request) {
        case kSetCache: return sizeof(uint32_t);
        case kBindBlock: return binding::kWords * sizeof(uint32_t);
        case kRead:
        case kWrite:
            return slice[slice::kLength] <= blockSize() ? sizeof(Slice) + slice[slice::kLength] : 0;
        default: return 0;
    }
}

int DspModel::request(uint32_t request, void* argument, size_t length) {
    const std::lock_guard<std::mutex> serving(mServing);
    auto* const words = static_cast<uint32_t*>(argument);
    if (!isKnown(request)) return refuse(request, words, "unknown", ENOTTY);
    std::this_thread::sleep_for(delay());
    const std::lock_guard<std::mutex> lock(mLock);
    if (failsNow()) {
        journal("dsp fail %s", requestText(request, words).c_str());
        return EIO;
    }
    switch (request) {
        case kSetCache: return setCache(words);
        case kBindBlock: return bind(words);
        default: return transfer(request, words, length);
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

int DspModel::refuse(uint32_t request, const uint32_t* argument, const char* reason, int error) {
    journal("dsp refuse %s reason=%s", requestText(request, argument).c_str(), reason);
    return error;
}

int DspModel::setCache(const uint32_t* size) {
    if (*size > kLargestCache) return refuse(kSetCache, size, "too-large");
    journal("dsp %s", requestText(kSetCache, size).c_str());
    mCacheSize = *size;
    mBlocks = {};
    return 0;
}

// Why a block cannot be bound, or null.
const char* DspModel::objectionTo(const uint32_t* words) const {
    if (mCacheSize == 0) return "no-cache";
    if (words[binding::kBlock] >= mBlocks.size()) return "no-such-block";
    if (words[binding::kStart] > mCacheSize - blockSize()) return "outside-cache";
    const bool whole =
            words[binding::kPipeline] == kWholeBlock && words[binding::kAux] == kAuxiliary;
    return whole ? nullptr : "no-pipeline";
}

int DspModel::bind(const uint32_t* words) {
    const char* reason = objectionTo(words);
    if (reason != nullptr) return refuse(kBindBlock, words, reason);
    journal("dsp %s", requestText(kBindBlock, words).c_str());
    Block& block = mBlocks[words[binding::kBlock]];
    block.configured = true;
    block.mask = words[binding::kMask];
    block.bytes.resize(blockSize());
    return 0;
}

// Why a slice cannot be read or written, or null.
const char* DspModel::objectionTo(const uint32_t* words, size_t length) const {
    const uint32_t start = words[slice::kStart];
    const uint32_t size = words[slice::kLength];
    if (mCacheSize == 0) return "no-cache";
    if (size > blockSize() || start > blockSize() - size) return "outside-block";
    if (size > length - sizeof(Slice)) return "cut-short";
    const bool whole = words[slice::kId] == kWholeBlock;
    if (whole && (start != 0 || size != blockSize())) return "not-a-whole-block";
    const bool bound = std::any_of(mBlocks.begin(), mBlocks.end(), [words](const Block& block) {
        return block.configured && block.mask == words[slice::kMask];
    });
    return bound ? nullptr : "no-such-mask";
}

int DspModel::transfer(uint32_t request, uint32_t* words, size_t length) {
    const char* reason = objectionTo(words, length);
    if (reason != nullptr) return refuse(request, words, reason);
    auto* payload = reinterpret_cast<uint8_t*>(words + slice::kWords);
    const uint32_t size = words[slice::kLength];
    std::string text = requestText(request, words);
    if (request == kWrite) text += " " + payloadText(payload, size);
    journal("dsp %s", text.c_str());
    for (Block& block : mBlocks) {
        if (!block.configured || block.mask != words[slice::kMask]) continue;
        uint8_t* place = block.bytes.data() + words[slice::kStart];
        if (request == kWrite) {
            memcpy(place, payload, size);
        } else {
            memcpy(payload, place, size);
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
