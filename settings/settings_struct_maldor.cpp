#include "settings/settings_struct_maldor.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* kCurrentTuningStems[kRouteCount] = {"current_speaker", "current_lineout",
                                                          "current_bluetooth"};

constexpr char kNoIdentifier[kIdentifierSize] = "00000000-0000-0000-0000-000000000000";
constexpr float kNoListeningTest = -1.0F;

}  // namespace

const zylSettingsStruct::Generation zylSettingsStructMaldor::kGeneration = {
        "zyl_settings_struct_maldor", "zylSettingsStructMaldor", 6, sizeof(MaldorSettingsImage),
        true};

zylSettingsStructMaldor::zylSettingsStructMaldor() : zylSettingsStruct(kGeneration, mImage.common) {
    zylSettingsStructMaldor::SetDefaults();
}

void zylSettingsStructMaldor::SetDefaults() {
    mImage = {};
    zylSettingsStruct::SetDefaults();
    for (char* identifier :
         {mImage.lineoutAccessoryTuningId, mImage.bluetoothAccessoryTuningId,
          mImage.multiChannelRoomId, mImage.lineoutStereoRoomId, mImage.bluetoothStereoRoomId,
          mImage.speakerOnTuningId, mImage.speakerOffTuningId}) {
        memcpy(identifier, kNoIdentifier, kIdentifierSize);
    }
    std::fill(std::begin(mImage.listeningTest), std::end(mImage.listeningTest), kNoListeningTest);
}

zylKwoErrors zylSettingsStructMaldor::setTuning(zylRoute route, uint32_t tuning) {
    logError("int32_t", "setTuning(zylRoute, uint32_t)",
             "Maldor doesn't support tuning number changes, HP %d Route %d",
             static_cast<int>(tuning), static_cast<int>(route));
    return kSettingsUnsupported;
}

uint32_t zylSettingsStructMaldor::getTuning(zylRoute route) {
    logError("uint32_t", "getTuning(zylRoute)",
             "Maldor doesn't support tuning number changes, Route %d", static_cast<int>(route));
    return static_cast<uint32_t>(kSettingsUnsupported);
}

std::string zylSettingsStructMaldor::getTuningFileName(zylRoute route, bool on) {
    std::string name = kCurrentTuningStems[route];
    if (route == kRouteSpeaker) name += on ? "_on" : "_off";
    return name;
}
