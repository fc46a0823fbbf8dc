#include "tests/support/device_calls.h"

#include <fcntl.h>
#include <linux/android/binder.h>
#include <linux/memfd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "tests/support/call_faults.h"

// Where this program's own code lies.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace {

enum class Kind : char { kOther, kDsp, kBinder };
constexpr int kMaxDescriptors = 1024;
std::atomic<Kind> kinds[kMaxDescriptors];

std::unique_ptr<DeviceCalls> current = std::make_unique<DeviceCalls>();

bool isKnown(int fd) {
    return fd >= 0 && fd < kMaxDescriptors;
}

// Who opened a descriptor: a thread of this program by its number, the platform's libraries, or
// somebody who never came by here.
constexpr int kUnknown = 0;
constexpr int kLibraries = -1;
std::atomic<int> owners[kMaxDescriptors];
std::atomic<int> threadCount{0};
thread_local const int thisThread = ++threadCount;

int callerAt(const void* address) {
    return address >= &__executable_start && address < &etext ? thisThread : kLibraries;
}

int owned(int fd, int owner) {
    if (isKnown(fd)) owners[fd] = owner;
    return fd;
}

bool mayClose(int fd, int caller) {
    const int owner = isKnown(fd) ? owners[fd].exchange(kUnknown) : kUnknown;
    return owner == caller || (caller == kLibraries && owner == kUnknown);
}

// A descriptor of its own, so that it can be mixed up with others as a real one can; of the number
// that is wanted, if any is.
int openAs(Kind kind, int wanted = -1) {
    static const int memory = static_cast<int>(syscall(SYS_memfd_create, "device", MFD_CLOEXEC));
    const auto fd = static_cast<int>(wanted < 0 ? syscall(SYS_fcntl, memory, F_DUPFD_CLOEXEC, 3)
                                                : syscall(SYS_dup3, memory, wanted, O_CLOEXEC));
    // Binder's is mapped.
    if (!isKnown(fd) || (kind == Kind::kBinder && ftruncate(fd, 4 << 20) != 0)) return -1;
    kinds[fd] = kind;
    return fd;
}

int openDsp(int flags) {
    ++current->opens;
    if ((flags & O_ACCMODE) != O_RDWR) {
        errno = EACCES;
        return -1;
    }
    if (faultOf(kOpen, quorin::kNode) != 0) return -1;
    if (current->missing > 0) {
        --current->missing;
        errno = ENOENT;
        return -1;
    }
    ++current->standing;
    return openAs(Kind::kDsp, current->opensAs);
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
    if (strcmp(path, quorin::kNode) == 0) return openDsp(flags);
    if (strcmp(path, "/dev/binder") == 0) return openAs(Kind::kBinder);
    return openPlainFile(path, flags, mode);
}

int numberOf(void* cookie) {
    return static_cast<int>(reinterpret_cast<intptr_t>(cookie));
}

}  // namespace

long openDescriptors() {
    return std::count_if(std::begin(owners), std::end(owners),
                         [](const std::atomic<int>& owner) { return owner > kUnknown; });
}

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
    return owned(openAny(path, flags, mode), callerAt(__builtin_return_address(0)));
}

int openat(int directory, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const int fd = openPlainFile(path, flags, mode, directory);
    return owned(fd, callerAt(__builtin_return_address(0)));
}

int memfd_create(const char* name, unsigned flags) noexcept {
    const auto fd = static_cast<int>(syscall(SYS_memfd_create, name, flags));
    return owned(fd, callerAt(__builtin_return_address(0)));
}

int pipe2(int* ends, int flags) noexcept {
    const auto result = static_cast<int>(syscall(SYS_pipe2, ends, flags));
    for (int end : {0, 1}) owned(ends[end], callerAt(__builtin_return_address(0)));
    return result;
}

int fcntl(int fd, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const auto result = static_cast<int>(syscall(SYS_fcntl, fd, command, argument));
    if (command != F_DUPFD && command != F_DUPFD_CLOEXEC) return result;
    return owned(result, callerAt(__builtin_return_address(0)));
}

// The C library reads a file with calls of its own, which nobody can stand in for; through a cookie
// it makes them here.
FILE* fopen(const char* path, const char* mode) {
    if (mode[0] != 'r') return fopen64(path, mode);
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    const auto readFrom = [](void* cookie, char* bytes, size_t size) {
        return read(numberOf(cookie), bytes, size);
    };
    const auto closeIt = [](void* cookie) { return close(numberOf(cookie)); };
    return fopencookie(reinterpret_cast<void*>(intptr_t{fd}), mode,
                       {readFrom, nullptr, nullptr, closeIt});
}

// Streams of the C++ library read with read(), and close with the C library.
FILE* fopen64(const char* path, const char* mode) {
    const int writing = O_WRONLY | O_CREAT | (mode[0] == 'a' ? O_APPEND : O_TRUNC);
    watch(path);
    const int fd = openPlainFile(path, (mode[0] == 'r' ? O_RDONLY : writing) | O_CLOEXEC, 0666);
    return fd < 0 ? nullptr : fdopen(fd, mode);
}

int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const Kind kind = isKnown(fd) ? kinds[fd].load() : Kind::kOther;
    if (kind == Kind::kBinder) return binderRequest(request, argument);
    if (kind == Kind::kOther) return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
    const int fault = faultOf(kIoctl, quorin::kNode);
    if (fault != 0) return fault == kNothing ? 0 : -1;
    const int error = current->model->request(static_cast<uint32_t>(request), argument);
    if (error != 0) errno = error;
    return error == 0 ? 0 : -1;
}

int close(int fd) {
    if (fd == 0) ++current->zeroCloses;
    if (isKnown(fd) && kinds[fd].exchange(Kind::kOther) == Kind::kDsp) --current->standing;
    const bool own = mayClose(fd, callerAt(__builtin_return_address(0)));
    const int result = static_cast<int>(syscall(SYS_close, fd));
    if (result != 0 || !own) ++current->badCloses;
    return result;
}

// The thread sanitizer follows descriptors by the calls that it sees. It sees neither opens nor
// closes here, so it must not see this one either.
int fstat(int fd, struct stat* about) noexcept {
    return static_cast<int>(syscall(SYS_fstat, fd, about));
}

int usleep(useconds_t micros) {
    current->sleptMicros += micros;
    return 0;
}
}
