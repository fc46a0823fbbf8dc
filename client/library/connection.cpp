#include "client/library/connection.h"

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace {

// defaultServiceManager() waits for ever for a service manager that is not there.
bool hasServiceManager() {
    return android::ProcessState::self()->getContextObject(nullptr) != nullptr;
}

}  // namespace

Outcome Connection::connect(double seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr useconds_t kPauseMicroseconds = 100000;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    const android::String16 name(kZylKwoServiceName);
    mRegion.reset();
    mService.clear();
    Outcome outcome;
    outcome.status = kNoService;
    outcome.what = kZylKwoServiceName;
    // The platform's library ends the process when there is no driver.
    if (access("/dev/binder", F_OK) != 0) {
        outcome.why = "this machine has no /dev/binder";
        return outcome;
    }
    for (;;) {
        const bool managed = hasServiceManager();
        if (managed) {
            mService = Izyl_kwo_service::asInterface(
                    android::defaultServiceManager()->checkService(name));
        }
        if (mService != nullptr) return done();
        outcome.why = managed ? "not running" : "the service manager is not running";
        outcome.remedy = managed ? std::string("start it with: start ") + kZylKwoServiceName
                                 : "without it no service can be found; restart the phone";
        if (Clock::now() >= end) return outcome;
        usleep(kPauseMicroseconds);
    }
}

Izyl_kwo_service& Connection::service() {
    ++mUses;
    return *mService;
}

int32_t Connection::shareRegion() {
    if (mRegion != nullptr) return kZylKwoOk;
    auto region = std::make_unique<SharedRegion>();
    const int32_t result = region->share(service());
    if (result == kZylKwoOk) mRegion = std::move(region);
    return result;
}

int32_t Connection::fetchBlock(int32_t number, std::vector<uint8_t>* bytes) {
    int32_t result = shareRegion();
    if (result == kZylKwoOk) result = service().fetchCacheBlock(number);
    if (result != kZylKwoOk) return result;
    bytes->assign(mRegion->bytes(), mRegion->bytes() + mRegion->blockSize());
    return kZylKwoOk;
}

int32_t Connection::pushBlock(int32_t number, const std::vector<uint8_t>& bytes) {
    const int32_t result = shareRegion();
    if (result != kZylKwoOk) return result;
    std::copy(bytes.begin(), bytes.end(), mRegion->bytes());
    return service().pushCacheBlock(number);
}
