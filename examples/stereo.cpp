// zyl_example: a client of the audio-effect service at its smallest. It switches to the next stereo
// mode and says which one that is.

#include <binder/IServiceManager.h>

#include <cstdio>

#include "interface/Izyl_kwo_service.h"

int main() {
    // The service is looked up by its name; the proxy makes transactions of its operations.
    const android::sp<Izyl_kwo_service> service = Izyl_kwo_service::asInterface(
            android::defaultServiceManager()->checkService(android::String16(kZylKwoServiceName)));
    if (service == nullptr) {
        fprintf(stderr, "zyl_example: %s is not running\n", kZylKwoServiceName);
        return 1;
    }

    // Every operation returns a result; values come back through pointers.
    int32_t mode = 0;
    int32_t result = service->getStereoMode(&mode);
    if (result == kZylKwoOk) {
        mode = mode % 3 + 1;
        result = service->setStereoMode(mode);
    }
    if (result != kZylKwoOk) {
        fprintf(stderr, "zyl_example: the service refused: %d\n", result);
        return 1;
    }
    printf("stereo mode %d\n", mode);
    return 0;
}
