// The numbers that the service and its clients share: results, counts and ranges. This header needs
// nothing of binder.
//
// Each number stands here alone. A part of the system that depends on one says so with a
// static_assert.

#ifndef ZYL_INTERFACE_ZYL_KWO_TYPES_H
#define ZYL_INTERFACE_ZYL_KWO_TYPES_H

#include <cstdint>

// An output of the device. Its number is also the number of the DSP's cache block that serves it.
enum zylRoute : int32_t {
    kRouteSpeaker = 0,
    kRouteLineout = 1,
    kRouteBluetooth = 2,
};
constexpr int kRouteCount = 3;
constexpr bool isRoute(int32_t route) {
    return route >= 0 && route < kRouteCount;
}

constexpr int kLowestStereoMode = 1;
constexpr int kHighestStereoMode = 3;
constexpr bool isStereoMode(int32_t mode) {
    return mode >= kLowestStereoMode && mode <= kHighestStereoMode;
}

// The graphic equaliser's bands, and the gains that they take. A gain is relative to the neutral
// 4096: 8192 is twice the amplitude, +6 dB.
constexpr int kGEQBandCount = 10;
constexpr bool isGEQBand(int32_t band) {
    return band >= 0 && band < kGEQBandCount;
}
constexpr uint16_t kNeutralGEQGain = 4096;
constexpr uint16_t kLowestGEQGain = 725;     // about -15 dB
constexpr uint16_t kHighestGEQGain = 32767;  // about +18 dB
constexpr bool isGEQGain(uint16_t gain) {
    return gain >= kLowestGEQGain && gain <= kHighestGEQGain;
}

constexpr int kDbLevelCount = 10;
constexpr int kListeningTestCount = 4;
constexpr int kZylcsNameSize = 37;        // of tuning data's name: 36 characters and a NUL
constexpr int kVersionStringSize = 3072;  // the longest version text and its NUL

// The results of an operation. Every layer of the service returns these, from the driver up, and
// clients receive them. The numbers are part of the protocol.
enum zylKwoErrors : int32_t {
    kZylKwoOk = 0,
    kZylKwoBadArgument = -1,
    kZylKwoTuningNotLoadable = -2,  // a tuning file cannot be opened, or a record not be written
    kZylKwoUploadFailed = -3,       // a block could not be moved, in either direction: the DSP
                                    // refused, or a region could not be mapped or copied
    kZylKwoTuningTooShort = -4,     // a tuning file holds less than one pipeline image
    kZylKwoNoMemory = -6,
    kZylKwoTextDoesNotFit = -7,  // the driver's; it reaches no client
    kZylKwoUnsupported = -8,
    kZylKwoNotAvailable = -9,  // not on this settings generation
    kZylKwoNoSharedRegion = -3000,

    // The conversion library refused tuning data; the digit is its own code.
    kZylKwoConversionFailed6 = -1000,
    kZylKwoConversionFailed7 = -1001,
    kZylKwoConversionFailed5 = -1002,
    kZylKwoConversionFailed8 = -1003,
    kZylKwoConversionFailed = -1004,  // its code is -1, or none of its own
    kZylKwoConversionFailed9 = -1005,

    // Only a proxy returns these: the transaction failed, so there is no result.
    kZylKwoServiceGone = -20001,
    kZylKwoCallRefused = -20002,  // the service did not accept the interface token
    kZylKwoCallFailed = -20003,   // it was too large, for example; or, for setEnabled, getEnabled
                                  // and getListeningTestResult, the operation failed
};

#endif  // ZYL_INTERFACE_ZYL_KWO_TYPES_H
