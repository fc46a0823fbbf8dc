#include "service/zyl_kwo_service.h"

#include <android/log.h>

#include "driver/parameter_table.h"
#include "service/process.h"

namespace {

constexpr int32_t kInitialDbLevel = -80000;

std::unique_ptr<zylSettingsHolder> makeHolder(const Generation* generation) {
    if (generation == nullptr) return nullptr;
    return std::make_unique<zylSettingsHolder>(*generation);
}

}  // namespace

zyl_kwo_service::zyl_kwo_service() : zyl_kwo_service(findGeneration()) {}

zyl_kwo_service::zyl_kwo_service(const Generation* generation)
    : mSettingsHolder(makeHolder(generation)),
      mHasTuningNumbers(mSettingsHolder != nullptr && mSettingsHolder->hasTuningNumbers()),
      mMaldor(mSettingsHolder != nullptr ? mSettingsHolder->maldor() : nullptr) {
    mDbLevels.fill(kInitialDbLevel);
    fillParameterTable();
    if (mSettingsHolder == nullptr) {
        __android_log_print(ANDROID_LOG_ERROR, kServiceLogTag,
                            "%s: default tuning file for either Maldor or Torvane/Ruvelle cannot "
                            "be opened. System is missing tunings",
                            "zyl_kwo_service::zyl_kwo_service()");
        return;
    }
    g_tuningDirectory = mSettingsHolder->tuningDirectory();
    mSettingsHolder->loadSettings();
    mDriver.initDriverCache();
    mDriver.configureCacheBlocks();
    rebuildPipeline(0);
}

zyl_kwo_service::~zyl_kwo_service() {
    if (mSettingsHolder != nullptr) mSettingsHolder->saveSettings();
}
