// Makes calls of the kernel or the allocator fail: the n-th of a kind, once or from then on. What
// the journal and the properties do under /run is not counted and never fails.

#ifndef ZYL_TESTS_SUPPORT_CALL_FAULTS_H
#define ZYL_TESTS_SUPPORT_CALL_FAULTS_H

#include <fcntl.h>

#include <cstddef>
#include <map>
#include <string>

enum Call : unsigned {
    kOpen = 1,
    kRead = 2,
    kWrite = 4,
    kSync = 8,  // fdatasync and fsync
    kRename = 16,
    kUnlink = 32,
    kIoctl = 64,  // of the DSP
    kMap = 128,
    kCopy = 256,      // process_vm_readv and process_vm_writev
    kAllocate = 512,  // calloc, realloc and new(std::nothrow)
    kEveryCall = 1023
};

// In place of an errno: half of what was asked for, or nothing, both without an error. The DSP
// knows the latter only.
constexpr int kHalf = -1;
constexpr int kNothing = -2;

struct Fault {
    unsigned calls = 0;  // the kinds that are counted together
    int nth = 0;         // from 0
    int error = 0;
    bool lasting = false;

    int reached = 0;
    // The first that failed, and the path or the allocator's function that it was about.
    unsigned hit = 0;
    std::string subject = {};
};

// From here on this thread's calls are counted, and the fault's fail; null ends it.
void setFault(Fault* fault);

// What is mapped of memory that clients share, address and length.
std::map<char*, size_t>& sharedMappings();

// For whoever stands in for a call: what it fails with, errno set, or 0.
int faultOf(Call call, const std::string& subject);
// open() of a plain file, with its faults.
int openPlainFile(const char* path, int flags, unsigned mode, int directory = AT_FDCWD);

// The directory that the service keeps open, and only saves in.
constexpr char kKeptDirectory[] = "/data/misc/zyl/";

#endif  // ZYL_TESTS_SUPPORT_CALL_FAULTS_H
