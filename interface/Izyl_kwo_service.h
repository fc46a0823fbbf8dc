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

#include "interface/zyl_kwo_types.h"

constexpr char kZylKwoServiceName[] = "zyl_kwo_service";

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

    // The contract of each operation. Every one returns a zylKwoErrors; those that it can return
    // are listed behind "Returns", and a proxy may return one of its own three besides, after which
    // nobody knows whether the call was carried out. An output keeps its value unless the result is
    // kZylKwoOk. Pointers are only used during the call and stay the caller's.
    //
    // A setter saves before it talks to the DSP: where it returns that the DSP refused, the setting
    // is changed and saved all the same, and the DSP follows with the next call that sends it, or
    // with setReloadFlag. Where something else holds, it stands with the operation.
    //
    // Without a settings generation (no tuning files on the device) all but getPlatformInfo,
    // getVersionString, the active route, the route masks, the levels, the shared memory and
    // setReloadFlag return kZylKwoNotAvailable. There are no notifications: a client that wants to
    // know of another's change asks again.

    // Fills the record. The proxy returns kZylKwoOk; the service's own object returns the record's
    // size, which is what crosses the wire.
    virtual int32_t getPlatformInfo(PlatformInfoRecord* info) = 0;
    // Reserved; no transaction code reaches it. Returns kZylKwoUnsupported.
    virtual int32_t unsupportedOperation() = 0;

    // The effect's switch: zero is off, anything else is on and comes back as it was set.
    virtual int32_t getEnabled(int32_t* enabled) = 0;
    // Loads the speaker's block anew and writes the switch to the two others. A proxy reports every
    // failure as kZylKwoCallFailed; the service's own object returns kZylKwoBadArgument when the
    // speaker's tuning cannot be loaded. The choice is saved all the same.
    virtual int32_t setEnabled(int32_t enabled) = 0;

    // 1 to 3. setStereoMode writes lineout's block, then bluetooth's. Returns kZylKwoBadArgument
    // for another mode, which changes nothing, and also when the DSP refused.
    virtual int32_t getStereoMode(int32_t* mode) = 0;
    virtual int32_t setStereoMode(int32_t mode) = 0;

    // The number of a route's tuning; Torvane only. `route` is a zylRoute, `tuning` 0 and up, as
    // far as tuning files exist. A change applies to the route's block at once. Where the effect is
    // off the speaker's new tuning is loaded and saved like any other, and the speaker's off tuning
    // comes back with the next reload.
    // Returns kZylKwoBadArgument for a route or a number that cannot be; kZylKwoTuningNotLoadable
    // or kZylKwoTuningTooShort for a tuning file that is missing or short, after which the tuning
    // is what it was; kZylKwoUploadFailed, after which the new number is saved.
    virtual int32_t getTuning(int32_t route, int32_t* tuning) = 0;
    virtual int32_t setTuning(int32_t route, int32_t tuning) = 0;

    // The graphic equaliser. `band` is 0 to 9, `gain` 725 to 32767, see kNeutralGEQGain.
    // Returns kZylKwoBadArgument for a band or a gain out of range, which changes nothing, and also
    // when the DSP refused.
    // setGEQGain while the equaliser is off reaches the DSP, but is not kept; setGEQGainAll is then
    // refused as kZylKwoBadArgument.
    // setGEQEnable while the effect is off does nothing and returns kZylKwoOk; getGEQEnable then
    // gives 0.
    // getGEQGainAll is not one snapshot: a change may come between two of its bands.
    virtual int32_t getGEQGain(int32_t band, uint16_t* gain) = 0;
    virtual int32_t setGEQGain(int32_t band, uint16_t gain) = 0;
    virtual int32_t getGEQEnable(int32_t* enabled) = 0;
    virtual int32_t setGEQEnable(int32_t enabled) = 0;
    virtual int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) = 0;
    virtual int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) = 0;

    // Fills `text` with a NUL-terminated text that names the versions of all parts. `length` is the
    // size of `text` in bytes, at least 1, on entry and the text's length on return; what does not
    // fit is cut off.
    virtual int32_t getVersionString(char* text, int32_t* length) = 0;

    // Tuning data, Maldor only. `zylcs` is the data and `work` a work area for the conversion
    // library, each with its size in bytes, 0 to 16 MiB; together they must fit a binder
    // transaction, about a megabyte, but the work area may announce more than is sent. The data
    // begins with an identifier of up to 36 characters and a NUL; the name getters give it back.
    // The library changes a saved record, and the blocks that it is for are loaded anew: the
    // speaker's for the two speakers (for the effect being on, and off), that of `route`, lineout
    // or bluetooth, for an accessory, and both of these for a room.
    // Returns kZylKwoBadArgument for an accessory's route that is neither; the library's refusal
    // (kZylKwoConversionFailed..., kZylKwoBadArgument, kZylKwoNoMemory or kZylKwoUnsupported),
    // kZylKwoTuningNotLoadable or kZylKwoTuningTooShort for a record that cannot be read or
    // written, and kZylKwoUploadFailed. The name is only kept when all went well. Where two records
    // are changed, lineout's may hold the change although bluetooth's failed. A stereo room with an
    // `index` other than 1 (lineout) and 2 (bluetooth) is in force, but has no place for its name:
    // kZylKwoBadArgument.
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
    // The name of the tuning data that is in force, NUL-terminated; zeros in groups of 8, 4, 4, 4
    // and 12 while there is none. `length` is kZylcsNameSize on entry and stays so. Returns
    // kZylKwoBadArgument, and an empty name, for a route or an index other than 1 and 2.
    virtual int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                int32_t* length) = 0;
    virtual int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                 int32_t* length) = 0;
    virtual int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                       int32_t* length) = 0;

    // The four values of a listening test, in the clients' own unit; Maldor only. They are folded
    // into the records of lineout and bluetooth, and remembered when all went well; -1 each while
    // there is no test. A proxy reports every failure of getListeningTestResult as
    // kZylKwoCallFailed. setListeningTestResult returns what tuning data returns;
    // resetListeningTestResult returns kZylKwoOk whatever the DSP and the records do.
    virtual int32_t setListeningTestResult(float a, float b, float c, float d) = 0;
    virtual int32_t getListeningTestResult(float* a, float* b, float* c, float* d) = 0;
    virtual int32_t resetListeningTestResult() = 0;

    // A number that clients share, 0 after a start and not saved. The service does not act on it
    // and takes any.
    virtual int32_t getActiveRoute(int32_t* route) = 0;
    virtual int32_t setActiveRoute(int32_t route) = 0;

    // Loads and uploads all three blocks anew, and returns kZylKwoOk: a block without its tuning
    // file is left out. While the flag is on, stereo mode 3 and cleared effect parameters are
    // forced on the DSP behind every change, whatever the settings say. The flag is not saved.
    virtual int32_t setReloadFlag(bool forced) = 0;

    // The output devices that a route's block serves, as a bit mask of audio devices. Returns
    // kZylKwoBadArgument for another route than 0 to 2.
    virtual int32_t getRouteMask(int32_t route, uint32_t* mask) = 0;

    // Hands over shared memory of `length` bytes, at least one pipeline image (the size of a block,
    // which the conversion library tells: 61,700 bytes on today's devices). A shorter region is
    // accepted and counts as none. Returns kZylKwoUploadFailed when it cannot be mapped; then there
    // is no region. The descriptor stays the caller's.
    // There is one region for all clients, the last one handed over. The service never unmaps a
    // region: each call costs it a block's worth of its 32-bit address space for as long as it
    // runs. Once regions take up a gigabyte of it, no more are mapped; so hand one over once.
    virtual int32_t setFileDescriptor(int fd, int32_t length) = 0;
    // Copy a block of the DSP's cache, 0 to 2, into the shared memory, and back. A block that does
    // not exist is fetched as zeros and pushed nowhere, both with kZylKwoOk. Return
    // kZylKwoNoSharedRegion without a region, or with one that is too short, and
    // kZylKwoUploadFailed when the DSP refused or the memory went away. What is pushed reaches the
    // DSP as it is; nothing of it is saved.
    virtual int32_t fetchCacheBlock(int32_t block) = 0;
    virtual int32_t pushCacheBlock(int32_t block) = 0;

    // Ten values that clients share, in the clients' own unit; -80000 each after a start, and not
    // saved. The service does not act on them. They are read and written as a whole.
    virtual int32_t getDbLevels(int32_t levels[kDbLevelCount]) = 0;
    virtual int32_t setDbGain(const int32_t levels[kDbLevelCount]) = 0;
};

#endif  // ZYL_INTERFACE_IZYL_KWO_SERVICE_H
