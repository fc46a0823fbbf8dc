// permissiond: the "permission" service of the emulated phone. Root, system and shell hold every
// permission, others none.

#include <binder/IPCThreadState.h>
#include <binder/IPermissionController.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

using namespace android;

namespace {

constexpr int32_t kRoot = 0;
constexpr int32_t kSystem = 1000;
constexpr int32_t kShell = 2000;

class PermissionDaemon : public BnPermissionController {
  public:
    bool checkPermission(const String16&, int32_t, int32_t uid) override {
        return uid == kRoot || uid == kSystem || uid == kShell;
    }

    // There are no packages and no run-time permissions on this phone.
    int32_t noteOp(const String16&, int32_t, const String16&) override { return 0; }
    void getPackagesForUid(const uid_t, Vector<String16>&) override {}
    bool isRuntimePermission(const String16&) override { return false; }
    int getPackageUid(const String16&, int) override { return -1; }
};

}  // namespace

int main() {
    ProcessState::self()->startThreadPool();
    const sp<PermissionDaemon> daemon = new PermissionDaemon;
    if (defaultServiceManager()->addService(String16("permission"), daemon) != NO_ERROR) return 1;
    IPCThreadState::self()->joinThreadPool();
}
