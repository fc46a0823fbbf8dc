// zyl_floor: what no service that does this work can do without, and nothing else. For the same
// calls it gives the same replies, makes the same requests to the DSP and the same calls of the
// audio system and the file system, with images and records that are ready beforehand: it has no
// settings, no choices and no lock, and looks at few arguments. Once it is registered it talks to
// binder's driver itself, without the platform's library. What the service takes longer than this
// is its own, or that library's.

#include <binder/IServiceManager.h>

#include <cstring>

#include "benchmarks/bench.h"
#include "benchmarks/floor.h"
#include "interface/Izyl_kwo_service.h"

using namespace android;

namespace {

constexpr int32_t kNeutral = 4096;
constexpr int32_t kStereoMode = 2;
constexpr int32_t kQuietLevel = -80000;

// Replies as they travel: the result, and what goes with it.
constexpr int32_t kDone[] = {0};
constexpr int32_t kStereoModeReply[] = {0, kStereoMode};
constexpr int32_t kGainReply[] = {0, kNeutral};
constexpr int32_t kGainsReply[] = {0,        kNeutral, kNeutral, kNeutral, kNeutral, kNeutral,
                                   kNeutral, kNeutral, kNeutral, kNeutral, kNeutral};
constexpr int32_t kLevelsReply[] = {0,           kQuietLevel, kQuietLevel, kQuietLevel,
                                    kQuietLevel, kQuietLevel, kQuietLevel, kQuietLevel,
                                    kQuietLevel, kQuietLevel, kQuietLevel};

}  // namespace

Reply Floor::answer(const Request& request) {
    // The descriptor in the token, which follows two words about the caller.
    constexpr size_t kCallerSize = 8;
    must(request.size >= mToken.size() &&
                 memcmp(request.bytes + kCallerSize, mToken.data() + kCallerSize,
                        mToken.size() - kCallerSize) == 0,
         "a stranger's call");
    switch (request.code) {
        case Izyl_kwo_service::GET_STEREO_MODE: return {kStereoModeReply, sizeof(kStereoModeReply)};
        case Izyl_kwo_service::GET_GEQ_GAIN: return {kGainReply, sizeof(kGainReply)};
        case Izyl_kwo_service::GET_GEQ_GAIN_ALL: return {kGainsReply, sizeof(kGainsReply)};
        case Izyl_kwo_service::GET_DB_LEVELS: return {kLevelsReply, sizeof(kLevelsReply)};
        default: break;
    }
    mArguments = reinterpret_cast<const int32_t*>(request.bytes + mToken.size());
    switch (request.code) {
        case Izyl_kwo_service::SET_ENABLED: enable(); return {nullptr, 0};
        case Izyl_kwo_service::SET_STEREO_MODE: setStereoMode(); break;
        case Izyl_kwo_service::SET_TUNING:
            save();
            rebuild(0);
            break;
        case Izyl_kwo_service::SET_GEQ_GAIN: sendGains(mGain); break;
        case Izyl_kwo_service::SET_GEQ_GAIN_ALL: sendGains(mGains); break;
        case Izyl_kwo_service::SET_RELOAD_FLAG: reload(); break;
        case Izyl_kwo_service::SET_LISTENING_TEST_RESULT: listeningTest(); break;
        case Izyl_kwo_service::SET_ACCESSORY_ZYLCS_TUNING: accessory(); break;
        case Izyl_kwo_service::SET_FILE_DESCRIPTOR: share(request.descriptor); break;
        case Izyl_kwo_service::FETCH_CACHE_BLOCK: fetch(); break;
        case Izyl_kwo_service::PUSH_CACHE_BLOCK: push(); break;
        default: must(false, "an unknown call");
    }
    return {kDone, sizeof(kDone)};
}

namespace {

Floor& theFloor() {
    static Floor floor;
    return floor;
}

}  // namespace

int main() {
    theFloor();
    must(defaultServiceManager()->addService(String16(kFloorName), new BBinder, false) == NO_ERROR,
         "addService");
    serveBinder([](const Request& request) { return theFloor().answer(request); });
}
