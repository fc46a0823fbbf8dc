#include "settings/settings_holder.h"

#include "driver/parameter_table.h"

namespace {

int64_t offsetOf(int32_t row) {
    return g_parameterTable[row].offset;
}

void putWord(zylQuorinPipelineCtrl& ctrl, int64_t offset, uint32_t word) {
    ctrl.put(offset, &word, sizeof(word));
}

}  // namespace

zylSettingsHolder::zylSettingsHolder(const Generation& generation)
    : mGeneration(generation), mSettings(generation.make()) {}

int32_t zylSettingsHolder::applySettingsToPipeline(zylQuorinPipelineCtrl& ctrl,
                                                   int32_t block) const {
    if (block != 0) applyEffect(ctrl);
    applyEqualiser(ctrl);
    return 0;
}

void zylSettingsHolder::applyEffect(zylQuorinPipelineCtrl& ctrl) const {
    putWord(ctrl, offsetOf(kRowStereoMode), mSettings->getStereoMode());

    const bool on = mSettings->getEnabled() != 0;
    const uint32_t firstPair = on ? 0 : kEffectOffFirstPair;
    const int64_t second = offsetOf(kRowEffectSecond);
    const int64_t secondSize = g_parameterTable[kRowEffectSecond].size;
    putWord(ctrl, offsetOf(kRowEffectFirst), firstPair);
    putWord(ctrl, second, firstPair);
    putWord(ctrl, second + secondSize, firstPair);
    putWord(ctrl, second + 2 * secondSize, firstPair);

    // Unlike above, the last two places are counted from the third row in steps of the fourth row's
    // size. Devices have it so.
    const uint32_t secondPair = on ? 0 : kEffectOffSecondPair;
    const int64_t third = offsetOf(kRowEffectThird);
    const int64_t fourthSize = g_parameterTable[kRowEffectFourth].size;
    putWord(ctrl, third, secondPair);
    putWord(ctrl, offsetOf(kRowEffectFourth), secondPair);
    putWord(ctrl, third + fourthSize, secondPair);
    putWord(ctrl, third + 2 * fourthSize, secondPair);
}

void zylSettingsHolder::applyEqualiser(zylQuorinPipelineCtrl& ctrl) const {
    putWord(ctrl, offsetOf(kRowGEQEnable), mSettings->getGEQEnable());
    for (uint32_t band = 0; band < kGEQBandCount; ++band) {
        uint16_t gain = 0;
        mSettings->getGEQGain(band, gain);
        ctrl.put(offsetOf(kRowGEQGain + static_cast<int32_t>(band)), &gain, sizeof(gain));
    }
}
