#include <algorithm>

#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::getRouteMask(int32_t route, uint32_t* mask) {
    ServiceLock lock(gServiceLock);
    if (route < 0 || route >= kRouteCount) return kZylKwoBadArgument;
    *mask = mDriver.getDeviceMask(static_cast<CacheBlockType>(route));
    return kZylKwoOk;
}

// One word that orders nothing else: clients see one whole value or another.
int32_t zyl_kwo_service::getActiveRoute(int32_t* route) {
    *route = mActiveRoute.load(std::memory_order_relaxed);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setActiveRoute(int32_t route) {
    mActiveRoute.store(route, std::memory_order_relaxed);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getDbLevels(int32_t levels[kDbLevelCount]) {
    ServiceLock lock(gServiceLock);
    std::copy_n(mDbLevels, kDbLevelCount, levels);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setDbGain(const int32_t levels[kDbLevelCount]) {
    ServiceLock lock(gServiceLock);
    std::copy_n(levels, kDbLevelCount, mDbLevels);
    return kZylKwoOk;
}
