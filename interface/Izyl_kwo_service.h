// The binder interface of the audio-effect service: its operations, their transaction codes, the
// records that cross the wire and the results that come back.
//
// A client finds the service under kZylKwoServiceName and talks to it through the proxy that
// asInterface() returns. The proxy may be used from any thread; each call is one synchronous
// transaction.

#ifndef ZYL_INTERFACE_IZYL_KWO_SERVICE_H
#define ZYL_INTERFACE_IZYL_KWO_SERVICE_H

#include <binder/IInterface.h>
#include <utils/String16.h>

#include <cstddef>
#include <cstdint>

constexpr char kZylKwoServiceName[] = "zyl_kwo_service";

constexpr int kGEQBandCount = 10;
constexpr int kDbLevelCount = 10;
constexpr int kZylcsNameSize = 37;        // 36 characters and a NUL
constexpr int kVersionStringSize = 3072;  // the longest version text and its NUL

// What an operation returns; the numbers are part of the protocol.
enum ZylKwoResult : int32_t {
    kZylKwoOk = 0,
    kZylKwoBadArgument = -1,
    kZylKwoTuningNotLoadable = -2,
    kZylKwoUploadFailed = -3,    // the DSP refused it, or a region could not be mapped or copied
    kZylKwoTuningTooShort = -4,  // a tuning file holds less than one pipeline image
    kZylKwoNoMemory = -6,
    kZylKwoUnsupported = -8,
    kZylKwoNotAvailable = -9,  // not on this settings generation
    kZylKwoNoSharedRegion = -3000,

    // The conversion library's own complaints about tuning data.
    kZylKwoConversionFailed6 = -1000,
    kZylKwoConversionFailed7 = -1001,
    kZylKwoConversionFailed5 = -1002,
    kZylKwoConversionFailed8 = -1003,
    kZylKwoConversionFailed = -1004,
    kZylKwoConversionFailed9 = -1005,

    // Only a proxy returns these: the call did not come through, so there is no result.
    kZylKwoServiceGone = -20001,
    kZylKwoCallRefused = -20002,  // the service did not accept the interface token
    kZylKwoCallFailed = -20003,   // setEnabled, getEnabled, getListeningTestResult: it failed
};

// What code 1 replies, byte for byte. The text is the service's version, NUL-terminated.
struct PlatformInfoRecord {
    int32_t size;           // always 20
    uint8_t versionMarker;  // twice the length of the version text
    char version[10];
    uint8_t reserved;
    int32_t platformType;  // 1 /dev/zyl_quorin, 2 /dev/snd/hwC0D999, 3 /dev/snd/hwC0D2, 0 not known
};
static_assert(sizeof(PlatformInfoRecord) == 20, "fixed by the protocol");
static_assert(offsetof(PlatformInfoRecord, versionMarker) == 4 &&
                      offsetof(PlatformInfoRecord, version) == 5 &&
                      offsetof(PlatformInfoRecord, reserved) == 15 &&
                      offsetof(PlatformInfoRecord, platformType) == 16,
              "fixed by the protocol");

class Izyl_kwo_service : public android::IInterface {
  public:
    enum Code : uint32_t {
        GET_PLATFORM_INFO = 1,
        GET_ENABLED = 2,
        SET_ENABLED = 3,
        GET_STEREO_MODE = 4,
        SET_STEREO_MODE = 5,
        GET_TUNING = 6,
        SET_TUNING = 7,
        GET_GEQ_GAIN = 8,
        SET_GEQ_GAIN = 9,
        CHECKED_UNKNOWN = 10,  // checks the token, then answers as an unknown code
        GET_VERSION_STRING = 11,
        SET_GEQ_ENABLE = 12,
        GET_GEQ_ENABLE = 13,
        GET_GEQ_GAIN_ALL = 14,
        SET_GEQ_GAIN_ALL = 15,
        SET_SPEAKER_ZYLCS_TUNING = 19,
        SET_SECOND_SPEAKER_ZYLCS_TUNING = 20,
        GET_SPEAKER_ZYLCS_TUNING_NAME = 21,
        GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME = 22,
        SET_ACCESSORY_ZYLCS_TUNING = 23,
        GET_ACCESSORY_ZYLCS_TUNING_NAME = 24,
        SET_STEREO_ROOM_ZYLCS_TUNING = 25,
        GET_STEREO_ROOM_ZYLCS_TUNING_NAME = 26,
        SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING = 27,
        GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME = 28,
        SET_LISTENING_TEST_RESULT = 29,
        GET_LISTENING_TEST_RESULT = 30,
        RESET_LISTENING_TEST_RESULT = 31,
        GET_ACTIVE_ROUTE = 32,
        SET_ACTIVE_ROUTE = 40,
        SET_RELOAD_FLAG = 41,
        GET_ROUTE_MASK = 1001,
        SET_FILE_DESCRIPTOR = 3001,
        FETCH_CACHE_BLOCK = 3002,
        PUSH_CACHE_BLOCK = 3003,
        GET_DB_LEVELS = 3004,
        SET_DB_GAIN = 3005,
    };

    static const android::String16 descriptor;

    // The proxy for `binder`, or the service object itself when it lives in this process; null for
    // a null binder. The binder's descriptor is not looked at: the service checks it on every call.
    static android::sp<Izyl_kwo_service> asInterface(const android::sp<android::IBinder>& binder);

    virtual const android::String16& getInterfaceDescriptor() const;

    // Every operation returns a ZylKwoResult. Outputs keep their value when the result says that
    // there is none.

    // The service's own object returns the record's size, which is what crosses the wire.
    virtual int32_t getPlatformInfo(PlatformInfoRecord* info) = 0;
    // Reserved; no transaction code reaches it.
    virtual int32_t unsupportedOperation() = 0;

    // Zero is off, anything else is on.
    virtual int32_t getEnabled(int32_t* enabled) = 0;
    virtual int32_t setEnabled(int32_t enabled) = 0;

    // 1 to 3.
    virtual int32_t getStereoMode(int32_t* mode) = 0;
    virtual int32_t setStereoMode(int32_t mode) = 0;

    // Route 0 speaker, 1 lineout, 2 bluetooth; tuning 0 and up, as far as tuning files exist.
    // Torvane only.
    virtual int32_t getTuning(int32_t route, int32_t* tuning) = 0;
    virtual int32_t setTuning(int32_t route, int32_t tuning) = 0;

    // Bands 0 to 9, gains 725 to 32767, where 4096 is neutral. The switch reads as 0 and ignores
    // what is set while the effect is off.
    virtual int32_t getGEQGain(int32_t band, uint16_t* gain) = 0;
    virtual int32_t setGEQGain(int32_t band, uint16_t gain) = 0;
    virtual int32_t getGEQEnable(int32_t* enabled) = 0;
    virtual int32_t setGEQEnable(int32_t enabled) = 0;
    virtual int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) = 0;
    virtual int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) = 0;

    // Fills `text` with a NUL-terminated text. `length` is the size of `text` in bytes, at least 1,
    // on entry and the text's length on return.
    virtual int32_t getVersionString(char* text, int32_t* length) = 0;

    // Tuning data and the conversion library's work area, both the caller's, each with its size in
    // bytes. The data begins with a NUL-terminated identifier of up to 36 characters, which the
    // name getters give back. `length` is kZylcsNameSize on entry. Maldor only.
    virtual int32_t setSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                          int32_t workSize) = 0;
    virtual int32_t setSecondSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                uint8_t* work, int32_t workSize) = 0;
    virtual int32_t setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs, int32_t zylcsSize,
                                            uint8_t* work, int32_t workSize) = 0;
    virtual int32_t setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs, int32_t zylcsSize,
                                             uint8_t* work, int32_t workSize) = 0;
    virtual int32_t setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                   uint8_t* work, int32_t workSize) = 0;
    virtual int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                int32_t* length) = 0;
    virtual int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                 int32_t* length) = 0;
    virtual int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                       int32_t* length) = 0;

    // The four values of a listening test. Maldor only.
    virtual int32_t setListeningTestResult(float a, float b, float c, float d) = 0;
    virtual int32_t getListeningTestResult(float* a, float* b, float* c, float* d) = 0;
    virtual int32_t resetListeningTestResult() = 0;

    // A value that clients share; the service does not act on it.
    virtual int32_t getActiveRoute(int32_t* route) = 0;
    virtual int32_t setActiveRoute(int32_t route) = 0;

    // Rebuilds all blocks; while the flag is on, stereo mode 3 and cleared effect parameters are
    // forced on the DSP whatever the settings say.
    virtual int32_t setReloadFlag(bool forced) = 0;

    // The output devices that a route's block serves, as a bit mask.
    virtual int32_t getRouteMask(int32_t route, uint32_t* mask) = 0;

    // Hands over shared memory of `length` bytes; one that is shorter than a pipeline image counts
    // as none. There is one region for all clients, the last one handed over. The service never
    // unmaps a region: each call costs it a block's worth of its 32-bit address space for as long
    // as it runs. Once regions take up a gigabyte of it, no more are mapped; so hand one over once.
    // The descriptor stays the caller's.
    virtual int32_t setFileDescriptor(int fd, int32_t length) = 0;
    // Copy a block of the DSP's cache, 0 to 2, into the shared memory and back.
    virtual int32_t fetchCacheBlock(int32_t block) = 0;
    virtual int32_t pushCacheBlock(int32_t block) = 0;

    // Ten values that clients share; the service does not act on them.
    virtual int32_t getDbLevels(int32_t levels[kDbLevelCount]) = 0;
    virtual int32_t setDbGain(const int32_t levels[kDbLevelCount]) = 0;
};

#endif  // ZYL_INTERFACE_IZYL_KWO_SERVICE_H
