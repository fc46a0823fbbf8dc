#include "settings/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <mutex>

namespace {

// All replacements take turns: they share the temporary names.
std::mutex gReplaceLock;

class Descriptor {
  public:
    explicit Descriptor(int fd) : mFd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (isOpen()) ::close(mFd);
    }

    bool isOpen() const { return mFd >= 0; }
    int get() const { return mFd; }

  private:
    const int mFd;
};

bool writeFully(int fd, const void* bytes, size_t size) {
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t written = TEMP_FAILURE_RETRY(write(fd, next, size));
        if (written <= 0) return false;
        next += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

// Whether a rename failed on what stands at its target, such as a directory or a file made
// immutable, and not on the disk.
bool isInTheWay(int error) {
    return error == EISDIR || error == EPERM || error == EACCES || error == EROFS || error == EBUSY;
}

// Without this, the new name may still be lost with the power although the contents are safe.
// Leaves the directory of `path` in it.
bool syncDirectoryOf(char* path) {
    char* const slash = strrchr(path, '/');
    if (slash == nullptr) return false;
    slash[1] = '\0';
    const Descriptor fd(open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return fd.isOpen() && fsync(fd.get()) == 0;
}

}  // namespace

bool canBeRead(const char* path) {
    return Descriptor(open(path, O_RDONLY | O_CLOEXEC)).isOpen();
}

ReplaceResult replaceFile(const char* path, const void* bytes, size_t size) {
    const std::lock_guard<std::mutex> lock(gReplaceLock);
    // On the stack: setters save with every call.
    char temporary[PATH_MAX];
    if (snprintf(temporary, sizeof(temporary), "%s.tmp", path) >= PATH_MAX) {
        return ReplaceResult::kNotOpened;
    }
    {
        const Descriptor fd(open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
        if (!fd.isOpen()) return ReplaceResult::kNotOpened;
        if (!writeFully(fd.get(), bytes, size) || fdatasync(fd.get()) != 0) {
            unlink(temporary);
            return ReplaceResult::kNotWritten;
        }
    }
    if (rename(temporary, path) != 0) {
        const ReplaceResult result =
                isInTheWay(errno) ? ReplaceResult::kNotOpened : ReplaceResult::kNotWritten;
        unlink(temporary);
        return result;
    }
    return syncDirectoryOf(temporary) ? ReplaceResult::kReplaced : ReplaceResult::kNotWritten;
}
