#include <algorithm>
#include <cstring>

#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::setGEQEnable(int32_t enabled) {
    if (mSettingsHolder == nullptr) return kZylKwoNotAvailable;
    const ScopedLock lock(gServiceLock);
    // With the effect off the request is dropped without a word, as devices have it.
    if (settings().getEnabled() == 0) return kZylKwoOk;
    settings().setGEQEnable(static_cast<uint32_t>(enabled));
    mSettingsHolder->saveSettings();
    const uint32_t size = g_parameterTable[kRowGEQEnable].size;
    ParameterBuffer buffer(size, static_cast<uint32_t>(enabled));
    // Speaker, bluetooth, lineout: the order of the gains is another one, see sendGains. Devices
    // have both orders. They show when the DSP refuses, as the blocks behind are then left out.
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

// Bluetooth, speaker, lineout: the switch above has another order.
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
    // While the equaliser is off this keeps nothing, and logs that. The DSP gets the gain all the
    // same.
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
    // All bands go in one write, packed without gaps. Where a row is wider than a gain, the write
    // is longer than the gains, and zeros follow them.
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
