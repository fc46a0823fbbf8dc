#include "service/Bn_zyl_kwo_service.h"

#include <cstring>

#include "service/transaction.h"

using android::NO_ERROR;
using android::Parcel;
using android::status_t;

namespace {

// In bytes. The base class reads the platform's own requests (a dump, a shell command) string by
// string, for as long as there is something to read. None of them needs more than this, or ends in
// less than a word, which would be there to read for ever.
constexpr size_t kLargestPlatformRequest = 1024;
bool isPlatformRequest(const Parcel& data) {
    return data.dataSize() <= kLargestPlatformRequest && data.dataSize() % sizeof(int32_t) == 0;
}

status_t getPlatformInfo(const Transaction& call) {
    constexpr char kFailure[] = "%s: Error writing platform info to reply";
    PlatformInfoRecord record = {};
    record.size = sizeof(record);
    record.versionMarker = 2 * (sizeof(kServiceVersion) - 1);
    static_assert(sizeof(kServiceVersion) <= sizeof(record.version), "the record has no more room");
    memcpy(record.version, kServiceVersion, sizeof(kServiceVersion));

    const int32_t want = call.data.readInt32();
    const status_t status = call.reply->writeInt32(record.size);
    if (status != NO_ERROR || want != 1) return finish(status, kFailure);
    call.service.getPlatformInfo(&record);
    return finish(call.reply->write(&record, sizeof(record)), kFailure);
}

status_t getEnabled(const Transaction& call) {
    constexpr char kFailure[] = "%s: error writing KWO enabled info to reply";
    int32_t enabled = 0;
    if (call.service.getEnabled(&enabled) != 0) return fail(kFailure);
    return finish(call.reply->writeInt32(enabled), kFailure);
}

status_t setEnabled(const Transaction& call) {
    if (call.service.setEnabled(call.data.readInt32()) != 0) {
        return fail("%s: Error reading KWO enabled info to reply");
    }
    return NO_ERROR;
}

status_t getStereoMode(const Transaction& call) {
    int32_t mode = 0;
    const int32_t result = call.service.getStereoMode(&mode);
    return finish(writeWithResult(call.reply, result, &mode),
                  "%s: Error writing KWO get stereo mode reply");
}

status_t setStereoMode(const Transaction& call) {
    return finish(call.reply->writeInt32(call.service.setStereoMode(call.data.readInt32())),
                  "%s: Error writing KWO set stereo mode info to reply");
}

status_t getTuning(const Transaction& call) {
    int32_t tuning = 0;
    const int32_t result = call.service.getTuning(call.data.readInt32(), &tuning);
    return finish(writeWithResult(call.reply, result, &tuning),
                  "%s: error writing KWO getTuning to reply");
}

status_t setTuning(const Transaction& call) {
    const int32_t route = call.data.readInt32();
    const int32_t tuning = call.data.readInt32();
    return finish(call.reply->writeInt32(call.service.setTuning(route, tuning)),
                  "%s: error writing KWO setTuning info to reply");
}

status_t getGEQGain(const Transaction& call) {
    uint16_t gain = 0;
    const int32_t result = call.service.getGEQGain(call.data.readInt32(), &gain);
    return finish(writeWithResult(call.reply, result, &gain),
                  "%s: Error writing KWO get geq gain reply");
}

status_t setGEQGain(const Transaction& call) {
    const int32_t band = call.data.readInt32();
    const auto gain = static_cast<uint16_t>(call.data.readInt32());
    return finish(call.reply->writeInt32(call.service.setGEQGain(band, gain)),
                  "%s: Error writing KWO set geq gain info to reply");
}

status_t getVersionString(const Transaction& call) {
    char text[kVersionStringSize] = {};
    int32_t length = sizeof(text);
    call.service.getVersionString(text, &length);
    return finishSilently(call.reply->writeCString(text));
}

status_t setGEQEnable(const Transaction& call) {
    return finish(call.reply->writeInt32(call.service.setGEQEnable(call.data.readInt32())),
                  "%s: Error writing KWO set geq enable info to reply");
}

status_t getGEQEnable(const Transaction& call) {
    int32_t enabled = 0;
    const int32_t result = call.service.getGEQEnable(&enabled);
    return finish(writeWithResult(call.reply, result, &enabled),
                  "%s: Error writing KWO get geq enable reply");
}

status_t getGEQGainAll(const Transaction& call) {
    uint16_t gains[kGEQBandCount] = {};
    const int32_t result = call.service.getGEQGainAll(gains);
    return finish(writeWithResult(call.reply, result, gains, kGEQBandCount),
                  "%s: Problem writing GEQ gains, failed transaction");
}

status_t setGEQGainAll(const Transaction& call) {
    uint16_t gains[kGEQBandCount];
    for (uint16_t& gain : gains) gain = static_cast<uint16_t>(call.data.readInt32());
    return finish(call.reply->writeInt32(call.service.setGEQGainAll(gains)),
                  "%s: Error writing KWO set geq geq gain all info to reply");
}

status_t setListeningTestResult(const Transaction& call) {
    float values[4];
    for (float& value : values) value = call.data.readFloat();
    return finish(call.reply->writeInt32(call.service.setListeningTestResult(values[0], values[1],
                                                                             values[2], values[3])),
                  "%s: Error writing KWO set listening test result to reply");
}

status_t getListeningTestResult(const Transaction& call) {
    float values[4] = {};
    const int32_t result =
            call.service.getListeningTestResult(&values[0], &values[1], &values[2], &values[3]);
    if (call.reply->writeInt32(result) != NO_ERROR || result != 0) {
        // setListeningTestResult logs the same text. It is fixed, see docs/operating.md.
        return fail("%s: Error writing KWO set listening test result to reply");
    }
    for (float value : values) {
        const status_t status = call.reply->writeFloat(value);
        if (status != NO_ERROR) return finishSilently(status);
    }
    return NO_ERROR;
}

status_t resetListeningTestResult(const Transaction& call) {
    return finish(call.reply->writeInt32(call.service.resetListeningTestResult()),
                  "%s: Error writing KWO reset listening test result to reply");
}

status_t getActiveRoute(const Transaction& call) {
    int32_t route = call.data.readInt32();
    const int32_t result = call.service.getActiveRoute(&route);
    return finish(writeWithResult(call.reply, result, &route),
                  "%s: error writing GET_ACTIVE_ROUTE to reply");
}

status_t setActiveRoute(const Transaction& call) {
    call.reply->writeInt32(call.service.setActiveRoute(call.data.readInt32()));
    return NO_ERROR;
}

status_t setReloadFlag(const Transaction& call) {
    call.reply->writeInt32(call.service.setReloadFlag(call.data.readInt32() != 0));
    return NO_ERROR;
}

status_t getRouteMask(const Transaction& call) {
    uint32_t mask = 0;
    const int32_t result = call.service.getRouteMask(call.data.readInt32(), &mask);
    return finish(writeWithResult(call.reply, result, &mask),
                  "%s: error writing KWO get route mask to reply");
}

status_t setFileDescriptor(const Transaction& call) {
    // The parcel owns the descriptor and closes it. A mapping of it stays.
    const int fd = call.data.readFileDescriptor();
    const int32_t length = call.data.readInt32();
    return finish(call.reply->writeInt32(call.service.setFileDescriptor(fd, length)),
                  "%s: error writing KWO set_file_descriptor info to reply");
}

status_t fetchCacheBlock(const Transaction& call) {
    return finish(call.reply->writeInt32(call.service.fetchCacheBlock(call.data.readInt32())),
                  "%s: error writing into reply");
}

status_t pushCacheBlock(const Transaction& call) {
    return finish(call.reply->writeInt32(call.service.pushCacheBlock(call.data.readInt32())),
                  "%s: error writing into reply");
}

status_t getDbLevels(const Transaction& call) {
    int32_t levels[kDbLevelCount] = {};
    const int32_t result = call.service.getDbLevels(levels);
    return finish(writeWithResult(call.reply, result, levels, kDbLevelCount),
                  "%s: error writing get dB levels, failed transaction");
}

status_t setDbGain(const Transaction& call) {
    int32_t levels[kDbLevelCount];
    for (int32_t& level : levels) level = call.data.readInt32();
    return finish(call.reply->writeInt32(call.service.setDbGain(levels)),
                  "%s: Error writing KWO set db gain info to reply");
}

Handler handlerFor(uint32_t code) {
    using Code = Izyl_kwo_service::Code;
    switch (code) {
        case Code::GET_PLATFORM_INFO: return getPlatformInfo;
        case Code::GET_ENABLED: return getEnabled;
        case Code::SET_ENABLED: return setEnabled;
        case Code::GET_STEREO_MODE: return getStereoMode;
        case Code::SET_STEREO_MODE: return setStereoMode;
        case Code::GET_TUNING: return getTuning;
        case Code::SET_TUNING: return setTuning;
        case Code::GET_GEQ_GAIN: return getGEQGain;
        case Code::SET_GEQ_GAIN: return setGEQGain;
        case Code::GET_VERSION_STRING: return getVersionString;
        case Code::SET_GEQ_ENABLE: return setGEQEnable;
        case Code::GET_GEQ_ENABLE: return getGEQEnable;
        case Code::GET_GEQ_GAIN_ALL: return getGEQGainAll;
        case Code::SET_GEQ_GAIN_ALL: return setGEQGainAll;
        case Code::SET_LISTENING_TEST_RESULT: return setListeningTestResult;
        case Code::GET_LISTENING_TEST_RESULT: return getListeningTestResult;
        case Code::RESET_LISTENING_TEST_RESULT: return resetListeningTestResult;
        case Code::GET_ACTIVE_ROUTE: return getActiveRoute;
        case Code::SET_ACTIVE_ROUTE: return setActiveRoute;
        case Code::SET_RELOAD_FLAG: return setReloadFlag;
        case Code::GET_ROUTE_MASK: return getRouteMask;
        case Code::SET_FILE_DESCRIPTOR: return setFileDescriptor;
        case Code::FETCH_CACHE_BLOCK: return fetchCacheBlock;
        case Code::PUSH_CACHE_BLOCK: return pushCacheBlock;
        case Code::GET_DB_LEVELS: return getDbLevels;
        case Code::SET_DB_GAIN: return setDbGain;
        default: return zylcsHandlerFor(code);
    }
}

// How many objects a transaction of the code may carry. Only a region's descriptor is one.
size_t objectsOf(uint32_t code) {
    return code == Izyl_kwo_service::SET_FILE_DESCRIPTOR ? 1 : 0;
}

}  // namespace

status_t Bn_zyl_kwo_service::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                        uint32_t flags) {
    if (code > LAST_CALL_TRANSACTION && !isPlatformRequest(data)) return android::BAD_VALUE;
    const Handler handler = handlerFor(code);
    if (handler == nullptr && code != CHECKED_UNKNOWN) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!data.checkInterface(this)) return android::PERMISSION_DENIED;
    if (handler == nullptr) return BBinder::onTransact(code, data, reply, flags);
    if ((flags & FLAG_ONEWAY) != 0) return android::INVALID_OPERATION;
    if (data.objectsCount() > objectsOf(code)) return android::BAD_TYPE;
    return handler({*this, data, reply, mKeptBytes});
}
