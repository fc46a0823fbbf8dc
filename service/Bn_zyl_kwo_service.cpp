#include "service/Bn_zyl_kwo_service.h"

#include <cstring>

#include "service/process.h"
#include "service/transaction.h"

using android::NO_ERROR;
using android::Parcel;
using android::status_t;

status_t Bn_zyl_kwo_service::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                        uint32_t flags) {
    const Handler handler = handlerFor(code);
    if (handler == nullptr && code != CHECKED_UNKNOWN) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!data.checkInterface(this)) return android::PERMISSION_DENIED;
    if (handler == nullptr) return BBinder::onTransact(code, data, reply, flags);
    return (this->*handler)(data, reply);
}

Bn_zyl_kwo_service::Handler Bn_zyl_kwo_service::handlerFor(uint32_t code) {
    switch (code) {
        case GET_PLATFORM_INFO: return &Bn_zyl_kwo_service::onGetPlatformInfo;
        case GET_ENABLED: return &Bn_zyl_kwo_service::onGetEnabled;
        case SET_ENABLED: return &Bn_zyl_kwo_service::onSetEnabled;
        case GET_STEREO_MODE: return &Bn_zyl_kwo_service::onGetStereoMode;
        case SET_STEREO_MODE: return &Bn_zyl_kwo_service::onSetStereoMode;
        case GET_TUNING: return &Bn_zyl_kwo_service::onGetTuning;
        case SET_TUNING: return &Bn_zyl_kwo_service::onSetTuning;
        case GET_GEQ_GAIN: return &Bn_zyl_kwo_service::onGetGEQGain;
        case SET_GEQ_GAIN: return &Bn_zyl_kwo_service::onSetGEQGain;
        case GET_VERSION_STRING: return &Bn_zyl_kwo_service::onGetVersionString;
        case SET_GEQ_ENABLE: return &Bn_zyl_kwo_service::onSetGEQEnable;
        case GET_GEQ_ENABLE: return &Bn_zyl_kwo_service::onGetGEQEnable;
        case GET_GEQ_GAIN_ALL: return &Bn_zyl_kwo_service::onGetGEQGainAll;
        case SET_GEQ_GAIN_ALL: return &Bn_zyl_kwo_service::onSetGEQGainAll;
        case SET_SPEAKER_ZYLCS_TUNING: return &Bn_zyl_kwo_service::onSetSpeakerZylcsTuning;
        case SET_SECOND_SPEAKER_ZYLCS_TUNING:
            return &Bn_zyl_kwo_service::onSetSecondSpeakerZylcsTuning;
        case GET_SPEAKER_ZYLCS_TUNING_NAME: return &Bn_zyl_kwo_service::onGetSpeakerZylcsTuningName;
        case GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME:
            return &Bn_zyl_kwo_service::onGetSecondSpeakerZylcsTuningName;
        case SET_ACCESSORY_ZYLCS_TUNING: return &Bn_zyl_kwo_service::onSetAccessoryZylcsTuning;
        case GET_ACCESSORY_ZYLCS_TUNING_NAME:
            return &Bn_zyl_kwo_service::onGetAccessoryZylcsTuningName;
        case SET_STEREO_ROOM_ZYLCS_TUNING: return &Bn_zyl_kwo_service::onSetStereoRoomZylcsTuning;
        case GET_STEREO_ROOM_ZYLCS_TUNING_NAME:
            return &Bn_zyl_kwo_service::onGetStereoRoomZylcsTuningName;
        case SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING:
            return &Bn_zyl_kwo_service::onSetMultiChannelRoomZylcsTuning;
        case GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME:
            return &Bn_zyl_kwo_service::onGetMultiChannelRoomZylcsTuningName;
        case SET_LISTENING_TEST_RESULT: return &Bn_zyl_kwo_service::onSetListeningTestResult;
        case GET_LISTENING_TEST_RESULT: return &Bn_zyl_kwo_service::onGetListeningTestResult;
        case RESET_LISTENING_TEST_RESULT: return &Bn_zyl_kwo_service::onResetListeningTestResult;
        case GET_ACTIVE_ROUTE: return &Bn_zyl_kwo_service::onGetActiveRoute;
        case SET_ACTIVE_ROUTE: return &Bn_zyl_kwo_service::onSetActiveRoute;
        case SET_RELOAD_FLAG: return &Bn_zyl_kwo_service::onSetReloadFlag;
        case GET_ROUTE_MASK: return &Bn_zyl_kwo_service::onGetRouteMask;
        case SET_FILE_DESCRIPTOR: return &Bn_zyl_kwo_service::onSetFileDescriptor;
        case FETCH_CACHE_BLOCK: return &Bn_zyl_kwo_service::onFetchCacheBlock;
        case PUSH_CACHE_BLOCK: return &Bn_zyl_kwo_service::onPushCacheBlock;
        case GET_DB_LEVELS: return &Bn_zyl_kwo_service::onGetDbLevels;
        case SET_DB_GAIN: return &Bn_zyl_kwo_service::onSetDbGain;
        default: return nullptr;
    }
}

status_t Bn_zyl_kwo_service::onGetPlatformInfo(const Parcel& data, Parcel* reply) {
    constexpr char kFailure[] = "%s: Error writing platform info to reply";
    PlatformInfoRecord record = {};
    record.size = sizeof(record);
    record.versionMarker = 2 * (sizeof(kServiceVersion) - 1);
    static_assert(sizeof(kServiceVersion) <= sizeof(record.version), "the record has no more room");
    memcpy(record.version, kServiceVersion, sizeof(kServiceVersion));

    const int32_t want = data.readInt32();
    const status_t status = reply->writeInt32(record.size);
    if (status != NO_ERROR || want != 1) return finish(status, kFailure);
    getPlatformInfo(&record);
    return finish(reply->write(&record, sizeof(record)), kFailure);
}

status_t Bn_zyl_kwo_service::onGetEnabled(const Parcel&, Parcel* reply) {
    constexpr char kFailure[] = "%s: error writing KWO enabled info to reply";
    int32_t enabled = 0;
    if (getEnabled(&enabled) != 0) return fail(kFailure);
    return finish(reply->writeInt32(enabled), kFailure);
}

status_t Bn_zyl_kwo_service::onSetEnabled(const Parcel& data, Parcel*) {
    if (setEnabled(data.readInt32()) != 0) {
        return fail("%s: Error reading KWO enabled info to reply");
    }
    return NO_ERROR;
}

status_t Bn_zyl_kwo_service::onGetStereoMode(const Parcel&, Parcel* reply) {
    int32_t mode = 0;
    reply->writeInt32(getStereoMode(&mode));
    return finish(reply->writeInt32(mode), "%s: Error writing KWO get stereo mode reply");
}

status_t Bn_zyl_kwo_service::onSetStereoMode(const Parcel& data, Parcel* reply) {
    return finish(reply->writeInt32(setStereoMode(data.readInt32())),
                  "%s: Error writing KWO set stereo mode info to reply");
}

status_t Bn_zyl_kwo_service::onGetTuning(const Parcel& data, Parcel* reply) {
    int32_t tuning = 0;
    reply->writeInt32(getTuning(data.readInt32(), &tuning));
    return finish(reply->writeInt32(tuning), "%s: error writing KWO getTuning to reply");
}

status_t Bn_zyl_kwo_service::onSetTuning(const Parcel& data, Parcel* reply) {
    const int32_t route = data.readInt32();
    const int32_t tuning = data.readInt32();
    return finish(reply->writeInt32(setTuning(route, tuning)),
                  "%s: error writing KWO setTuning info to reply");
}

status_t Bn_zyl_kwo_service::onGetGEQGain(const Parcel& data, Parcel* reply) {
    uint16_t gain = 0;
    reply->writeInt32(getGEQGain(data.readInt32(), &gain));
    return finish(reply->writeInt32(gain), "%s: Error writing KWO get geq gain reply");
}

status_t Bn_zyl_kwo_service::onSetGEQGain(const Parcel& data, Parcel* reply) {
    const int32_t band = data.readInt32();
    const auto gain = static_cast<uint16_t>(data.readInt32());
    return finish(reply->writeInt32(setGEQGain(band, gain)),
                  "%s: Error writing KWO set geq gain info to reply");
}

status_t Bn_zyl_kwo_service::onGetVersionString(const Parcel&, Parcel* reply) {
    char text[kVersionStringSize] = {};
    int32_t length = sizeof(text);
    getVersionString(text, &length);
    return finishSilently(reply->writeCString(text));
}

status_t Bn_zyl_kwo_service::onSetGEQEnable(const Parcel& data, Parcel* reply) {
    return finish(reply->writeInt32(setGEQEnable(data.readInt32())),
                  "%s: Error writing KWO set geq enable info to reply");
}

status_t Bn_zyl_kwo_service::onGetGEQEnable(const Parcel&, Parcel* reply) {
    int32_t enabled = 0;
    reply->writeInt32(getGEQEnable(&enabled));
    return finish(reply->writeInt32(enabled), "%s: Error writing KWO get geq enable reply");
}

status_t Bn_zyl_kwo_service::onGetGEQGainAll(const Parcel&, Parcel* reply) {
    uint16_t gains[kGEQBandCount] = {};
    reply->writeInt32(getGEQGainAll(gains));
    return finish(writeAll(reply, gains, kGEQBandCount),
                  "%s: Problem writing GEQ gains, failed transaction");
}

status_t Bn_zyl_kwo_service::onSetGEQGainAll(const Parcel& data, Parcel* reply) {
    uint16_t gains[kGEQBandCount];
    for (uint16_t& gain : gains) gain = static_cast<uint16_t>(data.readInt32());
    return finish(reply->writeInt32(setGEQGainAll(gains)),
                  "%s: Error writing KWO set geq geq gain all info to reply");
}

status_t Bn_zyl_kwo_service::onSetListeningTestResult(const Parcel& data, Parcel* reply) {
    float values[4];
    for (float& value : values) value = data.readFloat();
    return finish(
            reply->writeInt32(setListeningTestResult(values[0], values[1], values[2], values[3])),
            "%s: Error writing KWO set listening test result to reply");
}

status_t Bn_zyl_kwo_service::onGetListeningTestResult(const Parcel&, Parcel* reply) {
    float values[4] = {};
    const int32_t result = getListeningTestResult(&values[0], &values[1], &values[2], &values[3]);
    if (reply->writeInt32(result) != NO_ERROR || result != 0) {
        // Speaks of setting, as clients' log filters expect.
        return fail("%s: Error writing KWO set listening test result to reply");
    }
    for (float value : values) {
        const status_t status = reply->writeFloat(value);
        if (status != NO_ERROR) return finishSilently(status);
    }
    return NO_ERROR;
}

status_t Bn_zyl_kwo_service::onResetListeningTestResult(const Parcel&, Parcel* reply) {
    return finish(reply->writeInt32(resetListeningTestResult()),
                  "%s: Error writing KWO reset listening test result to reply");
}

status_t Bn_zyl_kwo_service::onGetActiveRoute(const Parcel& data, Parcel* reply) {
    int32_t route = data.readInt32();
    reply->writeInt32(getActiveRoute(&route));
    return finish(reply->writeInt32(route), "%s: error writing GET_ACTIVE_ROUTE to reply");
}

status_t Bn_zyl_kwo_service::onSetActiveRoute(const Parcel& data, Parcel* reply) {
    reply->writeInt32(setActiveRoute(data.readInt32()));
    return NO_ERROR;
}

status_t Bn_zyl_kwo_service::onSetReloadFlag(const Parcel& data, Parcel* reply) {
    reply->writeInt32(setReloadFlag(data.readInt32() != 0));
    return NO_ERROR;
}

status_t Bn_zyl_kwo_service::onGetRouteMask(const Parcel& data, Parcel* reply) {
    uint32_t mask = 0;
    reply->writeInt32(getRouteMask(data.readInt32(), &mask));
    return finish(reply->writeInt32(static_cast<int32_t>(mask)),
                  "%s: error writing KWO get route mask to reply");
}

status_t Bn_zyl_kwo_service::onSetFileDescriptor(const Parcel& data, Parcel* reply) {
    // The parcel owns the descriptor and closes it; a mapping outlives it.
    const int fd = data.readFileDescriptor();
    const int32_t length = data.readInt32();
    return finish(reply->writeInt32(setFileDescriptor(fd, length)),
                  "%s: error writing KWO set_file_descriptor info to reply");
}

status_t Bn_zyl_kwo_service::onFetchCacheBlock(const Parcel& data, Parcel* reply) {
    return finish(reply->writeInt32(fetchCacheBlock(data.readInt32())),
                  "%s: error writing into reply");
}

status_t Bn_zyl_kwo_service::onPushCacheBlock(const Parcel& data, Parcel* reply) {
    return finish(reply->writeInt32(pushCacheBlock(data.readInt32())),
                  "%s: error writing into reply");
}

status_t Bn_zyl_kwo_service::onGetDbLevels(const Parcel&, Parcel* reply) {
    int32_t levels[kDbLevelCount] = {};
    reply->writeInt32(getDbLevels(levels));
    return finish(writeAll(reply, levels, kDbLevelCount),
                  "%s: error writing get dB levels, failed transaction");
}

status_t Bn_zyl_kwo_service::onSetDbGain(const Parcel& data, Parcel* reply) {
    int32_t levels[kDbLevelCount];
    for (int32_t& level : levels) level = data.readInt32();
    return finish(reply->writeInt32(setDbGain(levels)),
                  "%s: Error writing KWO set db gain info to reply");
}
