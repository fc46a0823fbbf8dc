#include "client/session.h"

#include <binder/IServiceManager.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

bool Session::connect() {
    using Clock = std::chrono::steady_clock;
    constexpr useconds_t kPauseMicroseconds = 100000;
    const auto end = Clock::now() + std::chrono::duration<double>(options.waitSeconds);
    const android::String16 name(kZylKwoServiceName);
    for (;;) {
        mService =
                Izyl_kwo_service::asInterface(android::defaultServiceManager()->checkService(name));
        if (mService != nullptr) return true;
        if (Clock::now() >= end) break;
        usleep(kPauseMicroseconds);
    }
    fprintf(stderr, "kwoctl: %s: not running; start it with: start %s\n", kZylKwoServiceName,
            kZylKwoServiceName);
    return false;
}

int32_t Session::shareRegion() {
    if (mRegion != nullptr) return kZylKwoOk;
    auto region = std::make_unique<SharedRegion>();
    const int32_t result = region->share(*mService);
    if (result == kZylKwoOk) mRegion = std::move(region);
    return result;
}

int32_t Session::fetchBlock(int32_t number, std::vector<uint8_t>* bytes) {
    int32_t result = shareRegion();
    if (result == kZylKwoOk) result = mService->fetchCacheBlock(number);
    if (result != kZylKwoOk) return result;
    bytes->assign(mRegion->bytes(), mRegion->bytes() + mRegion->blockSize());
    return kZylKwoOk;
}

int32_t Session::pushBlock(int32_t number, const std::vector<uint8_t>& bytes) {
    const int32_t result = shareRegion();
    if (result != kZylKwoOk) return result;
    std::copy(bytes.begin(), bytes.end(), mRegion->bytes());
    return mService->pushCacheBlock(number);
}
