// The transactions that carry tuning data and its names.

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include "service/Bn_zyl_kwo_service.h"
#include "service/transaction.h"

using android::NO_ERROR;
using android::Parcel;
using android::status_t;

namespace {

// No parcel carries more than a megabyte. What announces much more is a mistake, or meant to use up
// the address space that all clients share: it is answered as memory that cannot be had.
constexpr int32_t kLargestBlob = 16 << 20;

// What is kept for good is bounded: beyond this, memory for more cannot be had.
constexpr size_t kMostKept = size_t{128} << 20;
// No allocation is smaller.
constexpr size_t kLeastKept = 16;

// A length and as many bytes from a parcel.
class Blob {
  public:
    // The bytes are freed in the end, unless there is a count of what is `kept`: then they stay
    // allocated, but only as many as arrived. They are zeroed first, so that a parcel that holds
    // fewer bytes than it announces shows nobody what was in the memory before.
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
            // What cannot be made smaller stays as it is. That it stays allocated is the point:
            // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
            *mKept += shrunk != nullptr ? size : std::max(static_cast<size_t>(mSize), kLeastKept);
        }
    }

    // Null when the memory could not be had.
    uint8_t* bytes() const { return mBytes; }
    int32_t size() const { return mSize; }

  private:
    const int32_t mSize;
    std::atomic<size_t>* const mKept;
    uint8_t* mBytes = nullptr;
    size_t mArrived = 0;
};

// `operation` takes both blobs with their sizes and returns the result to reply with. The two
// speaker codes keep their first blob allocated after the transaction; the others free both.
template <typename Operation>
status_t zylcsTransaction(const Parcel& data, Parcel* reply, std::atomic<size_t>* firstKept,
                          Operation operation) {
    const Blob zylcs(data, firstKept);
    if (zylcs.bytes() == nullptr) return android::FAILED_TRANSACTION;
    const Blob work(data, nullptr);
    if (work.bytes() == nullptr) return android::FAILED_TRANSACTION;
    return finishSilently(
            reply->writeInt32(operation(zylcs.bytes(), zylcs.size(), work.bytes(), work.size())));
}

// `operation` fills a name and its length and returns the result to reply with.
template <typename Operation>
status_t nameTransaction(Parcel* reply, Operation operation) {
    char name[kZylcsNameSize] = {};
    int32_t length = kZylcsNameSize;
    const int32_t result = operation(name, &length);
    const int32_t head[] = {result, length};
    const status_t status = writeAll(reply, head, 2);
    return finishSilently(status == NO_ERROR ? reply->writeCString(name) : status);
}

}  // namespace

status_t Bn_zyl_kwo_service::onSetSpeakerZylcsTuning(const Parcel& data, Parcel* reply) {
    return zylcsTransaction(data, reply, &mKeptBytes,
                            [this](auto... blobs) { return setSpeakerZylcsTuning(blobs...); });
}

status_t Bn_zyl_kwo_service::onSetSecondSpeakerZylcsTuning(const Parcel& data, Parcel* reply) {
    return zylcsTransaction(data, reply, &mKeptBytes, [this](auto... blobs) {
        return setSecondSpeakerZylcsTuning(blobs...);
    });
}

status_t Bn_zyl_kwo_service::onGetSpeakerZylcsTuningName(const Parcel&, Parcel* reply) {
    return nameTransaction(reply, [this](char* name, int32_t* length) {
        return getSpeakerZylcsTuningName(name, length);
    });
}

status_t Bn_zyl_kwo_service::onGetSecondSpeakerZylcsTuningName(const Parcel&, Parcel* reply) {
    return nameTransaction(reply, [this](char* name, int32_t* length) {
        return getSecondSpeakerZylcsTuningName(name, length);
    });
}

status_t Bn_zyl_kwo_service::onSetAccessoryZylcsTuning(const Parcel& data, Parcel* reply) {
    const int32_t route = data.readInt32();
    return zylcsTransaction(data, reply, nullptr, [this, route](auto... blobs) {
        return setAccessoryZylcsTuning(route, blobs...);
    });
}

status_t Bn_zyl_kwo_service::onGetAccessoryZylcsTuningName(const Parcel& data, Parcel* reply) {
    const int32_t route = data.readInt32();
    return nameTransaction(reply, [this, route](char* name, int32_t* length) {
        return getAccessoryZylcsTuningName(route, name, length);
    });
}

status_t Bn_zyl_kwo_service::onSetStereoRoomZylcsTuning(const Parcel& data, Parcel* reply) {
    const int32_t index = data.readInt32();
    return zylcsTransaction(data, reply, nullptr, [this, index](auto... blobs) {
        return setStereoRoomZylcsTuning(index, blobs...);
    });
}

status_t Bn_zyl_kwo_service::onGetStereoRoomZylcsTuningName(const Parcel& data, Parcel* reply) {
    const int32_t index = data.readInt32();
    return nameTransaction(reply, [this, index](char* name, int32_t* length) {
        return getStereoRoomZylcsTuningName(index, name, length);
    });
}

status_t Bn_zyl_kwo_service::onSetMultiChannelRoomZylcsTuning(const Parcel& data, Parcel* reply) {
    return zylcsTransaction(data, reply, nullptr, [this](auto... blobs) {
        return setMultiChannelRoomZylcsTuning(blobs...);
    });
}

status_t Bn_zyl_kwo_service::onGetMultiChannelRoomZylcsTuningName(const Parcel&, Parcel* reply) {
    return nameTransaction(reply, [this](char* name, int32_t* length) {
        return getMultiChannelRoomZylcsTuningName(name, length);
    });
}
