// The service object: the user's settings, the driver, and the operations that keep the two in
// step.
//
// There is one object a process. It is built before it is registered, and it lives until the
// process ends. Binder threads call its operations at the same time.
//
// Two locks make them take turns. gServiceLock is held by an operation from its first look at the
// settings to its last request to the DSP. gRecordLock, which is taken before it, is held by the
// operations that take in tuning data and listening tests, for as long as they run. What runs
// without gServiceLock is named below, with the reason.

#ifndef ZYL_SERVICE_ZYL_KWO_SERVICE_H
#define ZYL_SERVICE_ZYL_KWO_SERVICE_H

#include <array>
#include <atomic>
#include <initializer_list>
#include <memory>

#include "driver/zyl_driver.h"
#include "service/Bn_zyl_kwo_service.h"
#include "service/service_lock.h"
#include "settings/settings_holder.h"
#include "settings/settings_struct_maldor.h"

class zyl_kwo_service : public Bn_zyl_kwo_service {
  public:
    // Picks the settings generation by the tuning files that are there, loads the settings and
    // brings the DSP up to date. Without tuning files the service still answers, without settings.
    zyl_kwo_service();

    android::status_t dump(int fd, const android::Vector<android::String16>& args) override;

    // operations/enable_and_stereo.cpp
    int32_t getEnabled(int32_t* enabled) override;
    int32_t setEnabled(int32_t enabled) override;
    int32_t getStereoMode(int32_t* mode) override;
    int32_t setStereoMode(int32_t mode) override;

    // operations/tuning.cpp
    int32_t getTuning(int32_t route, int32_t* tuning) override;
    int32_t setTuning(int32_t route, int32_t tuning) override;

    // operations/equaliser.cpp
    int32_t getGEQGain(int32_t band, uint16_t* gain) override;
    int32_t setGEQGain(int32_t band, uint16_t gain) override;
    int32_t getGEQEnable(int32_t* enabled) override;
    int32_t setGEQEnable(int32_t enabled) override;
    // Reads band by band, each under the lock: not one snapshot.
    int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) override;
    int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) override;

    // operations/version.cpp, without a lock: it asks nothing that changes.
    int32_t getVersionString(char* text, int32_t* length) override;
    int32_t getPlatformInfo(PlatformInfoRecord* info) override;
    int32_t unsupportedOperation() override;

    // operations/zylcs_tuning.cpp. Setters fold the data into a record without gServiceLock,
    // because the conversion may take long; they reload the blocks under it; they remember the name
    // and save without it again, except for the speaker's. Getters take no lock.
    int32_t setSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                  int32_t workSize) override;
    int32_t setSecondSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                        int32_t workSize) override;
    int32_t setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs, int32_t zylcsSize,
                                    uint8_t* work, int32_t workSize) override;
    int32_t setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs, int32_t zylcsSize,
                                     uint8_t* work, int32_t workSize) override;
    int32_t setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                           int32_t workSize) override;
    int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;
    int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;
    int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                        int32_t* length) override;
    int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                         int32_t* length) override;
    int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;

    // operations/listening_test.cpp. Setting a test is done like setting tuning data; resetting it
    // runs under both locks. The getter takes no lock.
    int32_t setListeningTestResult(float a, float b, float c, float d) override;
    int32_t getListeningTestResult(float* a, float* b, float* c, float* d) override;
    int32_t resetListeningTestResult() override;

    // operations/routes_and_levels.cpp. The active route is one atomic word and takes no lock.
    int32_t getActiveRoute(int32_t* route) override;
    int32_t setActiveRoute(int32_t route) override;
    int32_t getRouteMask(int32_t route, uint32_t* mask) override;
    int32_t getDbLevels(int32_t levels[kDbLevelCount]) override;
    int32_t setDbGain(const int32_t levels[kDbLevelCount]) override;

    // operations/apply.cpp
    int32_t setReloadFlag(bool forced) override;

    // operations/shared_memory.cpp. None of the three takes a lock, so that copies of whole blocks
    // keep no other client waiting.
    int32_t setFileDescriptor(int fd, int32_t length) override;
    int32_t fetchCacheBlock(int32_t block) override;
    int32_t pushCacheBlock(int32_t block) override;

  protected:
    // Saves the settings.
    ~zyl_kwo_service() override;

  private:
    using Identifier = zylSettingsStructMaldor::Identifier;
    enum class Writes { kChained, kUnconditional };

    // For `generation`; null is none.
    explicit zyl_kwo_service(const Generation* generation);

    // The common apply path, operations/apply.cpp. Results are the driver's.

    // Rebuilds and uploads all three blocks. Always 0; a block that cannot be loaded is skipped.
    int32_t rebuildPipeline(uint32_t forced) ZYL_EXCLUDES(gServiceLock);

    // Loads the tuning file of `block`; `on` is the state of the effect that it is wanted for.
    int32_t loadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block, bool on)
            ZYL_REQUIRES(gServiceLock);
    // Lays the settings over a loaded image and uploads it.
    int32_t uploadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block)
            ZYL_REQUIRES(gServiceLock);
    // Both, for the stored state of the effect. Returns the load's result.
    int32_t rebuildBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block)
            ZYL_REQUIRES(gServiceLock);
    int32_t rebuildBlockZero() ZYL_REQUIRES(gServiceLock);

    // Loads and uploads the blocks in turn, each with forced parameters and announcement, and stops
    // at the first that fails. Returns a zylKwoErrors.
    int32_t reloadBlocks(std::initializer_list<CacheBlockType> blocks, bool on)
            ZYL_REQUIRES(gServiceLock);

    // Sends the buffer as `row` to the blocks in turn until one write fails; `size` bytes of it.
    // Returns the last write's result.
    int32_t sendToBlocks(ParameterBuffer& buffer, int32_t row, uint32_t size,
                         std::initializer_list<CacheBlockType> blocks) ZYL_REQUIRES(gServiceLock);
    // Writes a row's value to blocks 1 and 2; chained, only while the writes succeed.
    int32_t writeParameterEntry(int32_t row, uint32_t value, Writes writes)
            ZYL_REQUIRES(gServiceLock);
    // Clears a run of rows in blocks 1 and 2 until one write fails.
    int32_t clearParameterEntries(int32_t first, int32_t end) ZYL_REQUIRES(gServiceLock);

    // Sends gains to all three blocks in their order, operations/equaliser.cpp.
    int32_t sendGains(ParameterBuffer& buffer, int32_t row, uint32_t size)
            ZYL_REQUIRES(gServiceLock);

    // Does nothing unless forced mode is on.
    int32_t applyForcedParameters() ZYL_REQUIRES(gServiceLock);
    void applyForcedParametersAndAnnounce() ZYL_REQUIRES(gServiceLock);

    // The region's address, or null when it is shorter than a pipeline image; MAP_FAILED, with
    // errno, when it cannot be mapped, or when regions have used up their share of the address
    // space, which is bounded so that no client can use up what all else needs.
    void* mapRegion(int fd, size_t size);

    // Maldor's tuning data, operations/zylcs_tuning.cpp.

    // Folds tuning data into one of the speaker's two records.
    int32_t setSpeakerTuning(bool on, const ZylcsData& zylcs);
    // Blocks 1 and 2 for the effect being on; takes the lock.
    int32_t reloadLineoutAndBluetooth() ZYL_EXCLUDES(gServiceLock);
    // Keeps the data's identifier and saves. Returns 0.
    int32_t remember(Identifier which, const ZylcsData& zylcs) ZYL_REQUIRES(gRecordLock);
    // `which` is where Maldor keeps the name; null is refused.
    int32_t getName(const Identifier* which, char* name, const int32_t* length);

    zylSettingsStruct& settings() ZYL_REQUIRES(gServiceLock) {
        return *mSettingsHolder->getSettingsStruct();
    }
    // For operations that run without gServiceLock: copies of whole blocks, and queries. Each of
    // the driver's requests is independent of the others.
    zylDriver& driverWithoutLock() ZYL_UNCHECKED { return mDriver; }

    // Constant after construction.
    const char* const mDevicePath = nullptr;  // no device is told from another; it stays null
    const std::unique_ptr<zylSettingsHolder> mSettingsHolder ZYL_PT_GUARDED_BY(gServiceLock);
    const bool mHasTuningNumbers;
    // The holder's; null where the generation takes in no tuning data. Not guarded by gServiceLock:
    // its setters demand gRecordLock, its getters no lock.
    zylSettingsStructMaldor* const mMaldor;

    // What the DSP is driven by, and by what.
    zylDriver mDriver ZYL_GUARDED_BY(gServiceLock);
    uint32_t mForcedMode ZYL_GUARDED_BY(gServiceLock) = 0;
    std::array<int32_t, kDbLevelCount> mDbLevels ZYL_GUARDED_BY(gServiceLock);

    // Single words that clients own, deliberately unguarded.
    std::atomic<int32_t> mActiveRoute{0};
    // Mapped from a client, at least one pipeline image long; null while there is none.
    std::atomic<uint8_t*> mSharedRegion{nullptr};
    std::atomic<size_t> mMappedBytes{0};
};

#endif  // ZYL_SERVICE_ZYL_KWO_SERVICE_H
