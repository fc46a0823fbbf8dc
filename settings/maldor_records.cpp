// Folding tuning data into the saved pipeline records of the Maldor generation.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "driver/pipeline.h"
#include "settings/files.h"
#include "settings/settings_struct_maldor.h"

namespace {

constexpr char kRecordDirectory[] = "/data/misc/zyl/";
constexpr uint32_t kQuorinPipelineSize = 61700;

// The one field of a record that is this service's: whether a listening test is part of it.
constexpr size_t kListeningTestStateOffset = 448;
constexpr uint32_t kListeningTestApplied = 3;
constexpr uint32_t kNoListeningTestApplied = 0;

void setListeningTestState(void* record, uint32_t state) {
    memcpy(static_cast<uint8_t*>(record) + kListeningTestStateOffset, &state, sizeof(state));
}

zylKwoErrors errorFromLibrary(int32_t result) {
    switch (result) {
        case 0: return kSettingsOk;
        case -2: return kSettingsBadArgument;
        case -3: return kSettingsNoMemory;
        case -4: return kSettingsUnsupported;
        case -5: return kSettingsConversionFailed5;
        case -6: return kSettingsConversionFailed6;
        case -7: return kSettingsConversionFailed7;
        case -8: return kSettingsConversionFailed8;
        case -9: return kSettingsConversionFailed9;
        default: return kSettingsConversionFailed;
    }
}

// What the library calls its mode; bluetooth accessories have one of their own.
constexpr int kMode = 2;
constexpr int kBluetoothAccessoryMode = 3;

}  // namespace

zylKwoErrors zylSettingsStructMaldor::loadQuorinPipeline(const std::string& path, Record* record) {
    // Never smaller than what the library, which gets no size, takes for a pipeline.
    const uint32_t size = std::max(kQuorinPipelineSize, quorinPipelineSize());
    record->reset(new (std::nothrow) uint8_t[size]());
    if (*record == nullptr) return kSettingsNoMemory;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "rbe"), fclose);
    if (file == nullptr) return kSettingsFileFailed;
    const size_t read = fread(record->get(), 1, kQuorinPipelineSize, file.get());
    return read == kQuorinPipelineSize ? kSettingsOk : kSettingsFileTooShort;
}

zylKwoErrors zylSettingsStructMaldor::saveQuorinPipeline(const std::string& path,
                                                         const Record& record) {
    if (replaceFile(path.c_str(), record.get(), kQuorinPipelineSize) !=
        ReplaceResult::kNotWritten) {
        return kSettingsOk;
    }
    logError("zylKwoErrors", "saveQuorinPipeline(std::string, zylZylcsQuorinPipeLine *)",
             "Error writing tuning file ...(file:%s)", path.c_str());
    return kSettingsFileFailed;
}

zylKwoErrors zylSettingsStructMaldor::modifyRecord(const std::string& name, const Modify& modify) {
    const std::lock_guard<std::mutex> lock(mRecordLock);
    const std::string path = kRecordDirectory + name;
    Record record;
    zylKwoErrors result = loadQuorinPipeline(path, &record);
    if (result != kSettingsOk) return result;
    result = errorFromLibrary(modify(reinterpret_cast<_zylZylcsQuorinPipeLine*>(record.get())));
    if (result != kSettingsOk) return result;
    return saveQuorinPipeline(path, record);
}

zylKwoErrors zylSettingsStructMaldor::modifyLineoutAndBluetooth(const ModifyAtRate& modify) {
    const zylKwoErrors result = modifyRecord(getTuningFileName(kRouteLineout, true),
                                             [&modify](_zylZylcsQuorinPipeLine* record) {
                                                 return modify(kSampleRate48000, record);
                                             });
    if (result != kSettingsOk) return result;
    return modifyRecord(getTuningFileName(kRouteBluetooth, true),
                        [&modify](_zylZylcsQuorinPipeLine* record) {
                            return modify(kSampleRate44100, record);
                        });
}

zylKwoErrors zylSettingsStructMaldor::applyAccessoryZylcsTuning(zylRoute route,
                                                                const ZylcsData& zylcs) {
    if (route != kRouteLineout && route != kRouteBluetooth) return kSettingsBadArgument;
    const bool bluetooth = route == kRouteBluetooth;
    const auto modify = [&](_zylZylcsQuorinPipeLine* record) {
        const int32_t result = ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
                bluetooth ? kBluetoothAccessoryMode : kMode,
                bluetooth ? kSampleRate44100 : kSampleRate48000, zylcs.bytes, zylcs.size,
                zylcs.work, zylcs.workSize, record);
        if (result != 0 || mImage.listeningTestSet != 1) return result;
        // A test that cannot be applied again is lost from the record, but not the tuning.
        const float* test = mImage.listeningTest;
        const int32_t tested = ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(
                test[0], test[1], test[2], test[3], record);
        setListeningTestState(record,
                              tested == 0 ? kListeningTestApplied : kNoListeningTestApplied);
        return result;
    };
    return modifyRecord(getTuningFileName(route, true), modify);
}

zylKwoErrors zylSettingsStructMaldor::applySpeakerZylcsTuning(bool on, const ZylcsData& zylcs) {
    const auto modify = [&zylcs](_zylZylcsQuorinPipeLine* record) {
        int unused = 0;
        return ZYL_Convert_API_ModifyQuorinPipelineWithSpeakerZylcsTuning(
                unused, kSampleRate48000, zylcs.bytes, zylcs.size, zylcs.work, zylcs.workSize,
                record);
    };
    return modifyRecord(getTuningFileName(kRouteSpeaker, on), modify);
}

zylKwoErrors zylSettingsStructMaldor::applyZylcsStereoRooms(int32_t route, const ZylcsData& zylcs) {
    const auto update = route == kRouteLineout ? kStereoRoomForLineout : kStereoRoomForBluetooth;
    return modifyLineoutAndBluetooth([&](_zylZylcsQuorinSampleRate rate,
                                         _zylZylcsQuorinPipeLine* record) {
        return ZYL_Convert_API_ModifyQuorinPipelineWithZylcsStereoRooms(
                kMode, rate, update, zylcs.bytes, zylcs.size, zylcs.work, zylcs.workSize, record);
    });
}

zylKwoErrors zylSettingsStructMaldor::applyZylcsMultiChannelRoom(const ZylcsData& zylcs) {
    return modifyLineoutAndBluetooth(
            [&](_zylZylcsQuorinSampleRate rate, _zylZylcsQuorinPipeLine* record) {
                return ZYL_Convert_API_ModifyQuorinPipelineWithZylcsMultiChannelRoom(
                        kMode, rate, zylcs.bytes, zylcs.size, zylcs.work, zylcs.workSize, record);
            });
}

zylKwoErrors zylSettingsStructMaldor::applyListeningTest(float a, float b, float c, float d) {
    return modifyLineoutAndBluetooth(
            [=](_zylZylcsQuorinSampleRate /*rate*/, _zylZylcsQuorinPipeLine* record) {
                const int32_t result =
                        ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(a, b, c, d, record);
                if (result == 0) setListeningTestState(record, kListeningTestApplied);
                return result;
            });
}

void zylSettingsStructMaldor::resetListeningTest(zylRoute route) {
    // At no moment a test of these values: tuning data may be applied beside this.
    mImage.listeningTestSet = 0;
    std::fill(std::begin(mImage.listeningTest), std::end(mImage.listeningTest), kNoListeningTest);
    modifyRecord(getTuningFileName(route, true), [](_zylZylcsQuorinPipeLine* record) {
        setListeningTestState(record, kNoListeningTestApplied);
        return 0;
    });
}
