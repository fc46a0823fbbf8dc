#include "benchmarks/floor_binder.h"

#include <binder/IPCThreadState.h>
#include <linux/android/binder.h>
#include <sys/ioctl.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

void must(bool succeeded, const char* what) {
    if (succeeded) return;
    perror(what);
    abort();
}

namespace {

constexpr int kMostThreads = 17;
std::atomic<int> gThreads{1};
std::atomic<int> gWaiting{0};

template <typename Value>
Value* at(binder_uintptr_t address) {
    return reinterpret_cast<Value*>(static_cast<uintptr_t>(address));
}

Request requestIn(const binder_transaction_data& taken) {
    const auto* bytes = at<const uint8_t>(taken.data.ptr.buffer);
    Request request = {taken.code, bytes, static_cast<size_t>(taken.data_size), -1};
    if (taken.offsets_size != 0) {
        const auto* offsets = at<const binder_size_t>(taken.data.ptr.offsets);
        binder_fd_object object;
        memcpy(&object, bytes + offsets[0], sizeof(object));
        request.descriptor = static_cast<int>(object.fd);
    }
    return request;
}

binder_transaction_data outgoing(const void* bytes, size_t size) {
    binder_transaction_data data = {};
    data.data_size = size;
    data.data.ptr.buffer = reinterpret_cast<uintptr_t>(bytes);
    return data;
}

// One thread's side of the driver.
class Thread {
  public:
    Thread(int driver, Answer answer) : mDriver(driver), mAnswer(answer) {}

    void join() { put(BC_ENTER_LOOPER, nullptr, 0); }
    [[noreturn]] void serve();
    int32_t call(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data);

  private:
    void put(uint32_t command, const void* argument, size_t size);
    void exchange();
    binder_transaction_data take(uint32_t wanted);
    void note(uint32_t command, const uint8_t* argument);
    void startAnother();

    const int mDriver;
    const Answer mAnswer;
    size_t mOutSize = 0;
    size_t mInSize = 0;
    size_t mInNext = 0;
    uint8_t mOut[256];
    uint8_t mIn[256];
};

thread_local Thread* tServing = nullptr;

void Thread::put(uint32_t command, const void* argument, size_t size) {
    must(mOutSize + sizeof(command) + size <= sizeof(mOut), "too much for the driver");
    memcpy(mOut + mOutSize, &command, sizeof(command));
    mOutSize += sizeof(command);
    if (size > 0) memcpy(mOut + mOutSize, argument, size);
    mOutSize += size;
}

// Hands over what was put, and waits for something to take.
void Thread::exchange() {
    binder_write_read both = {};
    both.write_size = mOutSize;
    both.write_buffer = reinterpret_cast<uintptr_t>(mOut);
    both.read_size = sizeof(mIn);
    both.read_buffer = reinterpret_cast<uintptr_t>(mIn);
    must(ioctl(mDriver, BINDER_WRITE_READ, &both) == 0, "binder");
    mOutSize = 0;
    mInSize = static_cast<size_t>(both.read_consumed);
    mInNext = 0;
}

// What the driver says beside transactions and replies.
void Thread::note(uint32_t command, const uint8_t* argument) {
    switch (command) {
        case BR_NOOP:
        case BR_TRANSACTION_COMPLETE:
        case BR_SPAWN_LOOPER:
        case BR_RELEASE:
        case BR_DECREFS: return;
        case BR_INCREFS: return put(BC_INCREFS_DONE, argument, sizeof(binder_ptr_cookie));
        case BR_ACQUIRE: return put(BC_ACQUIRE_DONE, argument, sizeof(binder_ptr_cookie));
        default: must(false, "an answer of the driver");
    }
}

binder_transaction_data Thread::take(uint32_t wanted) {
    while (true) {
        if (mInNext >= mInSize) exchange();
        uint32_t command = 0;
        memcpy(&command, mIn + mInNext, sizeof(command));
        const uint8_t* const argument = mIn + mInNext + sizeof(command);
        mInNext += sizeof(command) + _IOC_SIZE(command);
        if (command == wanted) {
            binder_transaction_data taken;
            memcpy(&taken, argument, sizeof(taken));
            return taken;
        }
        note(command, argument);
    }
}

void Thread::startAnother() {
    if (gThreads >= kMostThreads) return;
    ++gThreads;
    std::thread([driver = mDriver, answer = mAnswer] {
        Thread thread(driver, answer);
        thread.join();
        thread.serve();
    }).detach();
}

int32_t Thread::call(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data) {
    binder_transaction_data made = outgoing(data.data(), data.size());
    made.target.handle = handle;
    made.code = code;
    put(BC_TRANSACTION, &made, sizeof(made));
    const binder_transaction_data reply = take(BR_REPLY);
    const int32_t status = *at<const int32_t>(reply.data.ptr.buffer);
    put(BC_FREE_BUFFER, &reply.data.ptr.buffer, sizeof(reply.data.ptr.buffer));
    return status;
}

void Thread::serve() {
    tServing = this;
    while (true) {
        ++gWaiting;
        const binder_transaction_data taken = take(BR_TRANSACTION);
        if (--gWaiting == 0) startAnother();
        const Reply reply = mAnswer(requestIn(taken));
        put(BC_FREE_BUFFER, &taken.data.ptr.buffer, sizeof(taken.data.ptr.buffer));
        const binder_transaction_data made = outgoing(reply.bytes, reply.size);
        put(BC_REPLY, &made, sizeof(made));
    }
}

}  // namespace

bool servesBinder() {
    return tServing != nullptr;
}

int32_t callThroughBinder(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data) {
    return tServing->call(handle, code, data);
}

void serveBinder(Answer answer) {
    int driver = -1;
    // Has this thread join, too. From now on it is asked for threads by nobody but itself.
    const auto status = android::IPCThreadState::self()->setupPolling(&driver);
    must(status == android::NO_ERROR, "setupPolling");
    const uint32_t none = 0;
    must(ioctl(driver, BINDER_SET_MAX_THREADS, &none) == 0, "binder");
    Thread(driver, answer).serve();
}
