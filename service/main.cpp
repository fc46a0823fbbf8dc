#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

#include <csignal>
#include <cstring>

#include "driver/driver_log.h"
#include "service/process.h"
#include "service/zyl_kwo_service.h"

using namespace android;

namespace {

template <typename... Arguments>
void logStartUp(int priority, const char* format, Arguments... arguments) {
    __android_log_print(priority, kDriverLogTag, format, kZylKwoServiceName, arguments...);
}

// The registration keeps the service alive; without one it goes, and saves its settings, here.
status_t registerService() {
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    // A client that closed its end of a descriptor must not end the process.
    signal(SIGPIPE, SIG_IGN);
    return defaultServiceManager()->addService(String16(kZylKwoServiceName), service, false);
}

}  // namespace

int main(int argc, char** argv) {
    logStartUp(ANDROID_LOG_INFO, "%s Service starting (version %s)", kServiceVersion);
    // Only announced: the service is built, and the driver opened, all the same.
    if (argc >= 2 && strcmp(argv[1], "-stub") == 0) {
        logStartUp(ANDROID_LOG_INFO, "%s Starting in stub mode (not opening driver)");
    }
    if (registerService() != NO_ERROR) {
        logStartUp(ANDROID_LOG_ERROR, "%s Failed to add to the ServiceManager");
        return -1;
    }
    ProcessState::self()->startThreadPool();
    logStartUp(ANDROID_LOG_INFO, "%s is now ready, joining thread pool");
    IPCThreadState::self()->joinThreadPool(true);
    logStartUp(ANDROID_LOG_INFO, "%s terminating.");
    return 0;
}
