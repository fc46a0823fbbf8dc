// Binder as the driver has it: transactions are taken from its buffer and answered from bytes that
// are ready, with none of the objects that the platform's library makes for each of them.

#ifndef ZYL_BENCH_FLOOR_BINDER_H
#define ZYL_BENCH_FLOOR_BINDER_H

#include <cstddef>
#include <cstdint>
#include <vector>

// A floor that fails is cheap, and no floor: ends the program.
void must(bool succeeded, const char* what);

struct Request {
    uint32_t code;
    const uint8_t* bytes;
    size_t size;
    int descriptor;  // the one that came with it and is the receiver's now, or -1
};

struct Reply {
    const void* bytes;  // that stay
    size_t size;
};

using Answer = Reply (*)(const Request& request);

// Serves for ever, on this thread and, like the platform's library, on one more from the beginning
// and on up to 15 more whenever none waits. The program is registered, and the platform's library
// takes no transactions from the driver any longer.
[[noreturn]] void serveBinder(Answer answer);

// A call of another process while a request is answered, with data that are ready; returns the
// first word of its reply, a status.
int32_t callThroughBinder(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data);

// Whether this thread is one that serves, and so may call like that.
bool servesBinder();

#endif  // ZYL_BENCH_FLOOR_BINDER_H
