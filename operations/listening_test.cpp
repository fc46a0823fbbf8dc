// The listening test, Maldor only.

#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::setListeningTestResult(float a, float b, float c, float d) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applyListeningTest(a, b, c, d);
    if (result == 0) result = reloadLineoutAndBluetooth();
    if (result != 0) return result;
    mMaldor->setListeningTestValues(a, b, c, d);
    mMaldor->SaveStruct();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getListeningTestResult(float* a, float* b, float* c, float* d) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    mMaldor->getListeningTestValues(a, b, c, d);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::resetListeningTestResult() {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ScopedLock turn(gRecordLock);
    const ScopedLock lock(gServiceLock);
    const uint32_t size = g_parameterTable[kRowListeningTest].size;
    ParameterBuffer buffer(size);
    int32_t result = 0;
    for (CacheBlockType block : {kBlockLineout, kBlockBluetooth}) {
        result = sendToBlocks(buffer, kRowListeningTest, size, {block});
        // Forgotten even when the DSP refused: the next load of the block gives it the record
        // without the test.
        mMaldor->resetListeningTest(static_cast<zylRoute>(block));
        if (result != 0) break;
    }
    mMaldor->saveResets();
    if (result == 0) applyForcedParametersAndAnnounce();
    return kZylKwoOk;
}
