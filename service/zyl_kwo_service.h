// The service object: the user's settings, the driver, and the operations that keep the two in
// step.
//
// One object a process, built before it is registered and alive until the process ends. Binder
// threads call the operations concurrently; each takes gServiceLock for its whole body unless its
// comment says otherwise.

#ifndef ZYL_SERVICE_ZYL_KWO_SERVICE_H
#define ZYL_SERVICE_ZYL_KWO_SERVICE_H

#include <atomic>
#include <initializer_list>
#include <memory>
#include <optional>

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

    // operations/version.cpp, without the lock.
    int32_t getVersionString(char* text, int32_t* length) override;
    int32_t getPlatformInfo(PlatformInfoRecord* info) override;
    int32_t unsupportedOperation() override;

    // operations/zylcs_tuning.cpp; without the lock: folding data in, as it may take long,
    // remembering a name, but for the speaker's, and telling one.
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

    // operations/listening_test.cpp; without the lock: folding a test in, remembering it, telling
    // it.
    int32_t setListeningTestResult(float a, float b, float c, float d) override;
    int32_t getListeningTestResult(float* a, float* b, float* c, float* d) override;
    int32_t resetListeningTestResult() override;

    // operations/routes_and_levels.cpp; the active route without the lock.
    int32_t getActiveRoute(int32_t* route) override;
    int32_t setActiveRoute(int32_t route) override;
    int32_t getRouteMask(int32_t route, uint32_t* mask) override;
    int32_t getDbLevels(int32_t levels[kDbLevelCount]) override;
    int32_t setDbGain(const int32_t levels[kDbLevelCount]) override;

    // operations/apply.cpp
    int32_t setReloadFlag(bool forced) override;

    // operations/shared_memory.cpp; all three without the lock, so that whole-block copies never
    // keep other clients waiting.
    int32_t setFileDescriptor(int fd, int32_t length) override;
    int32_t fetchCacheBlock(int32_t block) override;
    int32_t pushCacheBlock(int32_t block) override;

  protected:
    // Saves the settings.
    ~zyl_kwo_service() override;

  private:
    enum Generation { kNone = 0, kTorvane = 1, kMaldor = 2 };
    enum class Writes { kChained, kUnconditional };

    void selectGeneration();

    // The common apply path, operations/apply.cpp. Results are the driver's.

    // Rebuilds and uploads all three blocks. Always 0; a block that cannot be loaded is skipped.
    int32_t rebuildPipeline(uint32_t forced) EXCLUDES(gServiceLock);

    // Loads the tuning file of `block`; `on` is the state of the effect that it is wanted for.
    int32_t loadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block, bool on)
            REQUIRES(gServiceLock);
    // Lays the settings over a loaded image and uploads it.
    int32_t uploadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) REQUIRES(gServiceLock);
    // Both, for the stored state of the effect. Returns the load's result.
    int32_t rebuildBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) REQUIRES(gServiceLock);
    int32_t rebuildBlockZero() REQUIRES(gServiceLock);

    // Loads and uploads the blocks in turn, each with forced parameters and announcement, and stops
    // at the first that fails. Returns a ZylKwoResult.
    int32_t reloadBlocks(std::initializer_list<CacheBlockType> blocks, bool on)
            REQUIRES(gServiceLock);

    // Sends the buffer as `row` to the blocks in turn until one write fails; `size` bytes of it.
    // Returns the last write's result.
    int32_t sendToBlocks(ParameterBuffer& buffer, int32_t row, uint32_t size,
                         std::initializer_list<CacheBlockType> blocks) REQUIRES(gServiceLock);
    // Writes a row's value to blocks 1 and 2; chained, only while the writes succeed.
    int32_t writeParameterEntry(int32_t row, uint32_t value, Writes writes) REQUIRES(gServiceLock);
    // Clears a run of rows in blocks 1 and 2 until one write fails.
    int32_t clearParameterEntries(int32_t first, int32_t end) REQUIRES(gServiceLock);

    // Sends gains to all three blocks in their order, operations/equaliser.cpp.
    int32_t sendGains(ParameterBuffer& buffer, int32_t row, uint32_t size) REQUIRES(gServiceLock);

    // Does nothing unless forced mode is on.
    int32_t applyForcedParameters() REQUIRES(gServiceLock);
    void applyForcedParametersAndAnnounce() REQUIRES(gServiceLock);

    // The region's address, or null when it is shorter than a pipeline image; MAP_FAILED, with
    // errno, when it cannot be mapped, or when regions have used up their share of the address
    // space, which is bounded so that no client can use up what all else needs.
    void* mapRegion(int fd, size_t size);

    // Maldor's tuning data, operations/zylcs_tuning.cpp.

    // Folds tuning data into one of the speaker's two records.
    int32_t setSpeakerTuning(bool on, const ZylcsData& zylcs);
    // Blocks 1 and 2 for the effect being on; takes the lock.
    int32_t reloadLineoutAndBluetooth() EXCLUDES(gServiceLock);
    // Keeps the data's identifier and saves. Returns 0.
    int32_t remember(zylSettingsStructMaldor::Identifier which, const ZylcsData& zylcs);
    // `identifier` is where Maldor keeps the name; none is refused.
    int32_t getName(std::optional<zylSettingsStructMaldor::Identifier> identifier, char* name,
                    const int32_t* length);

    zylSettingsStruct& settings() REQUIRES(gServiceLock) {
        return *mSettingsHolder->getSettingsStruct();
    }
    // Only on Maldor. Not guarded: tuning data and listening tests are folded into the records, and
    // remembered, without the lock, so that a long conversion keeps nobody waiting.
    zylSettingsStructMaldor& maldor() {
        return *static_cast<zylSettingsStructMaldor*>(mSettingsHolder->getSettingsStruct());
    }

    // Constant after construction. There is a holder whenever there is a generation.
    const char* const mDevicePath = nullptr;
    Generation mGeneration = kNone;
    std::unique_ptr<zylSettingsHolder> mSettingsHolder;

    // Guarded: what the DSP is driven by.
    uint32_t mForcedMode GUARDED_BY(gServiceLock) = 0;
    int32_t mDbLevels[kDbLevelCount] GUARDED_BY(gServiceLock);

    // Deliberately unguarded: the driver's requests are independent of each other, and the others
    // are single words that clients own.
    zylDriver mDriver;
    std::atomic<int32_t> mActiveRoute{0};
    // Mapped from a client, at least one pipeline image long; null while there is none.
    std::atomic<uint8_t*> mSharedRegion{nullptr};
    std::atomic<size_t> mMappedBytes{0};
};

#endif  // ZYL_SERVICE_ZYL_KWO_SERVICE_H
