#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "driver/descriptor.h"
#include "driver/driver_log.h"
#include "service/process.h"
#include "service/zyl_kwo_service.h"

using namespace android;

namespace {

template <typename... Arguments>
void logStartUp(int priority, const char* format, Arguments... arguments) {
    __android_log_print(priority, kDriverLogTag, format, kZylKwoServiceName, arguments...);
}

// A service manager that comes after one that died knows nothing of this service, so that no client
// would find it again. The service ends; init starts it anew, and it registers. Nothing is lost
// that a restart keeps, as each call saves what it sets.
class ServiceManagerWatch : public IBinder::DeathRecipient {
  public:
    void binderDied(const wp<IBinder>&) override {
        logStartUp(ANDROID_LOG_ERROR, "%s The ServiceManager died, ending");
        // Without destructors, because other threads are in the middle of calls.
        _exit(EXIT_FAILURE);
    }
};

// The watch lives as long as the process; nothing unlinks it.
void watch(const sp<IServiceManager>& manager) {
    static const sp<ServiceManagerWatch> watch = new ServiceManagerWatch;
    IInterface::asBinder(manager)->linkToDeath(watch);
}

// The registration keeps the service alive. When it is refused, the process ends. Whether the
// object is destroyed before, and saves its settings once more, depends on the kernel, which may
// still hold it. Nothing depends on that, as no client has called.
status_t registerService() {
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    // A dump writes to a client's descriptor; a client that closed the other end must not end the
    // process.
    signal(SIGPIPE, SIG_IGN);
    // Waits for one, where init started this service sooner.
    const sp<IServiceManager> manager = defaultServiceManager();
    watch(manager);
    return manager->addService(String16(kZylKwoServiceName), service, false);
}

}  // namespace

int main(int argc, char** argv) {
    logStartUp(ANDROID_LOG_INFO, "%s Service starting (version %s)", kServiceVersion);
    // This is only announced. The service is built, and the driver opened, all the same.
    if (argc >= 2 && strcmp(argv[1], "-stub") == 0) {
        logStartUp(ANDROID_LOG_INFO, "%s Starting in stub mode (not opening driver)");
    }
    keepDescriptorsInReserve();
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
