// Stands where the kernel would: the test program's own open, fopen, ioctl, close and usleep answer
// for the DSP's device node and for binder, and pass everything else on, unless a fault is due.
//
// Every descriptor is somebody's: the thread's of this program that opened it, or the platform's
// libraries', as a parcel's are. Nobody else may close it.

#ifndef ZYL_TESTS_SUPPORT_DEVICE_CALLS_H
#define ZYL_TESTS_SUPPORT_DEVICE_CALLS_H

#include <atomic>
#include <memory>

#include "lab/dsp/dsp_model.h"

struct DeviceCalls {
    std::shared_ptr<DspModel> model = std::make_shared<DspModel>();

    // How many opens of the node fail before it is there.
    std::atomic<int> missing{0};
    // The descriptor that open() of the node returns, unless it is negative.
    std::atomic<int> opensAs{-1};

    std::atomic<int> opens{0};         // attempts to open the node
    std::atomic<int> standing{0};      // descriptors of the node that are open
    std::atomic<int> strayOpens{0};    // of files that are not the service's or the lab's
    std::atomic<int> zeroCloses{0};    // closes of descriptor 0
    std::atomic<int> badCloses{0};     // closes of a descriptor that was not open, or another's
    std::atomic<long> sleptMicros{0};  // what usleep was asked for; it returns at once
};

// Of the running test; replaced with each.
DeviceCalls& deviceCalls();
void resetDeviceCalls();

// How many descriptors this program's threads have open.
long openDescriptors();

#endif  // ZYL_TESTS_SUPPORT_DEVICE_CALLS_H
