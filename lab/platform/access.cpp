// The service manager's access checks: /service_contexts says of which type a service is, and the
// policy in the kernel who may add and find it.
#include "Access.h"

#include <binder/IPCThreadState.h>
#include <fcntl.h>
#include <unistd.h>

#include <fstream>

namespace android {

namespace {

const std::string kClass = "/sys/fs/selinux/class/service_manager/";

// The first word of the file, without the NUL that contexts end in; what cannot be read is empty.
std::string wordIn(const std::string& path) {
    std::string word;
    std::ifstream(path) >> word;
    return word.c_str();
}

// The last line that fits counts; "*" fits every name.
std::string contextOf(const std::string& service) {
    std::ifstream file("/service_contexts");
    std::string name;
    std::string context;
    std::string found;
    while (file >> name >> context) {
        if (name == "*" || name == service) found = context;
    }
    return found;
}

// Asks the kernel, which answers the request in the same open file.
bool isAllowed(const std::string& caller, const std::string& object, const std::string& action) {
    const unsigned long bit = strtoul(wordIn(kClass + "perms/" + action).c_str(), nullptr, 10);
    if (bit == 0) return false;
    const std::string request =
            caller + " " + object + " " + wordIn(kClass + "index") + " ffffffff";
    char answer[128] = {};
    const int fd = open("/sys/fs/selinux/access", O_RDWR | O_CLOEXEC);
    const bool answered = fd >= 0 && write(fd, request.data(), request.size()) > 0 &&
                          read(fd, answer, sizeof(answer) - 1) > 0;
    if (fd >= 0) close(fd);
    const bool allowed = answered && (strtoul(answer, nullptr, 16) >> (bit - 1) & 1) != 0;
    if (!allowed) {
        fprintf(stderr, "denied { %s } scontext=%s tcontext=%s tclass=service_manager\n",
                action.c_str(), caller.c_str(), object.c_str());
    }
    return allowed;
}

}  // namespace

Access::Access() = default;

Access::~Access() = default;

Access::CallingContext Access::getCallingContext() {
    const IPCThreadState* ipc = IPCThreadState::self();
    // Outside of a call it is the service manager itself that asks.
    const char* sid = ipc->getCallingSid();
    return {ipc->getCallingPid(), ipc->getCallingUid(),
            sid != nullptr ? sid : wordIn("/proc/self/attr/current")};
}

bool Access::canFind(const CallingContext& caller, const std::string& name) {
    return isAllowed(caller.sid, contextOf(name), "find");
}

bool Access::canAdd(const CallingContext& caller, const std::string& name) {
    return isAllowed(caller.sid, contextOf(name), "add");
}

bool Access::canList(const CallingContext& caller) {
    return isAllowed(caller.sid, wordIn("/proc/self/attr/current"), "list");
}

}  // namespace android
