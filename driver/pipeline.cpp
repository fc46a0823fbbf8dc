#include "driver/pipeline.h"

#include <algorithm>
#include <cstring>

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
      mArray(new uint8_t[size_t{mHeaderSize} + mPipelineSize]) {}

void zylQuorinPipelineCtrl::clear() {
    memset(data(), 0, mPipelineSize);
}

void zylQuorinPipelineCtrl::put(int64_t offset, const void* bytes, uint32_t size) {
    if (offset < 0 || offset + size > mPipelineSize) return;
    memcpy(data() + offset, bytes, size);
}

ParameterBuffer::ParameterBuffer(uint32_t payloadSize, uint32_t firstWord)
    : mWords(new uint32_t[(sizeof(ParamBlockHeader) + std::max(payloadSize, 4u) + 3) / 4]()) {
    memcpy(payload(), &firstWord, sizeof(firstWord));
}
