#include "service/zyl_kwo_service.h"

#include <android/log.h>

#include <algorithm>

#include "service/process.h"
#include "settings/files.h"
#include "settings/settings_struct_maldor.h"
#include "settings/settings_struct_torvane.h"

namespace {

constexpr char kDefaultMaldorTuning[] = "/data/misc/zyl/current_speaker_on";
constexpr char kDefaultTorvaneTuning[] = "/etc/zyl/speaker_0";
constexpr int32_t kInitialDbLevel = -80000;

// A client cannot tell the settings' results from the service's own.
constexpr bool means(zylKwoErrors error, ZylKwoResult result) {
    return static_cast<int32_t>(error) == static_cast<int32_t>(result);
}
static_assert(means(kSettingsBadArgument, kZylKwoBadArgument) &&
                      means(kSettingsFileFailed, kZylKwoTuningNotLoadable) &&
                      means(kSettingsFileTooShort, kZylKwoTuningTooShort) &&
                      means(kSettingsNoMemory, kZylKwoNoMemory) &&
                      means(kSettingsUnsupported, kZylKwoUnsupported) &&
                      means(kSettingsConversionFailed6, kZylKwoConversionFailed6) &&
                      means(kSettingsConversionFailed7, kZylKwoConversionFailed7) &&
                      means(kSettingsConversionFailed5, kZylKwoConversionFailed5) &&
                      means(kSettingsConversionFailed8, kZylKwoConversionFailed8) &&
                      means(kSettingsConversionFailed, kZylKwoConversionFailed) &&
                      means(kSettingsConversionFailed9, kZylKwoConversionFailed9),
              "one code, one meaning");
static_assert(kBandCount == kGEQBandCount, "the settings hold what clients set");

}  // namespace

zyl_kwo_service::zyl_kwo_service() {
    std::fill(std::begin(mDbLevels), std::end(mDbLevels), kInitialDbLevel);
    selectGeneration();
    fillParameterTable();
    if (mGeneration == kNone) {
        __android_log_print(ANDROID_LOG_ERROR, kServiceLogTag,
                            "%s: default tuning file for either Maldor or Torvane/Ruvelle cannot "
                            "be opened. System is missing tunings",
                            "zyl_kwo_service::zyl_kwo_service()");
        return;
    }
    mSettingsHolder->loadSettings();
    mDriver.initDriverCache();
    mDriver.configureCacheBlocks();
    rebuildPipeline(0);
}

zyl_kwo_service::~zyl_kwo_service() {
    if (mSettingsHolder != nullptr) mSettingsHolder->saveSettings();
}

// Maldor wins where both are there.
void zyl_kwo_service::selectGeneration() {
    if (canBeRead(kDefaultMaldorTuning)) {
        g_tuningDirectory = kMaldorTuningDirectory;
        mGeneration = kMaldor;
        mSettingsHolder =
                std::make_unique<zylSettingsHolder>(std::make_unique<zylSettingsStructMaldor>());
    } else if (canBeRead(kDefaultTorvaneTuning)) {
        g_tuningDirectory = kTorvaneTuningDirectory;
        mGeneration = kTorvane;
        mSettingsHolder =
                std::make_unique<zylSettingsHolder>(std::make_unique<zylSettingsStructTorvane>());
    }
}
