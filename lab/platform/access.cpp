// The service manager's access checks on a phone without a policy: everybody may do everything.
#include "Access.h"

#include <binder/IPCThreadState.h>

namespace android {

Access::Access() = default;

Access::~Access() = default;

Access::CallingContext Access::getCallingContext() {
    const IPCThreadState* ipc = IPCThreadState::self();
    const char* sid = ipc->getCallingSid();
    return {ipc->getCallingPid(), ipc->getCallingUid(), sid != nullptr ? sid : ""};
}

bool Access::canFind(const CallingContext&, const std::string&) {
    return true;
}

bool Access::canAdd(const CallingContext&, const std::string&) {
    return true;
}

bool Access::canList(const CallingContext&) {
    return true;
}

}  // namespace android
