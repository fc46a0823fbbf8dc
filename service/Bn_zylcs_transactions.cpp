// The transactions that carry tuning data and its names.

#include <cstdlib>
#include <memory>

#include "service/Bn_zyl_kwo_service.h"
#include "service/transaction.h"

using android::NO_ERROR;
using android::Parcel;
using android::status_t;

namespace {

using Blob = std::unique_ptr<uint8_t, decltype(&free)>;

// Reads a length and as many bytes; null when the memory for them cannot be had. Zeroed, so that a
// parcel that holds fewer bytes than it announces shows nobody what was in the memory before.
Blob readBlob(const Parcel& data, int32_t* size) {
    *size = data.readInt32();
    if (*size < 0) return Blob(nullptr, free);
    Blob blob(static_cast<uint8_t*>(calloc(1, static_cast<size_t>(*size))), free);
    if (blob != nullptr) data.read(blob.get(), static_cast<size_t>(*size));
    return blob;
}

// The two speaker codes keep their first blob allocated after the transaction; the others free
// both.
enum class FirstBlob { kFreed, kKept };

// `operation` takes both blobs with their sizes and returns the result to reply with.
template <typename Operation>
status_t zylcsTransaction(const Parcel& data, Parcel* reply, FirstBlob lifetime,
                          Operation operation) {
    int32_t zylcsSize = 0;
    Blob zylcs = readBlob(data, &zylcsSize);
    if (zylcs == nullptr) return android::FAILED_TRANSACTION;
    const uint8_t* bytes = zylcs.get();
    if (lifetime == FirstBlob::kKept) static_cast<void>(zylcs.release());

    int32_t workSize = 0;
    const Blob work = readBlob(data, &workSize);
    if (work == nullptr) return android::FAILED_TRANSACTION;
    return finishSilently(reply->writeInt32(operation(bytes, zylcsSize, work.get(), workSize)));
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
    return zylcsTransaction(data, reply, FirstBlob::kKept,
                            [this](auto... blobs) { return setSpeakerZylcsTuning(blobs...); });
}

status_t Bn_zyl_kwo_service::onSetSecondSpeakerZylcsTuning(const Parcel& data, Parcel* reply) {
    return zylcsTransaction(data, reply, FirstBlob::kKept, [this](auto... blobs) {
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
    return zylcsTransaction(data, reply, FirstBlob::kFreed, [this, route](auto... blobs) {
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
    return zylcsTransaction(data, reply, FirstBlob::kFreed, [this, index](auto... blobs) {
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
    return zylcsTransaction(data, reply, FirstBlob::kFreed, [this](auto... blobs) {
        return setMultiChannelRoomZylcsTuning(blobs...);
    });
}

status_t Bn_zyl_kwo_service::onGetMultiChannelRoomZylcsTuningName(const Parcel&, Parcel* reply) {
    return nameTransaction(reply, [this](char* name, int32_t* length) {
        return getMultiChannelRoomZylcsTuningName(name, length);
    });
}
