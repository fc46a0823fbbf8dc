#include "driver/descriptor.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace {

// More than the binder pool's threads need, of which each has two files open at the most.
constexpr rlim_t kReserved = 64;

constexpr int kAttempts = 12;
constexpr useconds_t kRetryDelay = 100 * 1000;

// The flags are the caller's. NOLINTBEGIN(android-cloexec-open)
int openAt(int directory, const char* path, int flags, mode_t mode) {
    return directory == AT_FDCWD ? open(path, flags, mode) : openat(directory, path, flags, mode);
}
// NOLINTEND(android-cloexec-open)

}  // namespace

void Descriptor::reset(int fd) {
    if (isOpen()) close(mFd);
    mFd = fd;
}

int openOnce(const char* path, int flags, mode_t mode, int directory) {
    const int fd = openAt(directory, path, flags, mode);
    if (fd >= 0 || errno != EMFILE) return fd;
    static std::mutex reserveLock;
    const std::lock_guard<std::mutex> lock(reserveLock);
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return -1;
    const rlimit raised = {limit.rlim_max, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &raised);
    const int reserved = openAt(directory, path, flags, mode);
    const int error = errno;
    setrlimit(RLIMIT_NOFILE, &limit);
    errno = error;
    return reserved;
}

Descriptor openFile(const char* path, int flags, mode_t mode, int directory) {
    flags |= O_CLOEXEC | O_NONBLOCK;
    for (int attempt = 1;; ++attempt) {
        Descriptor file(openOnce(path, flags, mode, directory));
        if (file.isOpen() || errno != EMFILE || attempt == kAttempts) return file;
        usleep(kRetryDelay);
    }
}

bool canBeRead(const char* path) {
    return openFile(path, O_RDONLY).isOpen();
}

void keepDescriptorsInReserve() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_max <= 2 * kReserved) return;
    const rlim_t highest = limit.rlim_max - kReserved;
    if (limit.rlim_cur <= highest) return;
    limit.rlim_cur = highest;
    setrlimit(RLIMIT_NOFILE, &limit);
}

bool readFully(const Descriptor& file, void* bytes, size_t size, size_t* read) {
    size_t done = 0;
    while (done < size) {
        const ssize_t came = TEMP_FAILURE_RETRY(
                ::read(file.get(), static_cast<char*>(bytes) + done, size - done));
        if (came <= 0) break;
        done += static_cast<size_t>(came);
    }
    if (read != nullptr) *read = done;
    return done == size;
}

bool writeFully(const Descriptor& file, const void* bytes, size_t size) {
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t written = TEMP_FAILURE_RETRY(write(file.get(), next, size));
        if (written <= 0) return false;
        next += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}
