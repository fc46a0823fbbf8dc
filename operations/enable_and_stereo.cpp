#include <android/log.h>

#include "driver/parameter_table.h"
#include "service/process.h"
#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::getEnabled(int32_t* enabled) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    *enabled = static_cast<int32_t>(settings().getEnabled());
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setEnabled(int32_t enabled) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    // Saved first, so that the user's choice is kept when the DSP cannot follow it now.
    settings().setEnabled(static_cast<uint32_t>(enabled));
    mSettingsHolder->saveSettings();
    const int32_t loaded = rebuildBlockZero();
    if (loaded != 0) {
        __android_log_print(ANDROID_LOG_ERROR, kServiceLogTag,
                            "LoadParamBlock returned an error (%d)....", loaded);
        return kZylKwoBadArgument;
    }
    const bool on = enabled != 0;
    const uint32_t firstPair = on ? 0 : kEffectOffFirstPair;
    const uint32_t secondPair = on ? 0 : kEffectOffSecondPair;
    writeParameterEntry(kRowEffectFirst, firstPair, Writes::kUnconditional);
    writeParameterEntry(kRowEffectSecond, firstPair, Writes::kUnconditional);
    writeParameterEntry(kRowEffectThird, secondPair, Writes::kUnconditional);
    writeParameterEntry(kRowEffectFourth, secondPair, Writes::kUnconditional);
    applyForcedParametersAndAnnounce();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getStereoMode(int32_t* mode) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    *mode = static_cast<int32_t>(settings().getStereoMode());
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setStereoMode(int32_t mode) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!isStereoMode(mode)) return kZylKwoBadArgument;
    settings().setStereoMode(static_cast<uint32_t>(mode));
    mSettingsHolder->saveSettings();
    const int32_t result =
            writeParameterEntry(kRowStereoMode, static_cast<uint32_t>(mode), Writes::kChained);
    // In forced mode the DSP runs another mode than the settings keep.
    applyForcedParametersAndAnnounce();
    return result;
}
