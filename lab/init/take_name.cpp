// take_name NAME DESCRIPTOR: registers a service that does nothing under the name, and stays. Ends
// with status 1 where the service manager refuses.

#include <binder/Binder.h>
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

#include <cstdio>

using namespace android;

namespace {

class Named : public BBinder {
  public:
    explicit Named(const char* descriptor) : mDescriptor(descriptor) {}
    const String16& getInterfaceDescriptor() const override { return mDescriptor; }

  private:
    const String16 mDescriptor;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        fputs("usage: take_name NAME DESCRIPTOR\n", stderr);
        return 2;
    }
    ProcessState::self()->startThreadPool();
    if (defaultServiceManager()->addService(String16(argv[1]), new Named(argv[2])) != NO_ERROR) {
        fprintf(stderr, "take_name: %s is refused\n", argv[1]);
        return 1;
    }
    IPCThreadState::self()->joinThreadPool();
}
