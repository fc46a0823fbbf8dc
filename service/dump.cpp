#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/PermissionCache.h>
#include <unistd.h>
#include <utils/String8.h>

#include "service/process.h"
#include "service/zyl_kwo_service.h"

using namespace android;

// Says that the service is there, and no more: a dump may come from a bug report.
status_t zyl_kwo_service::dump(int fd, const Vector<String16>& /*args*/) {
    static const String16 kDumpPermission("android.permission.DUMP");

    String8 text("zyl_kwo_service dump.......");
    if (!PermissionCache::checkCallingPermission(kDumpPermission)) {
        const IPCThreadState* caller = IPCThreadState::self();
        text = String8::format(
                "Permission Denial: can't dump zyl_kwo_service from pid=%d, uid=%d\n",
                caller->getCallingPid(), caller->getCallingUid());
    }
    if (write(fd, text.string(), text.size()) < 0) {
        __android_log_print(
                ANDROID_LOG_ERROR, kServiceLogTag, "%s: error writing string",
                "virtual status_t zyl_kwo_service::dump(int, const Vector<android::String16> &)");
        return UNKNOWN_ERROR;
    }
    return NO_ERROR;
}
