// Buffers that travel between the tuning files, the settings and the DSP.

#ifndef ZYL_DRIVER_PIPELINE_H
#define ZYL_DRIVER_PIPELINE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "driver/zyl_convert_api.h"
#include "driver/zyl_quorin_ioctl.h"

// In bytes. No device has a pipeline as large as this; when the library reports a larger one, the
// library is at fault.
constexpr uint32_t kLargestPipeline = 4 << 20;

// Asks the conversion library about the pipeline. One that is larger than kLargestPipeline is
// reported with a size of 0, for which no upload succeeds.
_zylZylcsQuorinPipeLineInfo reportedPipeline();

// The size of one pipeline image in bytes, as the library reports it now.
uint32_t reportedPipelineSize();

// Memory for an image, for as long as this object lives. It is not cleared: what an earlier image
// left is still in it.
//
// A block of this size is expensive to get. A large one is mapped and unmapped each time, and of
// those that are not, an allocator keeps one in each of its arenas. So this keeps one block for
// whoever needs one next. Any thread.
class ImageMemory {
  public:
    explicit ImageMemory(size_t size);
    ImageMemory(size_t size, const std::nothrow_t& tag);
    ImageMemory(const ImageMemory&) = delete;
    ImageMemory& operator=(const ImageMemory&) = delete;
    ~ImageMemory();

    // Null only where it was made with std::nothrow and there was no memory.
    uint8_t* get() { return mBytes.get(); }
    const uint8_t* get() const { return mBytes.get(); }

  private:
    bool takeSpare();

    std::unique_ptr<uint8_t[]> mBytes;
    size_t mSize;
};

// One pipeline image, of the size that the conversion library reports when it is made. It may have
// room for the upload header in front, so that header and image go to the DSP in one piece. The
// contents are not cleared.
class zylQuorinPipelineCtrl {
  public:
    enum Header : bool { kWithoutHeader = false, kWithHeader = true };

    explicit zylQuorinPipelineCtrl(Header header);
    zylQuorinPipelineCtrl(const zylQuorinPipelineCtrl&) = delete;
    zylQuorinPipelineCtrl& operator=(const zylQuorinPipelineCtrl&) = delete;

    uint8_t* data() { return mMemory.get() + mHeaderSize; }
    uint32_t pipelineSize() const { return mPipelineSize; }

    // Only for an image made with a header.
    ParamBlockHeader* header() { return reinterpret_cast<ParamBlockHeader*>(mMemory.get()); }

    void clear();

    // Leaves a mark at the very end of the image, or sees whether it is still there.
    void mark();
    bool isMarked();

    // Writes `size` bytes at a byte offset of the image. Nothing is written when the place is not
    // wholly inside the image, as the offsets are the library's and may be wrong.
    void put(int64_t offset, const void* bytes, uint32_t size);

  private:
    const uint32_t mPipelineSize;
    const uint32_t mHeaderSize;
    ImageMemory mMemory;
};

// The upload of a single parameter: a header and a payload, which has room for at least one 32-bit
// word, whatever the parameter's size is. All but the first word of the payload is zero.
class ParameterBuffer {
  public:
    explicit ParameterBuffer(uint32_t payloadSize, uint32_t firstWord = 0);

    ParamBlockHeader* header() { return reinterpret_cast<ParamBlockHeader*>(mWords.get()); }
    uint8_t* payload() { return reinterpret_cast<uint8_t*>(header() + 1); }

  private:
    const std::unique_ptr<uint32_t[]> mWords;
};

#endif  // ZYL_DRIVER_PIPELINE_H
