#include "tests/support/device_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/android/binder.h>
#include <linux/memfd.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

enum class Kind : char { kOther, kDsp, kBinder };
constexpr int kMaxDescriptors = 1024;
std::atomic<Kind> kinds[kMaxDescriptors];

std::unique_ptr<DeviceCalls> current = std::make_unique<DeviceCalls>();

bool isKnown(int fd) {
    return fd >= 0 && fd < kMaxDescriptors;
}

int openOther(const char* path, int flags, mode_t mode) {
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

// A descriptor of its own, so that it can be mixed up with others as a real one can.
int openAs(Kind kind) {
    const int fd = static_cast<int>(syscall(SYS_memfd_create, "device", MFD_CLOEXEC));
    // Binder's is mapped.
    if (!isKnown(fd) || ftruncate(fd, 4 << 20) != 0) return -1;
    kinds[fd] = kind;
    return fd;
}

int openDsp() {
    ++current->opens;
    if (current->missing > 0) {
        --current->missing;
        errno = ENOENT;
        return -1;
    }
    ++current->standing;
    if (!current->opensAsZero) return openAs(Kind::kDsp);
    kinds[0] = Kind::kDsp;
    return 0;
}

// There is no other process: a transaction never leaves this one.
int binderRequest(unsigned long request, void* argument) {
    if (request == BINDER_VERSION) {
        static_cast<binder_version*>(argument)->protocol_version = BINDER_CURRENT_PROTOCOL_VERSION;
    } else if (request == BINDER_WRITE_READ) {
        auto& exchange = *static_cast<binder_write_read*>(argument);
        exchange.write_consumed = exchange.write_size;
        exchange.read_consumed = 0;
    }
    return 0;
}

// Where the service may look, and the lab. The runtime opens files before there is anything here.
void watch(const char* path) {
    const auto holds = [path](const char* place) {
        return strncmp(path, place, strlen(place)) == 0;
    };
    const auto kPlaces = {"/data/misc/zyl/", "//data//misc//zyl//", "/etc/zyl/", "/dev/", "/run/"};
    const bool expected = std::any_of(kPlaces.begin(), kPlaces.end(), holds);
    if (current != nullptr) current->strayOpens += !expected || strstr(path, "..") != nullptr;
}

int openAny(const char* path, int flags, mode_t mode) {
    if (strcmp(path, kDevicePath) == 0) return openDsp();
    if (strcmp(path, "/dev/binder") == 0) return openAs(Kind::kBinder);
    return openOther(path, flags, mode);
}

}  // namespace

DeviceCalls& deviceCalls() {
    return *current;
}

void resetDeviceCalls() {
    kinds[0] = Kind::kOther;
    current = std::make_unique<DeviceCalls>();
}

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    watch(path);
    return openAny(path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
    static const auto next = reinterpret_cast<decltype(&fopen)>(dlsym(RTLD_NEXT, "fopen"));
    watch(path);
    return next(path, mode);
}

FILE* fopen64(const char* path, const char* mode) __attribute__((alias("fopen")));

int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const Kind kind = isKnown(fd) ? kinds[fd].load() : Kind::kOther;
    if (kind == Kind::kBinder) return binderRequest(request, argument);
    if (kind == Kind::kOther) return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
    const int error = current->model->request(static_cast<uint32_t>(request), argument);
    if (error != 0) errno = error;
    return error == 0 ? 0 : -1;
}

int close(int fd) {
    if (fd == 0) ++current->zeroCloses;
    if (isKnown(fd) && kinds[fd].exchange(Kind::kOther) == Kind::kDsp) --current->standing;
    const int result = static_cast<int>(syscall(SYS_close, fd));
    if (result != 0) ++current->badCloses;
    return result;
}

int usleep(useconds_t micros) {
    current->sleptMicros += micros;
    return 0;
}
}
