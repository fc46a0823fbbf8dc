// The service object has the user's settings, the driver, and the operations that keep the DSP in
// step with the settings. Izyl_kwo_service.h says what each operation does.
//
// A process has one such object. It is built before it is registered, and it lives until the
// process ends. Several binder threads call its operations at the same time.
//
// Two locks make the operations take turns. An operation holds gServiceLock from its first look at
// the settings to its last request to the DSP. The operations that change records hold gRecordLock
// besides, for as long as they run; they take it before gServiceLock. Operations that run without
// gServiceLock are named below, with the reason.

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
    // uploads all blocks. Without tuning files there are no settings, and the service answers what
    // needs none.
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
    // Takes the lock for each band by itself.
    int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) override;
    int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) override;

    // operations/version.cpp. These take no lock, because they read nothing that changes.
    int32_t getVersionString(char* text, int32_t* length) override;
    int32_t getPlatformInfo(PlatformInfoRecord* info) override;
    int32_t unsupportedOperation() override;

    // operations/zylcs_tuning.cpp. The setters have three steps. They change records without
    // gServiceLock, because the conversion may take long. They reload the blocks under it. They
    // remember the name and save it, the speaker's under it, the others without. The getters take
    // no lock.
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

    // operations/listening_test.cpp. The setter has the same three steps; the reset holds both
    // locks throughout. The getter takes no lock.
    int32_t setListeningTestResult(float a, float b, float c, float d) override;
    int32_t getListeningTestResult(float* a, float* b, float* c, float* d) override;
    int32_t resetListeningTestResult() override;

    // operations/routes_and_levels.cpp. The active route is one atomic word and needs no lock.
    int32_t getActiveRoute(int32_t* route) override;
    int32_t setActiveRoute(int32_t route) override;
    int32_t getRouteMask(int32_t route, uint32_t* mask) override;
    int32_t getDbLevels(int32_t levels[kDbLevelCount]) override;
    int32_t setDbGain(const int32_t levels[kDbLevelCount]) override;

    // operations/apply.cpp
    int32_t setReloadFlag(bool forced) override;

    // operations/shared_memory.cpp. None of the three takes gServiceLock, so that copies of whole
    // blocks keep no other client waiting.
    int32_t setFileDescriptor(int fd, int32_t length) override;
    int32_t fetchCacheBlock(int32_t block) override;
    int32_t pushCacheBlock(int32_t block) override;

  protected:
    // Saves the settings.
    ~zyl_kwo_service() override;

  private:
    using TuningName = zylSettingsStructMaldor::TuningName;
    enum class Writes { kChained, kUnconditional };

    // `generation` is null when the device has none.
    explicit zyl_kwo_service(const Generation* generation);

    // The common apply path, operations/apply.cpp. Results are the driver's, where nothing else is
    // said.

    // Loads and uploads all three blocks and sets forced mode. Always 0; a block that cannot be
    // loaded is left as the DSP has it.
    int32_t rebuildPipeline(uint32_t forced) ZYL_EXCLUDES(gServiceLock);

    // Loads the tuning file of `block` for the effect being on, or off. Torvane goes by the stored
    // state instead.
    int32_t loadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block, bool on)
            ZYL_REQUIRES(gServiceLock);
    // Lays the settings over a loaded image and uploads it.
    int32_t uploadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block)
            ZYL_REQUIRES(gServiceLock);
    // Does both, for the stored state of the effect. Returns the load's result.
    int32_t rebuildBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block)
            ZYL_REQUIRES(gServiceLock);
    int32_t rebuildBlockZero() ZYL_REQUIRES(gServiceLock);

    // Loads and uploads the blocks in turn, each with forced parameters and announcement, and stops
    // at the first that fails. Returns kZylKwoTuningNotLoadable or kZylKwoUploadFailed then.
    int32_t reloadBlocks(std::initializer_list<CacheBlockType> blocks, bool on)
            ZYL_REQUIRES(gServiceLock);

    // Sends `size` bytes of the buffer as `row` to the blocks in turn, and stops at the first write
    // that fails. Returns the last write's result.
    int32_t sendToBlocks(ParameterBuffer& buffer, int32_t row, uint32_t size,
                         std::initializer_list<CacheBlockType> blocks) ZYL_REQUIRES(gServiceLock);
    // Writes a row's value to block 1 and then to block 2. Chained, block 2 is left out when the
    // first write failed.
    int32_t writeParameterEntry(int32_t row, uint32_t value, Writes writes)
            ZYL_REQUIRES(gServiceLock);
    // Writes 0 to the rows from `first` to the one before `end`, and stops at the first write that
    // fails.
    int32_t clearParameterEntries(int32_t first, int32_t end) ZYL_REQUIRES(gServiceLock);

    // Sends one gain or all of them to the three blocks, operations/equaliser.cpp.
    int32_t sendGains(ParameterBuffer& buffer, int32_t row, uint32_t size)
            ZYL_REQUIRES(gServiceLock);

    // Does nothing unless forced mode is on.
    int32_t applyForcedParameters() ZYL_REQUIRES(gServiceLock);
    void applyForcedParametersAndAnnounce() ZYL_REQUIRES(gServiceLock);

    // Returns the region's address, or null when it is shorter than a pipeline image. Returns
    // MAP_FAILED, with errno, when it cannot be mapped or when regions have used up their share of
    // the address space. The share is bounded so that no client can use up what all else needs.
    void* mapRegion(int fd, size_t size);

    // Maldor's tuning data, operations/zylcs_tuning.cpp.

    // Takes tuning data for the speaker, for the effect being on, or off.
    int32_t setSpeakerTuning(bool on, const ZylcsData& zylcs);
    // Reloads blocks 1 and 2. Takes the lock.
    int32_t reloadLineoutAndBluetooth() ZYL_EXCLUDES(gServiceLock);
    // Keeps the name of the data and saves. Returns 0.
    int32_t remember(TuningName which, const std::string& name) ZYL_REQUIRES(gRecordLock);
    // `which` is null for a route or an index that has no name.
    int32_t getName(const TuningName* which, char* name, const int32_t* length);

    zylSettingsStruct& settings() ZYL_REQUIRES(gServiceLock) {
        return *mSettingsHolder->getSettingsStruct();
    }
    // Only for operations that run without gServiceLock: copies of whole blocks, and queries. The
    // driver's requests are independent of each other.
    zylDriver& driverWithoutLock() ZYL_UNCHECKED { return mDriver; }

    // Constant after construction.
    // The device that the platform is recognised by, one of kKnownDevices. Nothing ever sets it, so
    // that getPlatformInfo reports no device.
    const char* const mDevicePath = nullptr;
    const std::unique_ptr<zylSettingsHolder> mSettingsHolder ZYL_PT_GUARDED_BY(gServiceLock);
    const bool mHasTuningNumbers;
    // The holder's; null where the generation takes no tuning data. It is not guarded by
    // gServiceLock: its setters demand gRecordLock, its getters no lock.
    zylSettingsStructMaldor* const mMaldor;

    zylDriver mDriver ZYL_GUARDED_BY(gServiceLock);
    uint32_t mForcedMode ZYL_GUARDED_BY(gServiceLock) = 0;
    std::array<int32_t, kDbLevelCount> mDbLevels ZYL_GUARDED_BY(gServiceLock);

    // Single words, unguarded on purpose: each is read and written whole.
    std::atomic<int32_t> mActiveRoute{0};
    // A client's memory, mapped, at least one pipeline image long; null while there is none.
    std::atomic<uint8_t*> mSharedRegion{nullptr};
    // How much address space all regions have taken.
    std::atomic<size_t> mMappedBytes{0};
};

#endif  // ZYL_SERVICE_ZYL_KWO_SERVICE_H
