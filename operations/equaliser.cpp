#include <algorithm>
#include <cstring>

#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::setGEQEnable(int32_t enabled) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    // Silent: with the effect off there is no equaliser to switch.
    if (settings().getEnabled() == 0) return kZylKwoOk;
    settings().setGEQEnable(static_cast<uint32_t>(enabled));
    mSettingsHolder->saveSettings();
    const uint32_t size = g_parameterTable[kRowGEQEnable].size;
    ParameterBuffer buffer(size, static_cast<uint32_t>(enabled));
    // The blocks' order is not the gains'; devices have both so.
    const int32_t result = sendToBlocks(buffer, kRowGEQEnable, size,
                                        {kBlockSpeaker, kBlockBluetooth, kBlockLineout});
    if (result == 0) applyForcedParametersAndAnnounce();
    return result;
}

int32_t zyl_kwo_service::getGEQEnable(int32_t* enabled) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    *enabled = settings().getEnabled() != 0 ? static_cast<int32_t>(settings().getGEQEnable()) : 0;
    return kZylKwoOk;
}

int32_t zyl_kwo_service::sendGains(ParameterBuffer& buffer, int32_t row, uint32_t size) {
    const int32_t result =
            sendToBlocks(buffer, row, size, {kBlockBluetooth, kBlockSpeaker, kBlockLineout});
    if (result == 0) applyForcedParametersAndAnnounce();
    return result;
}

int32_t zyl_kwo_service::setGEQGain(int32_t band, uint16_t gain) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!isGEQBand(band) || !isGEQGain(gain)) return kZylKwoBadArgument;
    // Not kept while the equaliser is off, already logged; the DSP hears of it all the same.
    settings().setGEQGain(static_cast<uint32_t>(band), gain);
    mSettingsHolder->saveSettings();
    const int32_t row = kRowGEQGain + band;
    const uint32_t size = g_parameterTable[row].size;
    ParameterBuffer buffer(size, gain);
    return sendGains(buffer, row, size);
}

int32_t zyl_kwo_service::getGEQGain(int32_t band, uint16_t* gain) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!isGEQBand(band)) return kZylKwoBadArgument;
    return settings().getGEQGain(static_cast<uint32_t>(band), *gain);
}

int32_t zyl_kwo_service::setGEQGainAll(const uint16_t gains[kGEQBandCount]) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    if (!std::all_of(gains, gains + kGEQBandCount, isGEQGain)) return kZylKwoBadArgument;
    for (uint32_t band = 0; band < kGEQBandCount; ++band) {
        const int32_t result = settings().setGEQGain(band, gains[band]);
        if (result != 0) return result;
    }
    mSettingsHolder->saveSettings();
    // All bands in one write, packed as their rows lie in the pipeline; rows wider than a gain
    // leave the rest of the write zero.
    constexpr size_t kGainsSize = kGEQBandCount * sizeof(*gains);
    const uint32_t size = kGEQBandCount * g_parameterTable[kRowGEQGain].size;
    ParameterBuffer buffer(size);
    memcpy(buffer.payload(), gains, std::min<size_t>(size, kGainsSize));
    return sendGains(buffer, kRowGEQGain, size);
}

int32_t zyl_kwo_service::getGEQGainAll(uint16_t gains[kGEQBandCount]) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    int32_t result = kZylKwoOk;
    for (uint32_t band = 0; band < kGEQBandCount && result == 0; ++band) {
        const ScopedLock lock(gServiceLock);
        result = settings().getGEQGain(band, gains[band]);
    }
    return result;
}
