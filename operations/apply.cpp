// The apply path, by which settings reach the DSP.

#include "service/zyl_kwo_service.h"

namespace {

constexpr uint32_t kForcedStereoMode = 3;

}  // namespace

int32_t zyl_kwo_service::loadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block, bool on) {
    const std::string file = settings().getTuningFileName(static_cast<zylRoute>(block), on);
    return mDriver.LoadParamBlock(ctrl, block, file);
}

int32_t zyl_kwo_service::uploadBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) {
    mSettingsHolder->applySettingsToPipeline(ctrl, block);
    return mDriver.sendParamBlock(ctrl, block);
}

int32_t zyl_kwo_service::rebuildBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) {
    const int32_t result = loadBlock(ctrl, block, settings().getEnabled() != 0);
    if (result == 0) uploadBlock(ctrl, block);
    return result;
}

int32_t zyl_kwo_service::reloadBlocks(std::initializer_list<CacheBlockType> blocks, bool on) {
    for (CacheBlockType block : blocks) {
        zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
        if (loadBlock(ctrl, block, on) != 0) return kZylKwoTuningNotLoadable;
        if (uploadBlock(ctrl, block) != 0) return kZylKwoUploadFailed;
        applyForcedParametersAndAnnounce();
    }
    return kZylKwoOk;
}

int32_t zyl_kwo_service::rebuildBlockZero() {
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    return rebuildBlock(ctrl, kBlockSpeaker);
}

int32_t zyl_kwo_service::rebuildPipeline(uint32_t forced) {
    const ScopedLock lock(gServiceLock);
    // Set before any block is loaded, so that this rebuild already ends in the new mode.
    mForcedMode = forced;
    if (mSettingsHolder == nullptr) return kZylKwoOk;
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    for (CacheBlockType block : {kBlockSpeaker, kBlockLineout, kBlockBluetooth}) {
        // A block without its tuning file, already logged, stays as the DSP has it.
        rebuildBlock(ctrl, block);
    }
    applyForcedParametersAndAnnounce();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setReloadFlag(bool forced) {
    return rebuildPipeline(forced);
}

int32_t zyl_kwo_service::sendToBlocks(ParameterBuffer& buffer, int32_t row, uint32_t size,
                                      std::initializer_list<CacheBlockType> blocks) {
    const ParameterTableEntry& entry = g_parameterTable[row];
    int32_t result = 0;
    for (CacheBlockType block : blocks) {
        result = mDriver.sendParam(buffer, entry.id, size, entry.offset, block);
        if (result != 0) break;
    }
    return result;
}

int32_t zyl_kwo_service::writeParameterEntry(int32_t row, uint32_t value, Writes writes) {
    const uint32_t size = g_parameterTable[row].size;
    ParameterBuffer buffer(size, value);
    if (writes == Writes::kChained) {
        return sendToBlocks(buffer, row, size, {kBlockLineout, kBlockBluetooth});
    }
    sendToBlocks(buffer, row, size, {kBlockLineout});
    return sendToBlocks(buffer, row, size, {kBlockBluetooth});
}

int32_t zyl_kwo_service::clearParameterEntries(int32_t first, int32_t end) {
    int32_t result = 0;
    for (int32_t row = first; row < end && result == 0; ++row) {
        result = writeParameterEntry(row, 0, Writes::kChained);
    }
    return result;
}

int32_t zyl_kwo_service::applyForcedParameters() {
    if (mForcedMode == 0) return 0;
    // A run ends at the first write that fails; the next one is made all the same. Only the last
    // one's result is returned.
    writeParameterEntry(kRowStereoMode, kForcedStereoMode, Writes::kChained);
    clearParameterEntries(kRowForcedFirst, kRowForcedSecond);
    return clearParameterEntries(kRowForcedSecond, kRowForcedEnd);
}

void zyl_kwo_service::applyForcedParametersAndAnnounce() {
    applyForcedParameters();
    mDriver.notifyNewParams();
}
