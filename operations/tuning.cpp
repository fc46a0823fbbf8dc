#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::getTuning(int32_t route, int32_t* tuning) {
    if (!mHasTuningNumbers) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!isRoute(route)) return kZylKwoBadArgument;
    *tuning = static_cast<int32_t>(settings().getTuning(static_cast<zylRoute>(route)));
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setTuning(int32_t route, int32_t tuning) {
    if (!mHasTuningNumbers) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!isRoute(route) || tuning < 0) return kZylKwoBadArgument;
    const auto zyl = static_cast<zylRoute>(route);
    const auto block = static_cast<CacheBlockType>(route);
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    const uint32_t previous = settings().getTuning(zyl);
    settings().setTuning(zyl, static_cast<uint32_t>(tuning));
    const int32_t loaded = loadBlock(ctrl, block, true);
    if (loaded != 0) {
        settings().setTuning(zyl, previous);
        return loaded;
    }
    mSettingsHolder->saveSettings();
    // The upload announces itself. Unlike most others, this operation announces nothing besides, as
    // devices have it.
    if (uploadBlock(ctrl, block) != 0) return kZylKwoUploadFailed;
    applyForcedParameters();
    return kZylKwoOk;
}
