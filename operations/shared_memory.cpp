// Whole blocks between the DSP and a client's memory.

#include <android/log.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "service/process.h"
#include "service/zyl_kwo_service.h"

namespace {

using CopyCall = ssize_t (*)(pid_t, const iovec*, unsigned long, const iovec*, unsigned long,
                             unsigned long);

// Has the kernel copy between the service's own memory and the region. The client may have
// truncated the file behind the region. If the service touched it then, SIGBUS would end it for all
// clients; the kernel stops short instead. False when not all was copied.
bool copyThroughKernel(CopyCall copy, void* own, void* region, size_t size) {
    const iovec local = {own, size};
    const iovec remote = {region, size};
    // A copy that stops short sets no error, and one from before must not be taken for its own.
    errno = 0;
    static const pid_t self = getpid();
    return copy(self, &local, 1, &remote, 1, 0) == static_cast<ssize_t>(size);
}

// For kernels without those calls. The kernel also copies between memory and a pipe.
bool copyThroughPipe(uint8_t* to, const uint8_t* from, size_t size) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    bool copied = true;
    for (size_t done = 0; copied && done < size; done += PIPE_BUF) {
        // An empty pipe takes this much at once.
        const size_t piece = std::min<size_t>(size - done, PIPE_BUF);
        copied = write(ends[1], from + done, piece) == static_cast<ssize_t>(piece) &&
                 read(ends[0], to + done, piece) == static_cast<ssize_t>(piece);
    }
    close(ends[0]);
    close(ends[1]);
    return copied;
}

bool copyFromRegion(uint8_t* own, uint8_t* region, size_t size) {
    return copyThroughKernel(process_vm_readv, own, region, size) ||
           (errno == ENOSYS && copyThroughPipe(own, region, size));
}

bool copyToRegion(uint8_t* region, uint8_t* own, size_t size) {
    return copyThroughKernel(process_vm_writev, own, region, size) ||
           (errno == ENOSYS && copyThroughPipe(region, own, size));
}

bool isBlock(int32_t block) {
    return block >= 0 && block < kCacheBlockCount;
}

// How much of the 32-bit address space regions may take, in bytes. All of them count, as none is
// ever unmapped: a copy on another thread may be under way in an earlier one.
constexpr size_t kMostMapped = size_t{1} << 30;

}  // namespace

void* zyl_kwo_service::mapRegion(int fd, size_t size) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const auto inPages = [page](size_t bytes) { return (bytes + page - 1) / page * page; };
    // The whole region is counted before it is mapped: it takes its whole length for a moment, and
    // others may need address space at that moment.
    size_t mapped = mMappedBytes;
    do {
        if (size > kMostMapped - mapped) {
            errno = ENOMEM;
            return MAP_FAILED;
        }
    } while (!mMappedBytes.compare_exchange_weak(mapped, mapped + inPages(size)));
    void* const region = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (region == MAP_FAILED) {
        mMappedBytes -= inPages(size);
        return region;
    }
    // Copies use one pipeline image of the region and no more. A shorter region is of no use.
    const size_t image = reportedPipelineSize();
    const size_t used = size < image ? 0 : inPages(image);
    const size_t unused = inPages(size) - used;
    if (unused > 0) munmap(static_cast<uint8_t*>(region) + used, unused);
    mMappedBytes -= unused;
    return used == 0 ? nullptr : region;
}

int32_t zyl_kwo_service::setFileDescriptor(int fd, int32_t length) {
    void* const region = mapRegion(fd, static_cast<uint32_t>(length));
    if (region == MAP_FAILED) {
        const int error = errno;
        __android_log_print(ANDROID_LOG_ERROR, kServiceLogTag, "mmap failed! %d, %s", error,
                            strerror(error));
        mSharedRegion = nullptr;
        return kZylKwoUploadFailed;
    }
    mSharedRegion = static_cast<uint8_t*>(region);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::fetchCacheBlock(int32_t block) {
    uint8_t* const region = mSharedRegion;
    if (region == nullptr) return kZylKwoNoSharedRegion;
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    if (!isBlock(block)) {
        // A block that does not exist is fetched as zeros.
        ctrl.clear();
    } else if (driverWithoutLock().readParamBlock(ctrl, static_cast<CacheBlockType>(block)) != 0) {
        return kZylKwoUploadFailed;
    }
    // Devices have one result for all that can go wrong with a block. Its name speaks of an upload,
    // but it is a fetch's, too.
    return copyToRegion(region, ctrl.data(), ctrl.pipelineSize()) ? kZylKwoOk : kZylKwoUploadFailed;
}

int32_t zyl_kwo_service::pushCacheBlock(int32_t block) {
    uint8_t* const region = mSharedRegion;
    if (region == nullptr) return kZylKwoNoSharedRegion;
    if (!isBlock(block)) return kZylKwoOk;
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    if (!copyFromRegion(ctrl.data(), region, ctrl.pipelineSize()) ||
        driverWithoutLock().sendParamBlock(ctrl, static_cast<CacheBlockType>(block)) != 0) {
        return kZylKwoUploadFailed;
    }
    // The upload has announced itself already. Devices announce a push once more, and so does this.
    driverWithoutLock().notifyNewParams();
    return kZylKwoOk;
}
