// The numbers that the service and its clients share, and nothing of binder: what an operation
// returns, how many of everything there are, and which values are taken.
//
// Each number stands here alone. Where another part of the system depends on one, a static_assert
// says so there.

#ifndef ZYL_INTERFACE_ZYL_KWO_TYPES_H
#define ZYL_INTERFACE_ZYL_KWO_TYPES_H

#include <cstdint>

// An output of the device; its number is also the number of the DSP's cache block that serves it.
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

// The graphic equaliser: its bands, and the gains that they take. 4096 is neutral, and a gain is
// relative to it: 8192 is twice the amplitude, +6 dB.
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
constexpr int kZylcsNameSize = 37;        // of tuning data: 36 characters and a NUL
constexpr int kVersionStringSize = 3072;  // the longest version text and its NUL

// What every layer of the service returns, and what clients receive: one vocabulary from the driver
// to the wire. The numbers are part of the protocol.
enum zylKwoErrors : int32_t {
    kZylKwoOk = 0,
    kZylKwoBadArgument = -1,
    kZylKwoTuningNotLoadable = -2,  // a tuning file cannot be opened, or a record not be written
    kZylKwoUploadFailed = -3,       // the DSP refused it, or a region could not be mapped or copied
    kZylKwoTuningTooShort = -4,     // a tuning file holds less than one pipeline image
    kZylKwoNoMemory = -6,
    kZylKwoTextDoesNotFit = -7,  // between driver and service alone
    kZylKwoUnsupported = -8,
    kZylKwoNotAvailable = -9,  // not on this settings generation
    kZylKwoNoSharedRegion = -3000,

    // What the conversion library found wrong with tuning data, by its own code.
    kZylKwoConversionFailed6 = -1000,
    kZylKwoConversionFailed7 = -1001,
    kZylKwoConversionFailed5 = -1002,
    kZylKwoConversionFailed8 = -1003,
    kZylKwoConversionFailed = -1004,  // -1, and codes that are not the library's
    kZylKwoConversionFailed9 = -1005,

    // Only a proxy returns these: the call did not come through, so there is no result.
    kZylKwoServiceGone = -20001,
    kZylKwoCallRefused = -20002,  // the service did not accept the interface token
    kZylKwoCallFailed = -20003,   // setEnabled, getEnabled, getListeningTestResult: it failed
};

#endif  // ZYL_INTERFACE_ZYL_KWO_TYPES_H
