// How tuning data and listening tests change the records of the Maldor generation.

#include <fcntl.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "driver/data_directory.h"
#include "driver/descriptor.h"
#include "driver/pipeline.h"
#include "settings/replace_file.h"
#include "settings/settings_struct_maldor.h"

namespace {

constexpr uint32_t kQuorinPipelineSize = 61700;

// The service itself writes one field of a record, which says whether a listening test is part of
// it.
constexpr size_t kListeningTestStateOffset = 448;
constexpr uint32_t kListeningTestApplied = 3;
constexpr uint32_t kNoListeningTestApplied = 0;

void setListeningTestState(void* record, uint32_t state) {
    memcpy(static_cast<uint8_t*>(record) + kListeningTestStateOffset, &state, sizeof(state));
}

zylKwoErrors errorFromLibrary(int32_t result) {
    switch (result) {
        case 0: return kZylKwoOk;
        case -2: return kZylKwoBadArgument;
        case -3: return kZylKwoNoMemory;
        case -4: return kZylKwoUnsupported;
        case -5: return kZylKwoConversionFailed5;
        case -6: return kZylKwoConversionFailed6;
        case -7: return kZylKwoConversionFailed7;
        case -8: return kZylKwoConversionFailed8;
        case -9: return kZylKwoConversionFailed9;
        default: return kZylKwoConversionFailed;
    }
}

// The library's mode arguments. Bluetooth's accessories have one of their own.
constexpr int kMode = 2;
constexpr int kBluetoothAccessoryMode = 3;

}  // namespace

zylKwoErrors zylSettingsStructMaldor::loadQuorinPipeline(const std::string& path, Record& record) {
    // The library is not given a size. It takes a record to be as large as the pipeline that it
    // reports; of one beyond all measure the size is told here as 0.
    const uint32_t reported = reportedPipelineSize();
    if (reported == 0 || reported > kQuorinPipelineSize) {
        logError("zylKwoErrors", "loadQuorinPipeline(std::string, zylZylcsQuorinPipeLine **)",
                 "a record holds %u bytes, the library's pipeline has %u (file:%s)",
                 kQuorinPipelineSize, reported, path.c_str());
        return kZylKwoTuningTooShort;
    }
    if (record.get() == nullptr) return kZylKwoNoMemory;
    const Descriptor file = openFile(path.c_str(), O_RDONLY);
    if (!file.isOpen()) return kZylKwoTuningNotLoadable;
    return readFully(file, record.get(), kQuorinPipelineSize) ? kZylKwoOk : kZylKwoTuningTooShort;
}

zylKwoErrors zylSettingsStructMaldor::saveQuorinPipeline(const std::string& file,
                                                         const Record& record, DirectorySync sync) {
    if (replaceFile(mRecordDirectory, file.c_str(), record.get(), kQuorinPipelineSize, sync) !=
        ReplaceResult::kNotWritten) {
        return kZylKwoOk;
    }
    logError("zylKwoErrors", "saveQuorinPipeline(std::string, zylZylcsQuorinPipeLine *)",
             "Error writing tuning file ...(file:" ZYL_DATA_DIRECTORY "%s)", file.c_str());
    return kZylKwoTuningNotLoadable;
}

zylKwoErrors zylSettingsStructMaldor::modifyRecord(const std::string& file, const Modify& modify,
                                                   DirectorySync sync) {
    const std::string path = ZYL_DATA_DIRECTORY + file;
    Record record(kQuorinPipelineSize, std::nothrow);
    zylKwoErrors result = loadQuorinPipeline(path, record);
    if (result != kZylKwoOk) return result;
    result = errorFromLibrary(modify(reinterpret_cast<_zylZylcsQuorinPipeLine*>(record.get())));
    if (result != kZylKwoOk) return result;
    return saveQuorinPipeline(file, record, sync);
}

zylKwoErrors zylSettingsStructMaldor::modifyLineoutAndBluetooth(const ModifyAtRate& modify) {
    const zylKwoErrors result = modifyRecord(getTuningFileName(kRouteLineout, true),
                                             [&modify](_zylZylcsQuorinPipeLine* record) {
                                                 return modify(kSampleRate48000, record);
                                             });
    if (result != kZylKwoOk) return result;
    return modifyRecord(getTuningFileName(kRouteBluetooth, true),
                        [&modify](_zylZylcsQuorinPipeLine* record) {
                            return modify(kSampleRate44100, record);
                        });
}

zylKwoErrors zylSettingsStructMaldor::applyAccessoryZylcsTuning(zylRoute route,
                                                                const ZylcsData& zylcs) {
    if (route != kRouteLineout && route != kRouteBluetooth) return kZylKwoBadArgument;
    const bool bluetooth = route == kRouteBluetooth;
    const auto modify = [&](_zylZylcsQuorinPipeLine* record) {
        const int32_t result = ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
                bluetooth ? kBluetoothAccessoryMode : kMode,
                bluetooth ? kSampleRate44100 : kSampleRate48000, zylcs.bytes, zylcs.size,
                zylcs.work, zylcs.workSize, record);
        if (result != 0 || mImage.listeningTestSet != 1) return result;
        // When the test cannot be applied again, the record has the tuning and no test.
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
    mImage.listeningTestSet = 0;
    std::fill(std::begin(mImage.listeningTest), std::end(mImage.listeningTest), kNoListeningTest);
    const auto modify = [](_zylZylcsQuorinPipeLine* record) {
        setListeningTestState(record, kNoListeningTestApplied);
        return 0;
    };
    modifyRecord(getTuningFileName(route, true), modify, DirectorySync::kLater);
}
