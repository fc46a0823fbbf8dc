// Routes, errors and the persisted image of the user's settings.

#ifndef ZYL_SETTINGS_SETTINGS_TYPES_H
#define ZYL_SETTINGS_SETTINGS_TYPES_H

#include <cstddef>
#include <cstdint>

constexpr int kBandCount = 10;
constexpr int kRouteCount = 3;

constexpr uint16_t kLowestGEQGain = 725;
constexpr uint16_t kHighestGEQGain = 32767;
constexpr bool isGEQGain(uint16_t gain) {
    return gain >= kLowestGEQGain && gain <= kHighestGEQGain;
}

// An output of the device; its number is also the number of the DSP's cache block that serves it.
enum zylRoute : int32_t {
    kRouteSpeaker = 0,
    kRouteLineout = 1,
    kRouteBluetooth = 2,
};

enum zylKwoErrors : int32_t {
    kSettingsOk = 0,
    kSettingsBadArgument = -1,
    kSettingsFileFailed = -2,    // a pipeline record cannot be opened, or not written in full
    kSettingsFileTooShort = -4,  // a file holds less than a pipeline record
    kSettingsNoMemory = -6,
    kSettingsUnsupported = -8,
    // What the conversion library found wrong with tuning data, by its own code.
    kSettingsConversionFailed6 = -1000,
    kSettingsConversionFailed7 = -1001,
    kSettingsConversionFailed5 = -1002,
    kSettingsConversionFailed8 = -1003,
    kSettingsConversionFailed = -1004,  // -1, and codes that are not the library's
    kSettingsConversionFailed9 = -1005,
};

// The part of the image that both generations share, as it lies in the settings file,
// little-endian.
struct CommonSettingsImage {
    uint32_t version;
    uint32_t enabled;              // zero is off
    uint32_t stereoMode;           // 1 to 3
    uint32_t tuning[kRouteCount];  // by zylRoute
    uint32_t geqGain[kBandCount];  // 16-bit values, 4096 is neutral
    uint32_t geqEnable;            // zero is off
};
static_assert(sizeof(CommonSettingsImage) == 68, "fixed by the settings file");
static_assert(offsetof(CommonSettingsImage, tuning) == 12 &&
                      offsetof(CommonSettingsImage, geqGain) == 24 &&
                      offsetof(CommonSettingsImage, geqEnable) == 64,
              "fixed by the settings file");

constexpr int kIdentifierSize = 37;  // 36 characters and a NUL

// A listening-test value while no test was taken.
constexpr float kNoListeningTest = -1.0F;

// The whole image of the Maldor generation. An identifier names the tuning data that was applied.
struct MaldorSettingsImage {
    CommonSettingsImage common;
    char lineoutAccessoryTuningId[kIdentifierSize];
    char bluetoothAccessoryTuningId[kIdentifierSize];
    char multiChannelRoomId[kIdentifierSize];
    char lineoutStereoRoomId[kIdentifierSize];
    char bluetoothStereoRoomId[kIdentifierSize];
    char padding253[3];
    float listeningTest[4];
    uint8_t listeningTestSet;
    char speakerOnTuningId[kIdentifierSize];
    char speakerOffTuningId[kIdentifierSize];
    char padding347;
};
static_assert(sizeof(MaldorSettingsImage) == 348, "fixed by the settings file");
static_assert(offsetof(MaldorSettingsImage, lineoutAccessoryTuningId) == 68 &&
                      offsetof(MaldorSettingsImage, bluetoothAccessoryTuningId) == 105 &&
                      offsetof(MaldorSettingsImage, multiChannelRoomId) == 142 &&
                      offsetof(MaldorSettingsImage, lineoutStereoRoomId) == 179 &&
                      offsetof(MaldorSettingsImage, bluetoothStereoRoomId) == 216 &&
                      offsetof(MaldorSettingsImage, listeningTest) == 256 &&
                      offsetof(MaldorSettingsImage, listeningTestSet) == 272 &&
                      offsetof(MaldorSettingsImage, speakerOnTuningId) == 273 &&
                      offsetof(MaldorSettingsImage, speakerOffTuningId) == 310,
              "fixed by the settings file");

#endif  // ZYL_SETTINGS_SETTINGS_TYPES_H
