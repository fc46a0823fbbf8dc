#include "client/library/shared_region.h"

#include <cutils/ashmem.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t kFirstLength = size_t{64} << 10;
constexpr size_t kLastLength = size_t{16} << 20;

// Fetching a block that does not exist fills a whole block with zeros: what is then left of this
// pattern lies behind the block.
constexpr int32_t kNoBlock = 3;
constexpr uint8_t kPattern = 0xA5;

constexpr char kMemoryName[] = "kwoctl";

}  // namespace

int createMemoryFile(size_t length) {
    const int fd = static_cast<int>(syscall(SYS_memfd_create, kMemoryName, 1U /* MFD_CLOEXEC */));
    if (fd >= 0 && ftruncate(fd, static_cast<off_t>(length)) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

int createAshmem(size_t length) {
    return ashmem_create_region(kMemoryName, length);
}

SharedRegion::~SharedRegion() {
    unmap();
}

bool SharedRegion::map(size_t length) {
    unmap();
    mFd = createMemoryFile(length);
    if (mFd < 0) mFd = createAshmem(length);
    if (mFd < 0) return false;
    void* bytes = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, mFd, 0);
    if (bytes == MAP_FAILED) return false;
    mBytes = static_cast<uint8_t*>(bytes);
    mLength = length;
    return true;
}

void SharedRegion::unmap() {
    if (mBytes != nullptr) munmap(mBytes, mLength);
    if (mFd >= 0) close(mFd);
    mBytes = nullptr;
    mFd = -1;
}

int32_t SharedRegion::share(Izyl_kwo_service& service) {
    for (size_t length = kFirstLength; length <= kLastLength; length *= 2) {
        if (!map(length)) return kZylKwoNoMemory;
        memset(mBytes, kPattern, mLength);
        int32_t result = service.setFileDescriptor(mFd, static_cast<int32_t>(length));
        if (result == kZylKwoOk) result = service.fetchCacheBlock(kNoBlock);
        // Too short is no region to the service.
        if (result == kZylKwoNoSharedRegion) continue;
        mBlockSize = static_cast<size_t>(std::find(mBytes, mBytes + mLength, kPattern) - mBytes);
        return result;
    }
    return kZylKwoNoSharedRegion;
}
