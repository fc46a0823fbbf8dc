// A file descriptor that is closed with its owner, and the one way in which the service opens
// files.

#ifndef ZYL_DRIVER_DESCRIPTOR_H
#define ZYL_DRIVER_DESCRIPTOR_H

#include <fcntl.h>
#include <sys/types.h>

#include <cstddef>

class Descriptor {
  public:
    // Takes over `fd`; a negative one is none.
    explicit Descriptor(int fd = -1) : mFd(fd) {}
    Descriptor(Descriptor&& other) noexcept : mFd(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~Descriptor() { reset(-1); }

    bool isOpen() const { return mFd >= 0; }
    int get() const { return mFd; }

    // The caller's from now on.
    int release() {
        const int fd = mFd;
        mFd = -1;
        return fd;
    }

  private:
    void reset(int fd);

    int mFd;
};

// Opens a file for the service itself, closed on exec. It never waits for another process: a FIFO
// that nobody writes reads as empty. Leaves errno as open() does.
//
// Descriptors that clients send come into the table of this process, up to its soft limit. When
// they have filled it, this goes on up to the hard limit, one file at a time, and tries again for
// about a second if that, too, is full: a client's call gives its descriptors back when it ends.
// Any thread.
//
// A relative path begins at `directory`, an open one.
Descriptor openFile(const char* path, int flags, mode_t mode = 0, int directory = AT_FDCWD);

// The same in a single attempt, for callers who try again by themselves; `flags` are passed on
// unchanged. Returns the descriptor, or -1.
int openOnce(const char* path, int flags, mode_t mode = 0, int directory = AT_FDCWD);

// Whether the file can be opened for reading now. One that is there but cannot be opened counts as
// missing.
bool canBeRead(const char* path);

// Leaves room between the soft and the hard limit for openFile, by lowering the soft one where
// needed. To be called once, before any client can call.
void keepDescriptorsInReserve();

// Reads until `size` bytes are there; false when the file ends before or on an error. Stores how
// many bytes came in `read`, unless it is null.
bool readFully(const Descriptor& file, void* bytes, size_t size, size_t* read = nullptr);

bool writeFully(const Descriptor& file, const void* bytes, size_t size);

#endif  // ZYL_DRIVER_DESCRIPTOR_H
