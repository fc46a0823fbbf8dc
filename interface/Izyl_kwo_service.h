// The binder interface of the audio-effect service: its operations, their transaction codes, the
// one structure that crosses the wire, and the results that come back. docs/protocol.md has the
// wire.
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

// The reply of code 1 ends with these bytes.
struct PlatformInfoRecord {
    int32_t size;           // always 20
    uint8_t versionMarker;  // twice the length of the version text
    char version[10];       // the service's version, NUL-terminated; zeros behind it
    uint8_t reserved;       // 0
    int32_t platformType;   // 0: the service does not know which device it drives. Reserved are
                            // 1 /dev/zyl_quorin, 2 /dev/snd/hwC0D999 and 3 /dev/snd/hwC0D2
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
    // are listed behind "Returns", beside kZylKwoOk. The proxy may also return one of its own
    // three. After kZylKwoServiceGone and kZylKwoCallFailed nobody knows whether the call was
    // carried out; after kZylKwoCallRefused it was not. An output keeps its value unless the result
    // is kZylKwoOk. Pointers are only used during the call and stay the caller's.
    //
    // A setter saves before it talks to the DSP. When it returns that the DSP refused, the setting
    // is changed and saved all the same; the DSP gets it with the next call that sends it, or with
    // setReloadFlag. The blocks are written one after the other, and the first refusal ends this:
    // blocks that come later keep their old value. Where something else holds, the operation says
    // so. No result tells that a file could not be saved: the service logs it, and the setting
    // holds until the service ends.
    //
    // Operations take turns, in the order in which they were called, so that each sees the whole
    // effect of those before it. The exceptions are named below. There are no notifications: a
    // client that wants to know of another's change asks again.
    //
    // A device has one of two settings generations, Torvane or Maldor, or none when it has no
    // tuning files. An operation that the device's generation does not have returns
    // kZylKwoNotAvailable. Without a generation these remain: getPlatformInfo, getVersionString,
    // the active route, the route masks, the levels, the shared memory and setReloadFlag.

    // The proxy fills all of `info` and returns kZylKwoOk. The service's own object sets
    // `platformType` alone and returns `info->size`.
    virtual int32_t getPlatformInfo(PlatformInfoRecord* info) = 0;
    // Reserved; no transaction code reaches it. Returns kZylKwoUnsupported.
    virtual int32_t unsupportedOperation() = 0;

    // The effect's switch. Zero is off; any other value is on and is given back as it was set.
    virtual int32_t getEnabled(int32_t* enabled) = 0;
    // Loads the speaker's block anew and writes the switch to the two other blocks. The DSP's
    // refusals are not reported and end nothing. When the speaker's tuning cannot be loaded, the
    // choice is saved but the DSP is sent nothing: the service's own object then returns
    // kZylKwoBadArgument. The proxy reports every failure of these two operations as
    // kZylKwoCallFailed.
    virtual int32_t setEnabled(int32_t enabled) = 0;

    // The stereo mode, 1 to 3. setStereoMode writes it to lineout's block and then to bluetooth's.
    // Returns kZylKwoBadArgument for another mode, which changes nothing, and also when the DSP
    // refused.
    virtual int32_t getStereoMode(int32_t* mode) = 0;
    virtual int32_t setStereoMode(int32_t mode) = 0;

    // The number of a route's tuning; Torvane only. `route` is a zylRoute, `tuning` a number from 0
    // for which the device has a tuning file. setTuning reads that file, saves the number and
    // uploads the route's block. Two cases differ:
    // - Lineout's tuning 3 becomes 1, with kZylKwoOk, on a device that has no file for it.
    // - While the effect is off, the speaker has an off tuning, which setTuning loads again. The
    //   new number's file is only looked for when the effect is switched on.
    // Returns kZylKwoBadArgument for a route that does not exist or a number below 0;
    // kZylKwoTuningNotLoadable or kZylKwoTuningTooShort for a tuning file that is missing or short,
    // after which the number is what it was; kZylKwoUploadFailed, after which the new number is
    // saved.
    virtual int32_t getTuning(int32_t route, int32_t* tuning) = 0;
    virtual int32_t setTuning(int32_t route, int32_t tuning) = 0;

    // The graphic equaliser. `band` is 0 to 9, `gain` 725 to 32767, see kNeutralGEQGain. Its switch
    // takes any value as the effect's does.
    // Returns kZylKwoBadArgument for a band or a gain out of range, which changes nothing, and also
    // when the DSP refused.
    // While the equaliser's own switch is off, setGEQGain sends the gain to the DSP but does not
    // keep it, and setGEQGainAll changes nothing and returns kZylKwoBadArgument.
    // While the effect is off, setGEQEnable does nothing and returns kZylKwoOk, and getGEQEnable
    // gives 0.
    // getGEQGainAll takes a turn for each band: a change may come between two of them.
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
    // library, each with its size in bytes, 0 to 16 MiB. Both are sent, and nothing comes back. All
    // calls under way to the service together have about a megabyte for what they send. The data
    // begins with its name, of up to 36 characters, and a NUL.
    //
    // Each of the speaker's two states (the effect on, or off), lineout and bluetooth has a record:
    // a pipeline image in a file. The library changes the records concerned, then the blocks that
    // they are for are loaded anew, and last the name is kept and saved:
    // - setSpeakerZylcsTuning changes the speaker's record for the effect being on, and
    //   setSecondSpeakerZylcsTuning that for its being off. The block is loaded from the record
    //   that suits the effect's switch.
    // - setAccessoryZylcsTuning changes the record of `route`, lineout or bluetooth. A listening
    //   test that was taken is applied to it again.
    // - The rooms change the records of lineout and bluetooth, in this order. The `index` of a
    //   stereo room is 1 when the room was chosen for lineout, 2 when for bluetooth. Any other
    //   index is taken for bluetooth, but there is no place for the name: kZylKwoBadArgument is
    //   returned although the room is in force.
    // A conversion keeps no other operation waiting, except these five and the two that change the
    // listening test.
    //
    // Returns kZylKwoBadArgument for an accessory's route that is neither; the library's refusal
    // (kZylKwoConversionFailed..., kZylKwoBadArgument, kZylKwoNoMemory or kZylKwoUnsupported);
    // kZylKwoTuningNotLoadable, kZylKwoTuningTooShort or kZylKwoNoMemory when a record cannot be
    // read or written; kZylKwoTuningNotLoadable when a block cannot be loaded from its record;
    // kZylKwoUploadFailed. After a failure no name is kept, but records and blocks that came before
    // it stay changed. A record whose file may not be written counts as written.
    // The proxy returns kZylKwoCallFailed for a size out of range. The service keeps the data of
    // the two speaker operations allocated. Once that is 128 MiB, both return kZylKwoCallFailed
    // until the service is started again.
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
    // The name of the tuning data that was taken last, NUL-terminated, or
    // "00000000-0000-0000-0000-000000000000" while none was. `length` is kZylcsNameSize on entry
    // and stays so. These take no turn: a name that is being replaced may come out as a mixture of
    // both. Returns kZylKwoBadArgument for a route or an index other than 1 and 2.
    virtual int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) = 0;
    virtual int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                int32_t* length) = 0;
    virtual int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                 int32_t* length) = 0;
    virtual int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                       int32_t* length) = 0;

    // The four values of a listening test, in the clients' own unit; Maldor only.
    // setListeningTestResult changes the records of lineout and bluetooth, as a room does, and
    // keeps the values when all went well. It returns what tuning data returns.
    // getListeningTestResult gives -1 four times while there is no test. It takes no turn: values
    // that are being replaced may come out mixed. The proxy reports every failure of it as
    // kZylKwoCallFailed.
    // resetListeningTestResult forgets the values and takes the test out of lineout's record and
    // block, then bluetooth's. It returns kZylKwoOk even when the DSP refuses, which ends it, or a
    // record cannot be changed.
    virtual int32_t setListeningTestResult(float a, float b, float c, float d) = 0;
    virtual int32_t getListeningTestResult(float* a, float* b, float* c, float* d) = 0;
    virtual int32_t resetListeningTestResult() = 0;

    // A number that clients share, 0 after a start and not saved. The service takes any and does
    // not act on it. `route` of getActiveRoute needs a value on entry, which is not used. Neither
    // takes a turn: a client sees one whole value or another.
    virtual int32_t getActiveRoute(int32_t* route) = 0;
    virtual int32_t setActiveRoute(int32_t route) = 0;

    // Loads and uploads all three blocks anew, and returns kZylKwoOk in any case: a block whose
    // tuning file is missing or short, or that the DSP refuses, is left out. `forced` switches
    // forced mode, which is not saved. While it is on, the service sends lineout and bluetooth
    // stereo mode 3 and cleared effect parameters behind every change that it sends to the DSP,
    // except pushCacheBlock; the settings keep what clients chose.
    virtual int32_t setReloadFlag(bool forced) = 0;

    // The output devices that a route's block serves, as a bit mask of the platform's audio
    // devices. Returns kZylKwoBadArgument for a route other than 0 to 2.
    virtual int32_t getRouteMask(int32_t route, uint32_t* mask) = 0;

    // Hands over shared memory: the first `length` bytes of `fd`, which is open for reading and
    // writing and stays the caller's. A region must hold one pipeline image, the size of a block,
    // which the conversion library reports (61,700 bytes on today's devices). A shorter one is
    // accepted here and refused by the two operations below. Returns kZylKwoUploadFailed when it
    // cannot be mapped; then there is no region, not even the one from before.
    // There is one region for all clients, the last one handed over. The service never unmaps a
    // region: each call costs it a block's worth of its 32-bit address space for as long as it
    // runs. Regions may take up a gigabyte of it; one whose whole length does not fit into what is
    // left cannot be mapped. So hand memory over once.
    // None of these three takes a turn: a push may come between the writes of another operation.
    virtual int32_t setFileDescriptor(int fd, int32_t length) = 0;
    // Copy a block of the DSP's cache, 0 to 2, into the shared memory, and back. The client leaves
    // the memory alone during a push. A block that does not exist is fetched as zeros and pushed
    // nowhere, both with kZylKwoOk. The DSP gets what is pushed as it is, without the settings;
    // nothing of it is saved.
    // Returns kZylKwoNoSharedRegion without a region, or with one that is too short, and
    // kZylKwoUploadFailed when the DSP refused or the memory is no longer there.
    virtual int32_t fetchCacheBlock(int32_t block) = 0;
    virtual int32_t pushCacheBlock(int32_t block) = 0;

    // Ten values that clients share, in the clients' own unit; -80000 each after a start, and not
    // saved. The service takes any and does not act on them. All ten are read or written in one
    // turn.
    virtual int32_t getDbLevels(int32_t levels[kDbLevelCount]) = 0;
    virtual int32_t setDbGain(const int32_t levels[kDbLevelCount]) = 0;
};

#endif  // ZYL_INTERFACE_IZYL_KWO_SERVICE_H
