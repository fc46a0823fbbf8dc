#include "driver/pipeline.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

namespace {

// No value of a parameter.
constexpr uint64_t kMark = 0x9E3779B97F4A7C15;

std::mutex gSpareLock;
// The two together are guarded by it.
std::unique_ptr<uint8_t[]> gSpare;
size_t gSpareSize = 0;

}  // namespace

ImageMemory::ImageMemory(size_t size) : mSize(size) {
    if (!takeSpare()) mBytes.reset(new uint8_t[size]);
}

ImageMemory::ImageMemory(size_t size, const std::nothrow_t& tag) : mSize(size) {
    if (!takeSpare()) mBytes.reset(new (tag) uint8_t[size]);
}

bool ImageMemory::takeSpare() {
    const std::lock_guard<std::mutex> lock(gSpareLock);
    if (gSpare == nullptr || gSpareSize < mSize) return false;
    mSize = gSpareSize;
    mBytes = std::move(gSpare);
    return true;
}

// The larger one is kept. What is freed is freed behind the lock.
ImageMemory::~ImageMemory() {
    const std::lock_guard<std::mutex> lock(gSpareLock);
    if (mBytes == nullptr || (gSpare != nullptr && gSpareSize >= mSize)) return;
    std::swap(gSpare, mBytes);
    gSpareSize = mSize;
}

_zylZylcsQuorinPipeLineInfo reportedPipeline() {
    _zylZylcsQuorinPipeLineInfo info = {};
    ZYL_Convert_API_GetPipelineSize(&info);
    if (info.words[0] > kLargestPipeline) info.words[0] = 0;
    return info;
}

uint32_t reportedPipelineSize() {
    return reportedPipeline().words[0];
}

zylQuorinPipelineCtrl::zylQuorinPipelineCtrl(Header header)
    : mPipelineSize(reportedPipelineSize()),
      mHeaderSize(header == kWithHeader ? sizeof(ParamBlockHeader) : 0),
      mMemory(size_t{mHeaderSize} + mPipelineSize) {}

void zylQuorinPipelineCtrl::clear() {
    memset(data(), 0, mPipelineSize);
}

void zylQuorinPipelineCtrl::mark() {
    put(int64_t{mPipelineSize} - int64_t{sizeof(kMark)}, &kMark, sizeof(kMark));
}

bool zylQuorinPipelineCtrl::isMarked() {
    if (mPipelineSize < sizeof(kMark)) return mPipelineSize > 0;
    return memcmp(data() + mPipelineSize - sizeof(kMark), &kMark, sizeof(kMark)) == 0;
}

void zylQuorinPipelineCtrl::put(int64_t offset, const void* bytes, uint32_t size) {
    if (offset < 0 || offset + size > mPipelineSize) return;
    memcpy(data() + offset, bytes, size);
}

ParameterBuffer::ParameterBuffer(uint32_t payloadSize, uint32_t firstWord)
    : mWords(new uint32_t[(sizeof(ParamBlockHeader) + std::max(payloadSize, 4u) + 3) / 4]()) {
    memcpy(payload(), &firstWord, sizeof(firstWord));
}
