#include "tests/support/call_faults.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <new>

#include "lab/journal/journal.h"

namespace {

thread_local Fault* current = nullptr;
// What the thread has opened since its calls are counted.
thread_local std::map<int, std::string> files;

std::string wholePath(const char* path) {
    return path[0] == '/' ? path : std::string(kKeptDirectory) + path;
}

int faultOf(Call call, int fd) {
    const auto file = files.find(fd);
    if (file == files.end()) return call == kSync ? faultOf(call, kKeptDirectory) : 0;
    return faultOf(call, file->second);
}

std::mutex mappingsLock;

size_t cut(size_t size, int fault) {
    if (fault == kHalf) return (size + 1) / 2;
    return fault == kNothing ? 0 : size;
}

template <typename Buffer>
ssize_t transfer(Call call, long number, int fd, Buffer buffer, size_t size) {
    const int fault = faultOf(call, fd);
    return fault > 0 ? -1 : syscall(number, fd, buffer, cut(size, fault));
}

// Nobody cuts the power here, and real syncs would be most of the tests' time.
int pretendToSync(int fd) {
    return faultOf(kSync, fd) != 0 || fcntl(fd, F_GETFD) < 0 ? -1 : 0;
}

// One piece on either side, and no more: what lies behind it is nobody's.
ssize_t copy(long number, pid_t pid, const iovec* local, unsigned long locals, const iovec* remote,
             unsigned long remotes, unsigned long flags) {
    if (locals != 1 || remotes != 1) abort();
    const int fault = faultOf(kCopy, "");
    const iovec shorter = {local->iov_base, cut(local->iov_len, fault)};
    return fault > 0 ? -1 : syscall(number, pid, &shorter, 1UL, remote, 1UL, flags);
}

}  // namespace

std::map<char*, size_t>& sharedMappings() {
    static std::map<char*, size_t> mappings;
    return mappings;
}

void setFault(Fault* fault) {
    files.clear();
    current = fault;
}

int faultOf(Call call, const std::string& subject) {
    if (current == nullptr || (current->calls & call) == 0) return 0;
    const int number = current->reached++;
    if (number < current->nth || (number > current->nth && !current->lasting)) return 0;
    if (current->hit == 0) {
        current->hit = call;
        current->subject = subject;
    }
    errno = std::max(current->error, 0);
    return current->error;
}

int openPlainFile(const char* path, int flags, unsigned mode, int directory) {
    const std::string name = wholePath(path);
    const bool counted =
            current != nullptr && current->calls != 0 && name.compare(0, 5, "/run/") != 0;
    if (counted && faultOf(kOpen, name) != 0) return -1;
    const int fd = static_cast<int>(syscall(SYS_openat, directory, path, flags, mode));
    files.erase(fd);
    if (counted && fd >= 0) files[fd] = name;
    return fd;
}

extern "C" {

ssize_t read(int fd, void* bytes, size_t size) {
    return transfer(kRead, SYS_read, fd, bytes, size);
}

ssize_t write(int fd, const void* bytes, size_t size) {
    return transfer(kWrite, SYS_write, fd, bytes, size);
}

int fdatasync(int fd) {
    return pretendToSync(fd);
}

int fsync(int fd) {
    return pretendToSync(fd);
}

int renameat(int fromIn, const char* from, int toIn, const char* to) noexcept {
    const bool renamed = faultOf(kRename, wholePath(from)) == 0 &&
                         syscall(SYS_renameat, fromIn, from, toIn, to) == 0;
    if (renamed && strstr(to, "zyl_kwo_settings") != nullptr) journal("saved");
    return renamed ? 0 : -1;
}

int unlinkat(int directory, const char* path, int flags) noexcept {
    if (faultOf(kUnlink, wholePath(path)) != 0) return -1;
    return static_cast<int>(syscall(SYS_unlinkat, directory, path, flags));
}

void* mmap(void* place, size_t size, int rights, int flags, int fd, off_t offset) noexcept {
    if (faultOf(kMap, "") != 0) return MAP_FAILED;
    const long start = syscall(SYS_mmap, place, size, long{rights}, long{flags}, long{fd}, offset);
    if (start != -1 && flags == MAP_SHARED) {
        const std::lock_guard<std::mutex> lock(mappingsLock);
        sharedMappings()[reinterpret_cast<char*>(start)] = size;
    }
    return reinterpret_cast<void*>(start);
}

int munmap(void* place, size_t size) noexcept {
    auto* start = static_cast<char*>(place);
    {
        const std::lock_guard<std::mutex> lock(mappingsLock);
        std::map<char*, size_t>& mappings = sharedMappings();
        auto of = mappings.upper_bound(start);
        if (of != mappings.begin() && start < (--of)->first + of->second) {
            of->second = static_cast<size_t>(start - of->first);
            if (of->second == 0) mappings.erase(of);
        }
    }
    return static_cast<int>(syscall(SYS_munmap, place, size));
}

ssize_t process_vm_readv(pid_t pid, const iovec* local, unsigned long locals, const iovec* remote,
                         unsigned long remotes, unsigned long flags) noexcept {
    return copy(SYS_process_vm_readv, pid, local, locals, remote, remotes, flags);
}

ssize_t process_vm_writev(pid_t pid, const iovec* local, unsigned long locals, const iovec* remote,
                          unsigned long remotes, unsigned long flags) noexcept {
    return copy(SYS_process_vm_writev, pid, local, locals, remote, remotes, flags);
}

void* __real_calloc(size_t count, size_t size);
void* __wrap_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void* __wrap_realloc(void* block, size_t size);
void* __real__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag);
void* __wrap__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag);

void* __wrap_calloc(size_t count, size_t size) {
    return faultOf(kAllocate, "calloc") != 0 ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* block, size_t size) {
    return faultOf(kAllocate, "realloc") != 0 ? nullptr : __real_realloc(block, size);
}

void* __wrap__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag) {
    return faultOf(kAllocate, "new") != 0 ? nullptr : __real__ZnamRKSt9nothrow_t(size, tag);
}
}
