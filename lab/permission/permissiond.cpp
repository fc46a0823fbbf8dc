// permissiond: the "permission" service of the emulated phone. Root, system and shell hold every
// permission, other users those that the files in /system/etc/permissions assign to them, by name
// or by number.

#include <binder/IPCThreadState.h>
#include <binder/IPermissionController.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <glob.h>
#include <regex.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>

#include "lab/init/users.h"

using namespace android;

namespace {

constexpr int32_t kRoot = 0;
constexpr int32_t kSystem = 1000;
constexpr int32_t kShell = 2000;

using Grants = std::set<std::pair<int32_t, std::string>>;

void readGrants(const std::string& path, Grants* grants) {
    regex_t assignment;
    regcomp(&assignment, "<assign-permission name=\"([^\"]*)\" uid=\"([^\"]*)\" */>", REG_EXTENDED);
    std::ifstream file(path);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    regmatch_t found[3];
    for (const char* at = text.c_str(); regexec(&assignment, at, 3, found, 0) == 0;
         at += found[0].rm_eo) {
        const std::string name(at + found[1].rm_so, at + found[1].rm_eo);
        const uid_t user = knownToInit(std::string(at + found[2].rm_so, at + found[2].rm_eo));
        if (user != kNobodyKnown) grants->emplace(user, name);
    }
    regfree(&assignment);
}

Grants readAllGrants() {
    Grants grants;
    glob_t files = {};
    glob("/system/etc/permissions/*.xml", 0, nullptr, &files);
    for (size_t i = 0; i < files.gl_pathc; ++i) readGrants(files.gl_pathv[i], &grants);
    globfree(&files);
    return grants;
}

class PermissionDaemon : public BnPermissionController {
  public:
    bool checkPermission(const String16& permission, int32_t, int32_t uid) override {
        return uid == kRoot || uid == kSystem || uid == kShell ||
               mGrants.count({uid, String8(permission).string()}) > 0;
    }

    // There are no packages and no run-time permissions on this phone.
    int32_t noteOp(const String16&, int32_t, const String16&) override { return 0; }
    void getPackagesForUid(const uid_t, Vector<String16>&) override {}
    bool isRuntimePermission(const String16&) override { return false; }
    int getPackageUid(const String16&, int) override { return -1; }

  private:
    const Grants mGrants = readAllGrants();
};

}  // namespace

int main() {
    ProcessState::self()->startThreadPool();
    const sp<PermissionDaemon> daemon = new PermissionDaemon;
    if (defaultServiceManager()->addService(String16("permission"), daemon) != NO_ERROR) return 1;
    IPCThreadState::self()->joinThreadPool();
}
