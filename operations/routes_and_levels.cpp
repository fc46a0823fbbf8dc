#include <algorithm>

#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::getRouteMask(int32_t route, uint32_t* mask) {
    const ScopedLock lock(gServiceLock);
    if (!isRoute(route)) return kZylKwoBadArgument;
    *mask = mDriver.getDeviceMask(static_cast<CacheBlockType>(route));
    return kZylKwoOk;
}

// The active route is one word, and nothing else depends on its order. Clients see one whole value
// or another.
int32_t zyl_kwo_service::getActiveRoute(int32_t* route) {
    *route = mActiveRoute.load(std::memory_order_relaxed);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setActiveRoute(int32_t route) {
    mActiveRoute.store(route, std::memory_order_relaxed);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getDbLevels(int32_t levels[kDbLevelCount]) {
    const ScopedLock lock(gServiceLock);
    std::copy(mDbLevels.begin(), mDbLevels.end(), levels);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setDbGain(const int32_t levels[kDbLevelCount]) {
    const ScopedLock lock(gServiceLock);
    std::copy_n(levels, kDbLevelCount, mDbLevels.begin());
    return kZylKwoOk;
}
