// The persisted images of the user's settings, as they lie in the settings file, little-endian.

#ifndef ZYL_SETTINGS_SETTINGS_TYPES_H
#define ZYL_SETTINGS_SETTINGS_TYPES_H

#include <cstddef>
#include <cstdint>

#include "interface/zyl_kwo_types.h"

// The part that all generations share.
struct CommonSettingsImage {
    uint32_t version;
    uint32_t enabled;                 // zero is off
    uint32_t stereoMode;              // 1 to 3
    uint32_t tuning[kRouteCount];     // by zylRoute
    uint32_t geqGain[kGEQBandCount];  // 16-bit values
    uint32_t geqEnable;               // zero is off
};
static_assert(sizeof(CommonSettingsImage) == 68, "fixed by the settings file");
static_assert(offsetof(CommonSettingsImage, version) == 0 &&
                      offsetof(CommonSettingsImage, enabled) == 4 &&
                      offsetof(CommonSettingsImage, stereoMode) == 8 &&
                      offsetof(CommonSettingsImage, tuning) == 12 &&
                      offsetof(CommonSettingsImage, geqGain) == 24 &&
                      offsetof(CommonSettingsImage, geqEnable) == 64,
              "fixed by the settings file");

// A listening-test value while no test was taken.
constexpr float kNoListeningTest = -1.0F;

// The whole image of the Maldor generation. The fields that end in "Id" are the names of tuning
// data.
struct MaldorSettingsImage {
    CommonSettingsImage common;
    char lineoutAccessoryTuningId[kZylcsNameSize];
    char bluetoothAccessoryTuningId[kZylcsNameSize];
    char multiChannelRoomId[kZylcsNameSize];
    char lineoutStereoRoomId[kZylcsNameSize];
    char bluetoothStereoRoomId[kZylcsNameSize];
    char padding253[3];
    float listeningTest[kListeningTestCount];
    uint8_t listeningTestSet;
    char speakerOnTuningId[kZylcsNameSize];
    char speakerOffTuningId[kZylcsNameSize];
    char padding347;
};
static_assert(sizeof(MaldorSettingsImage) == 348, "fixed by the settings file");
static_assert(offsetof(MaldorSettingsImage, lineoutAccessoryTuningId) == 68 &&
                      offsetof(MaldorSettingsImage, bluetoothAccessoryTuningId) == 105 &&
                      offsetof(MaldorSettingsImage, multiChannelRoomId) == 142 &&
                      offsetof(MaldorSettingsImage, lineoutStereoRoomId) == 179 &&
                      offsetof(MaldorSettingsImage, bluetoothStereoRoomId) == 216 &&
                      offsetof(MaldorSettingsImage, padding253) == 253 &&
                      offsetof(MaldorSettingsImage, listeningTest) == 256 &&
                      offsetof(MaldorSettingsImage, listeningTestSet) == 272 &&
                      offsetof(MaldorSettingsImage, speakerOnTuningId) == 273 &&
                      offsetof(MaldorSettingsImage, speakerOffTuningId) == 310 &&
                      offsetof(MaldorSettingsImage, padding347) == 347,
              "fixed by the settings file");

#endif  // ZYL_SETTINGS_SETTINGS_TYPES_H
