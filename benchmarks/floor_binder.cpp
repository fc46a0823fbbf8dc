#include "benchmarks/floor_binder.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

void must(bool succeeded, const char* what) {
    if (succeeded) return;
    perror(what);
    abort();
}

void FloorBinder::put(uint32_t command, const void* argument, size_t size) {
    must(mOutSize + sizeof(command) + size <= sizeof(mOut), "too much for the driver");
    memcpy(mOut + mOutSize, &command, sizeof(command));
    if (size > 0) memcpy(mOut + mOutSize + sizeof(command), argument, size);
    mOutSize += sizeof(command) + size;
}

// Hands over what was put, and waits for something to take.
void FloorBinder::exchange() {
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
void FloorBinder::note(uint32_t command, const uint8_t* argument) {
    switch (command) {
        case BR_NOOP:
        case BR_TRANSACTION_COMPLETE:
        case BR_RELEASE:
        case BR_DECREFS: return;
        case BR_INCREFS: return put(BC_INCREFS_DONE, argument, sizeof(binder_ptr_cookie));
        case BR_ACQUIRE: return put(BC_ACQUIRE_DONE, argument, sizeof(binder_ptr_cookie));
        case BR_SPAWN_LOOPER:
            return std::thread([driver = mDriver, answer = mAnswer] {
                       FloorBinder(driver).serve(BC_REGISTER_LOOPER, answer);
                   })
                    .detach();
        default: must(false, "an answer of the driver");
    }
}

binder_transaction_data FloorBinder::take(uint32_t wanted) {
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

namespace {

binder_transaction_data outgoing(const void* bytes, size_t size) {
    binder_transaction_data data = {};
    data.data_size = size;
    data.data.ptr.buffer = reinterpret_cast<uintptr_t>(bytes);
    return data;
}

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
        request.descriptor = static_cast<int32_t>(object.fd);
    }
    return request;
}

}  // namespace

int32_t FloorBinder::call(uint32_t handle, uint32_t code, const std::vector<uint8_t>& data) {
    binder_transaction_data made = outgoing(data.data(), data.size());
    made.target.handle = handle;
    made.code = code;
    made.flags = TF_ACCEPT_FDS;
    put(BC_TRANSACTION, &made, sizeof(made));
    const binder_transaction_data reply = take(BR_REPLY);
    const int32_t status = *at<const int32_t>(reply.data.ptr.buffer);
    put(BC_FREE_BUFFER, &reply.data.ptr.buffer, sizeof(reply.data.ptr.buffer));
    return status;
}

void FloorBinder::serve(uint32_t enter, Answer answer) {
    mAnswer = answer;
    if (enter != 0) put(enter, nullptr, 0);
    while (true) {
        const binder_transaction_data taken = take(BR_TRANSACTION);
        const Reply reply = answer(*this, requestIn(taken));
        const binder_transaction_data made = outgoing(reply.bytes, reply.size);
        put(BC_FREE_BUFFER, &taken.data.ptr.buffer, sizeof(taken.data.ptr.buffer));
        put(BC_REPLY, &made, sizeof(made));
    }
}
