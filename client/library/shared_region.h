// Memory shared with the service, for whole blocks.

#ifndef ZYL_CLIENT_LIBRARY_SHARED_REGION_H
#define ZYL_CLIENT_LIBRARY_SHARED_REGION_H

#include <cstddef>
#include <cstdint>

#include "interface/Izyl_kwo_service.h"

// Descriptors of memory that can be mapped and passed on, the caller's to close; -1 when there is
// none. Kernels before 3.17 have no memory files, and newer ones may have no ashmem.
// The first goes by the call's number: the C library of API 24 has no function for it.
int createMemoryFile(size_t length);
int createAshmem(size_t length);

// The service never unmaps what it was given: each region costs it a block's worth of address space
// for as long as it runs. One a process is plenty.
class SharedRegion {
  public:
    SharedRegion() = default;
    SharedRegion(const SharedRegion&) = delete;
    SharedRegion& operator=(const SharedRegion&) = delete;
    ~SharedRegion();

    // Hands a region over that is long enough for a block, and learns a block's size by it. Returns
    // a ZylKwoResult, kZylKwoNoMemory when there is no memory to share.
    int32_t share(Izyl_kwo_service& service);

    uint8_t* bytes() { return mBytes; }
    size_t blockSize() const { return mBlockSize; }

  private:
    bool map(size_t length);
    void unmap();

    int mFd = -1;
    uint8_t* mBytes = nullptr;
    size_t mLength = 0;
    size_t mBlockSize = 0;
};

#endif  // ZYL_CLIENT_LIBRARY_SHARED_REGION_H
