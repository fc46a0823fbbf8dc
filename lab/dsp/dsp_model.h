// The DSP behind /dev/zyl_quorin: a parameter cache of three blocks, filled by requests.
//
// It checks what it gets. A request that it does not know is ENOTTY; an argument outside its block,
// or for a device mask that no block was configured with, is EINVAL; both change nothing. Every
// request leaves a line in the journal.

#ifndef ZYL_LAB_DSP_DSP_MODEL_H
#define ZYL_LAB_DSP_DSP_MODEL_H

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <vector>

#include "lab/dsp/quorin_device.h"

class DspModel {
  public:
    // Serves one request; `argument` is all of it, header and payload, as long as argumentSize()
    // has said. A payload that ends behind `length` is refused, whatever was configured since then.
    // Returns 0 or an errno. Takes as long as slow() says. Any thread.
    int request(uint32_t request, void* argument, size_t length = SIZE_MAX);

    // How long the argument of a request is; for those with a slice, its words must be readable. 0
    // for a request that is refused whatever follows: unknown, or longer than a block.
    size_t argumentSize(uint32_t request, const uint32_t* slice) const;

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
    int setCache(const uint32_t* size);
    int bind(const uint32_t* words);
    int transfer(uint32_t request, uint32_t* words, size_t length);
    const char* objectionTo(const uint32_t* binding) const;
    const char* objectionTo(const uint32_t* slice, size_t length) const;
    int refuse(uint32_t request, const uint32_t* argument, const char* reason, int error = EINVAL);
    size_t blockSize() const { return mCacheSize / quorin::kBlockCount; }

    // Held while a request is served, however slowly: a DSP does one thing at a time.
    std::mutex mServing;
    mutable std::mutex mLock;  // guards what follows
    unsigned mSkip = 0;
    unsigned mFailures = 0;
    unsigned mDelay = 0;
    uint32_t mCacheSize = 0;
    std::array<Block, quorin::kBlockCount> mBlocks;
};

#endif  // ZYL_LAB_DSP_DSP_MODEL_H
