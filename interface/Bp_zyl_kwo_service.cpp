// The client's side of the interface. Each call is one transaction, laid out as the service reads
// it.

#include <binder/Parcel.h>

#include <cstring>

#include "interface/Izyl_kwo_service.h"

namespace {

using android::status_t;

int32_t undeliveredResult(status_t status) {
    switch (status) {
        case android::DEAD_OBJECT: return kZylKwoServiceGone;
        case android::PERMISSION_DENIED: return kZylKwoCallRefused;
        default: return kZylKwoCallFailed;
    }
}

// One transaction. Arguments are added in the order of the wire, then it is sent, then the reply is
// read in the order of the wire.
class Call {
  public:
    Call(android::IBinder* service, Izyl_kwo_service::Code code) : mService(service), mCode(code) {
        mData.writeInterfaceToken(Izyl_kwo_service::descriptor);
    }

    Call& add(int32_t value) {
        mData.writeInt32(value);
        return *this;
    }

    Call& add(float value) {
        mData.writeFloat(value);
        return *this;
    }

    // On the wire the length comes first.
    Call& addBlob(const uint8_t* bytes, int32_t size) {
        mData.writeInt32(size);
        if (size > 0) mData.write(bytes, static_cast<size_t>(size));
        return *this;
    }

    // Returns 0, or why the call did not come through.
    int32_t send() {
        const status_t status = mService->transact(mCode, mData, &mReply);
        return status == android::NO_ERROR ? 0 : undeliveredResult(status);
    }

    // For replies that begin with the operation's result.
    int32_t sendForResult() {
        const int32_t undelivered = send();
        return undelivered != 0 ? undelivered : mReply.readInt32();
    }

    // For replies that are a result and `count` values. `Value` has at most 32 bits.
    template <typename Value>
    int32_t sendForValues(Value* values, int count = 1) {
        const int32_t result = sendForResult();
        if (result != 0) return result;
        for (int i = 0; i < count; ++i) values[i] = static_cast<Value>(mReply.readInt32());
        return 0;
    }

    android::Parcel& data() { return mData; }
    const android::Parcel& reply() const { return mReply; }

  private:
    android::IBinder* const mService;
    const Izyl_kwo_service::Code mCode;
    android::Parcel mData;
    android::Parcel mReply;
};

// Copies a reply's text, cut to `capacity` with its NUL.
void copyText(const char* text, char* destination, size_t capacity) {
    const size_t length = text == nullptr ? 0 : strnlen(text, capacity - 1);
    if (length > 0) memcpy(destination, text, length);
    destination[length] = '\0';
}

class Bp_zyl_kwo_service : public android::BpInterface<Izyl_kwo_service> {
  public:
    explicit Bp_zyl_kwo_service(const android::sp<android::IBinder>& remote)
        : BpInterface<Izyl_kwo_service>(remote) {}

    int32_t getPlatformInfo(PlatformInfoRecord* info) override {
        Call call(remote(), GET_PLATFORM_INFO);
        const int32_t undelivered = call.add(1).send();
        if (undelivered != 0) return undelivered;
        if (call.reply().readInt32() != static_cast<int32_t>(sizeof(*info)))
            return kZylKwoCallFailed;
        return call.reply().read(info, sizeof(*info)) == android::NO_ERROR ? 0 : kZylKwoCallFailed;
    }

    int32_t unsupportedOperation() override { return kZylKwoUnsupported; }

    int32_t getEnabled(int32_t* enabled) override {
        Call call(remote(), GET_ENABLED);
        const int32_t undelivered = call.send();
        if (undelivered == 0) *enabled = call.reply().readInt32();
        return undelivered;
    }

    int32_t setEnabled(int32_t enabled) override {
        return Call(remote(), SET_ENABLED).add(enabled).send();
    }

    int32_t getStereoMode(int32_t* mode) override {
        return Call(remote(), GET_STEREO_MODE).sendForValues(mode);
    }

    int32_t setStereoMode(int32_t mode) override {
        return Call(remote(), SET_STEREO_MODE).add(mode).sendForResult();
    }

    int32_t getTuning(int32_t route, int32_t* tuning) override {
        return Call(remote(), GET_TUNING).add(route).sendForValues(tuning);
    }

    int32_t setTuning(int32_t route, int32_t tuning) override {
        return Call(remote(), SET_TUNING).add(route).add(tuning).sendForResult();
    }

    int32_t getGEQGain(int32_t band, uint16_t* gain) override {
        return Call(remote(), GET_GEQ_GAIN).add(band).sendForValues(gain);
    }

    int32_t setGEQGain(int32_t band, uint16_t gain) override {
        return Call(remote(), SET_GEQ_GAIN).add(band).add(int32_t{gain}).sendForResult();
    }

    int32_t getGEQEnable(int32_t* enabled) override {
        return Call(remote(), GET_GEQ_ENABLE).sendForValues(enabled);
    }

    int32_t setGEQEnable(int32_t enabled) override {
        return Call(remote(), SET_GEQ_ENABLE).add(enabled).sendForResult();
    }

    int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) override {
        return Call(remote(), GET_GEQ_GAIN_ALL).sendForValues(gains, kGEQBandCount);
    }

    int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) override {
        Call call(remote(), SET_GEQ_GAIN_ALL);
        for (int band = 0; band < kGEQBandCount; ++band) call.add(int32_t{gains[band]});
        return call.sendForResult();
    }

    int32_t getVersionString(char* text, int32_t* length) override {
        Call call(remote(), GET_VERSION_STRING);
        const int32_t undelivered = call.send();
        if (undelivered != 0) return undelivered;
        copyText(call.reply().readCString(), text, static_cast<size_t>(*length));
        *length = static_cast<int32_t>(strlen(text));
        return 0;
    }

    int32_t setSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                  int32_t workSize) override {
        return sendZylcsTuning(SET_SPEAKER_ZYLCS_TUNING, nullptr, zylcs, zylcsSize, work, workSize);
    }

    int32_t setSecondSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                        int32_t workSize) override {
        return sendZylcsTuning(SET_SECOND_SPEAKER_ZYLCS_TUNING, nullptr, zylcs, zylcsSize, work,
                               workSize);
    }

    int32_t setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs, int32_t zylcsSize,
                                    uint8_t* work, int32_t workSize) override {
        return sendZylcsTuning(SET_ACCESSORY_ZYLCS_TUNING, &route, zylcs, zylcsSize, work,
                               workSize);
    }

    int32_t setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs, int32_t zylcsSize,
                                     uint8_t* work, int32_t workSize) override {
        return sendZylcsTuning(SET_STEREO_ROOM_ZYLCS_TUNING, &index, zylcs, zylcsSize, work,
                               workSize);
    }

    int32_t setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                           int32_t workSize) override {
        return sendZylcsTuning(SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING, nullptr, zylcs, zylcsSize, work,
                               workSize);
    }

    int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override {
        return receiveZylcsName(GET_SPEAKER_ZYLCS_TUNING_NAME, nullptr, name, length);
    }

    int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override {
        return receiveZylcsName(GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME, nullptr, name, length);
    }

    int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                        int32_t* length) override {
        return receiveZylcsName(GET_ACCESSORY_ZYLCS_TUNING_NAME, &route, name, length);
    }

    int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                         int32_t* length) override {
        return receiveZylcsName(GET_STEREO_ROOM_ZYLCS_TUNING_NAME, &index, name, length);
    }

    int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                               int32_t* length) override {
        return receiveZylcsName(GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME, nullptr, name, length);
    }

    int32_t setListeningTestResult(float a, float b, float c, float d) override {
        return Call(remote(), SET_LISTENING_TEST_RESULT)
                .add(a)
                .add(b)
                .add(c)
                .add(d)
                .sendForResult();
    }

    int32_t getListeningTestResult(float* a, float* b, float* c, float* d) override {
        Call call(remote(), GET_LISTENING_TEST_RESULT);
        const int32_t result = call.sendForResult();
        if (result != 0) return result;
        for (float* value : {a, b, c, d}) *value = call.reply().readFloat();
        return 0;
    }

    int32_t resetListeningTestResult() override {
        return Call(remote(), RESET_LISTENING_TEST_RESULT).sendForResult();
    }

    int32_t getActiveRoute(int32_t* route) override {
        return Call(remote(), GET_ACTIVE_ROUTE).add(*route).sendForValues(route);
    }

    int32_t setActiveRoute(int32_t route) override {
        return Call(remote(), SET_ACTIVE_ROUTE).add(route).sendForResult();
    }

    int32_t setReloadFlag(bool forced) override {
        return Call(remote(), SET_RELOAD_FLAG).add(int32_t{forced}).sendForResult();
    }

    int32_t getRouteMask(int32_t route, uint32_t* mask) override {
        return Call(remote(), GET_ROUTE_MASK).add(route).sendForValues(mask);
    }

    int32_t setFileDescriptor(int fd, int32_t length) override {
        Call call(remote(), SET_FILE_DESCRIPTOR);
        call.data().writeFileDescriptor(fd);
        return call.add(length).sendForResult();
    }

    int32_t fetchCacheBlock(int32_t block) override {
        return Call(remote(), FETCH_CACHE_BLOCK).add(block).sendForResult();
    }

    int32_t pushCacheBlock(int32_t block) override {
        return Call(remote(), PUSH_CACHE_BLOCK).add(block).sendForResult();
    }

    int32_t getDbLevels(int32_t levels[kDbLevelCount]) override {
        return Call(remote(), GET_DB_LEVELS).sendForValues(levels, kDbLevelCount);
    }

    int32_t setDbGain(const int32_t levels[kDbLevelCount]) override {
        Call call(remote(), SET_DB_GAIN);
        for (int i = 0; i < kDbLevelCount; ++i) call.add(levels[i]);
        return call.sendForResult();
    }

  private:
    // Several kinds of tuning data have one layout, some with a selector in front.
    int32_t sendZylcsTuning(Code code, const int32_t* selector, const uint8_t* zylcs,
                            int32_t zylcsSize, const uint8_t* work, int32_t workSize) {
        Call call(remote(), code);
        if (selector != nullptr) call.add(*selector);
        return call.addBlob(zylcs, zylcsSize).addBlob(work, workSize).sendForResult();
    }

    int32_t receiveZylcsName(Code code, const int32_t* selector, char name[kZylcsNameSize],
                             int32_t* length) {
        Call call(remote(), code);
        if (selector != nullptr) call.add(*selector);
        int32_t reported = 0;
        const int32_t result = call.sendForValues(&reported);
        if (result != 0) return result;
        *length = reported;
        copyText(call.reply().readCString(), name, kZylcsNameSize);
        return 0;
    }
};

}  // namespace

android::sp<Izyl_kwo_service> Izyl_kwo_service::asInterface(
        const android::sp<android::IBinder>& binder) {
    if (binder == nullptr) return nullptr;
    const android::sp<android::IInterface> local = binder->queryLocalInterface(descriptor);
    if (local != nullptr) return static_cast<Izyl_kwo_service*>(local.get());
    return new Bp_zyl_kwo_service(binder);
}
