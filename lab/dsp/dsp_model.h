// The DSP behind /dev/zyl_quorin: a parameter cache of three blocks, filled by requests.
//
// It checks what it gets. A request that it does not know is ENOTTY; a record outside its block, or
// for a device mask that no block was configured with, is EINVAL; both change nothing. Every
// request leaves a line in the journal.

#ifndef ZYL_LAB_DSP_DSP_MODEL_H
#define ZYL_LAB_DSP_DSP_MODEL_H

#include <array>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <vector>

#include "driver/zyl_quorin_ioctl.h"

class DspModel {
  public:
    // Serves one request; `record` is all of it, header and payload, as recordSize() tells. What
    // reaches beyond its `length` is refused, whatever was configured since recordSize() was asked.
    // Returns 0 or an errno. Takes as long as slow() says. Any thread.
    int request(uint32_t request, void* record, size_t length = SIZE_MAX);

    // How long the record of a request is; for those with a header, `header` must be readable. 0
    // for a request that is refused whatever follows: unknown, or longer than a block.
    size_t recordSize(uint32_t request, const ParamBlockHeader* header) const;

    // Lets `skip` requests pass, then fails `count` with EIO.
    void fail(unsigned skip, unsigned count);
    // Makes every request take so long.
    void slow(unsigned milliseconds);
    // No failures, no delay. The blocks stay as they are.
    void reset();

    // The contents of a block, 0 to 2; empty before it was configured.
    std::vector<uint8_t> block(unsigned number) const;

  private:
    struct Block {
        bool configured = false;
        uint32_t mask = 0;
        std::vector<uint8_t> bytes;
    };

    std::chrono::milliseconds delay() const;
    bool failsNow();
    int setCacheSize(uint32_t size);
    int configure(const CacheBlockConfig& config);
    int transfer(uint32_t request, ParamBlockHeader& header, size_t length);
    const char* objection(const ParamBlockHeader& header, size_t length) const;
    int refuse(uint32_t request, const void* record, const char* reason);
    size_t blockSize() const { return mCacheSize / kCacheBlockCount; }

    // Held while a request is served, however slowly: a DSP does one thing at a time.
    std::mutex mServing;
    mutable std::mutex mLock;  // guards what follows
    unsigned mSkip = 0;
    unsigned mFailures = 0;
    unsigned mDelay = 0;
    uint32_t mCacheSize = 0;
    std::array<Block, kCacheBlockCount> mBlocks;
};

#endif  // ZYL_LAB_DSP_DSP_MODEL_H
