// The transactions that carry tuning data and its names.

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "service/transaction.h"

using android::NO_ERROR;
using android::Parcel;
using android::status_t;

namespace {

// No transaction carries more than a megabyte. A blob that announces much more is a mistake, or is
// meant to use up the address space that all clients share. It fails like one for which there is no
// memory.
constexpr int32_t kLargestBlob = 16 << 20;

// How much may stay allocated for good. Blobs beyond this fail as if there were no memory.
constexpr size_t kMostKept = size_t{128} << 20;
// The allocator takes at least this much for an allocation.
constexpr size_t kLeastKept = 16;

// A length and that many bytes, from a parcel.
class Blob {
  public:
    // The bytes are freed in the end. With `kept`, the count of all bytes that stay allocated,
    // those that arrived stay allocated. The memory is zeroed first: a parcel may hold fewer bytes
    // than it announces, and must not bring up what was in the memory before.
    Blob(const Parcel& data, std::atomic<size_t>* kept) : mSize(data.readInt32()), mKept(kept) {
        if (mSize < 0 || mSize > kLargestBlob) return;
        if (kept != nullptr && *kept >= kMostKept) return;
        const auto size = static_cast<size_t>(mSize);
        mBytes = static_cast<uint8_t*>(calloc(1, size));
        if (mBytes != nullptr && data.read(mBytes, size) == NO_ERROR) mArrived = size;
    }
    Blob(const Blob&) = delete;
    Blob& operator=(const Blob&) = delete;
    ~Blob() {
        if (mKept == nullptr) {
            free(mBytes);
        } else if (mBytes != nullptr) {
            const size_t size = std::max(mArrived, kLeastKept);
            const void* const shrunk = realloc(mBytes, size);
            // An allocation that cannot be made smaller stays as it is. It is not freed on purpose:
            // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
            *mKept += shrunk != nullptr ? size : std::max(static_cast<size_t>(mSize), kLeastKept);
        }
    }

    // Null when there was no memory.
    uint8_t* bytes() const { return mBytes; }
    int32_t size() const { return mSize; }

  private:
    const int32_t mSize;
    std::atomic<size_t>* const mKept;
    uint8_t* mBytes = nullptr;
    size_t mArrived = 0;
};

// Operations on tuning data. Those with "Of" have a route or an index in front.
using SetTuning = int32_t (Izyl_kwo_service::*)(const uint8_t*, int32_t, uint8_t*, int32_t);
using SetTuningOf = int32_t (Izyl_kwo_service::*)(int32_t, const uint8_t*, int32_t, uint8_t*,
                                                  int32_t);
using GetName = int32_t (Izyl_kwo_service::*)(char*, int32_t*);
using GetNameOf = int32_t (Izyl_kwo_service::*)(int32_t, char*, int32_t*);

// `operation` takes both blobs with their sizes and returns the result to reply with. The two
// speaker codes keep their first blob allocated after the transaction; the others free both.
template <typename Operation>
status_t withBlobs(const Transaction& call, std::atomic<size_t>* firstKept, Operation operation) {
    const Blob zylcs(call.data, firstKept);
    if (zylcs.bytes() == nullptr) return android::FAILED_TRANSACTION;
    const Blob work(call.data, nullptr);
    if (work.bytes() == nullptr) return android::FAILED_TRANSACTION;
    return finishSilently(call.reply->writeInt32(
            operation(zylcs.bytes(), zylcs.size(), work.bytes(), work.size())));
}

template <SetTuning set>
status_t setSpeaker(const Transaction& call) {
    return withBlobs(call, &call.keptBytes,
                     [&call](auto... blobs) { return (call.service.*set)(blobs...); });
}

template <SetTuning set>
status_t setTuning(const Transaction& call) {
    return withBlobs(call, nullptr,
                     [&call](auto... blobs) { return (call.service.*set)(blobs...); });
}

template <SetTuningOf set>
status_t setTuningOf(const Transaction& call) {
    const int32_t which = call.data.readInt32();
    return withBlobs(call, nullptr, [&call, which](auto... blobs) {
        return (call.service.*set)(which, blobs...);
    });
}

// `operation` fills a name and its length and returns the result to reply with.
template <typename Operation>
status_t withName(const Transaction& call, Operation operation) {
    char name[kZylcsNameSize] = {};
    int32_t length = kZylcsNameSize;
    const int32_t result = operation(name, &length);
    const status_t status = writeWithResult(call.reply, result, &length);
    return finishSilently(status == NO_ERROR ? call.reply->writeCString(name) : status);
}

template <GetName get>
status_t getName(const Transaction& call) {
    return withName(call, [&call](char* name, int32_t* length) {
        return (call.service.*get)(name, length);
    });
}

template <GetNameOf get>
status_t getNameOf(const Transaction& call) {
    const int32_t which = call.data.readInt32();
    return withName(call, [&call, which](char* name, int32_t* length) {
        return (call.service.*get)(which, name, length);
    });
}

}  // namespace

Handler zylcsHandlerFor(uint32_t code) {
    using I = Izyl_kwo_service;
    switch (code) {
        case I::SET_SPEAKER_ZYLCS_TUNING: return setSpeaker<&I::setSpeakerZylcsTuning>;
        case I::SET_SECOND_SPEAKER_ZYLCS_TUNING: return setSpeaker<&I::setSecondSpeakerZylcsTuning>;
        case I::GET_SPEAKER_ZYLCS_TUNING_NAME: return getName<&I::getSpeakerZylcsTuningName>;
        case I::GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME:
            return getName<&I::getSecondSpeakerZylcsTuningName>;
        case I::SET_ACCESSORY_ZYLCS_TUNING: return setTuningOf<&I::setAccessoryZylcsTuning>;
        case I::GET_ACCESSORY_ZYLCS_TUNING_NAME: return getNameOf<&I::getAccessoryZylcsTuningName>;
        case I::SET_STEREO_ROOM_ZYLCS_TUNING: return setTuningOf<&I::setStereoRoomZylcsTuning>;
        case I::GET_STEREO_ROOM_ZYLCS_TUNING_NAME:
            return getNameOf<&I::getStereoRoomZylcsTuningName>;
        case I::SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING:
            return setTuning<&I::setMultiChannelRoomZylcsTuning>;
        case I::GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME:
            return getName<&I::getMultiChannelRoomZylcsTuningName>;
        default: return nullptr;
    }
}
