// Binder as the driver has it: transactions are taken from its buffer and answered from bytes that
// are ready, with none of the objects that the platform's library makes for each of them.

#ifndef ZYL_BENCH_FLOOR_BINDER_H
#define ZYL_BENCH_FLOOR_BINDER_H

#include <linux/android/binder.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// A floor that fails is cheap, and no floor: ends the program.
void must(bool succeeded, const char* what);

struct Request {
    uint32_t code;
    const uint8_t* bytes;
    size_t size;
    int32_t descriptor;  // the one that came with it and is the receiver's now, or -1
};

struct Reply {
    const void* bytes;  // to be there until the next request
    size_t size;
};

// One thread's side of the driver.
class FloorBinder {
  public:
    using Answer = Reply (*)(FloorBinder& binder, const Request& request);

    explicit FloorBinder(int driver) : mDriver(driver) {}

    // Serves for ever, with a thread more whenever the driver wants one. `enter` is the command by
    // which the thread joins, or 0 when it has.
    [[noreturn]] void serve(uint32_t enter, Answer answer);

    // Another process's reply, its first word: a status.
    int32_t call(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data);

  private:
    void put(uint32_t command, const void* argument, size_t size);
    void exchange();
    binder_transaction_data take(uint32_t wanted);
    void note(uint32_t command, const uint8_t* argument);

    const int mDriver;
    Answer mAnswer = nullptr;
    size_t mOutSize = 0;
    size_t mInSize = 0;
    size_t mInNext = 0;
    uint8_t mOut[256];
    uint8_t mIn[256];
};

#endif  // ZYL_BENCH_FLOOR_BINDER_H
