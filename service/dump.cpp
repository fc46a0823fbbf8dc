#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/PermissionCache.h>
#include <unistd.h>
#include <utils/String8.h>

#include <atomic>

#include "service/process.h"
#include "service/zyl_kwo_service.h"

using namespace android;

namespace {

// The permission service is another process, which may be stopped or hang. Only so many callers
// wait for it, so that the binder pool has threads left for all others.
constexpr int kMostWaiting = 2;
std::atomic<int> gWaiting{0};

// Takes one of those places for as long as it lives.
class WaitingPlace {
  public:
    WaitingPlace() : mIsFree(gWaiting++ < kMostWaiting) {}
    WaitingPlace(const WaitingPlace&) = delete;
    WaitingPlace& operator=(const WaitingPlace&) = delete;
    ~WaitingPlace() { --gWaiting; }

    bool isFree() const { return mIsFree; }

  private:
    const bool mIsFree;
};

String8 textForCaller() {
    static const String16 kDumpPermission("android.permission.DUMP");
    const WaitingPlace place;
    if (!place.isFree()) return String8("zyl_kwo_service is busy with other dumps, try again\n");
    if (PermissionCache::checkCallingPermission(kDumpPermission)) {
        return String8("zyl_kwo_service dump.......");
    }
    const IPCThreadState* caller = IPCThreadState::self();
    return String8::format("Permission Denial: can't dump zyl_kwo_service from pid=%d, uid=%d\n",
                           caller->getCallingPid(), caller->getCallingUid());
}

}  // namespace

// Says only that the service is there. The text is fixed.
status_t zyl_kwo_service::dump(int fd, const Vector<String16>& /*args*/) {
    const String8 text = textForCaller();
    if (write(fd, text.string(), text.size()) < 0) {
        __android_log_print(
                ANDROID_LOG_ERROR, kServiceLogTag, "%s: error writing string",
                "virtual status_t zyl_kwo_service::dump(int, const Vector<android::String16> &)");
        return UNKNOWN_ERROR;
    }
    return NO_ERROR;
}
