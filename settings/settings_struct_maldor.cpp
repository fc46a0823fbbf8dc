#include "settings/settings_struct_maldor.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* kCurrentTuningStems[kRouteCount] = {"current_speaker", "current_lineout",
                                                          "current_bluetooth"};

constexpr char kNoIdentifier[kIdentifierSize] = "00000000-0000-0000-0000-000000000000";

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
    logError("virtual int32_t", "setTuning(zylRoute, uint32_t)",
             "Maldor doesn't support tuning number changes, HP %d Route %d",
             static_cast<int>(tuning), static_cast<int>(route));
    return kSettingsUnsupported;
}

uint32_t zylSettingsStructMaldor::getTuning(zylRoute route) {
    logError("virtual uint32_t", "getTuning(zylRoute)",
             "Maldor doesn't support tuning number changes, Route %d", static_cast<int>(route));
    return static_cast<uint32_t>(kSettingsUnsupported);
}

std::string zylSettingsStructMaldor::getTuningFileName(zylRoute route, bool on) {
    std::string name = kCurrentTuningStems[route];
    if (route == kRouteSpeaker) name += on ? "_on" : "_off";
    return name;
}

char* zylSettingsStructMaldor::field(Identifier which) {
    switch (which) {
        case Identifier::kLineoutAccessory: return mImage.lineoutAccessoryTuningId;
        case Identifier::kBluetoothAccessory: return mImage.bluetoothAccessoryTuningId;
        case Identifier::kMultiChannelRoom: return mImage.multiChannelRoomId;
        case Identifier::kLineoutStereoRoom: return mImage.lineoutStereoRoomId;
        case Identifier::kBluetoothStereoRoom: return mImage.bluetoothStereoRoomId;
        case Identifier::kSpeakerOn: return mImage.speakerOnTuningId;
        case Identifier::kSpeakerOff: return mImage.speakerOffTuningId;
    }
    __builtin_unreachable();
}

void zylSettingsStructMaldor::setIdentifier(Identifier which, const std::string& text) {
    char padded[kIdentifierSize] = {};
    text.copy(padded, kIdentifierSize - 1);
    memcpy(field(which), padded, kIdentifierSize);
}

// A settings file may hold a field without its NUL.
std::string zylSettingsStructMaldor::getIdentifier(Identifier which) const {
    const char* text = const_cast<zylSettingsStructMaldor*>(this)->field(which);
    return std::string(text, strnlen(text, kIdentifierSize - 1));
}

void zylSettingsStructMaldor::setListeningTestValues(float a, float b, float c, float d) {
    const float values[] = {a, b, c, d};
    std::copy(std::begin(values), std::end(values), mImage.listeningTest);
    mImage.listeningTestSet = 1;
}

void zylSettingsStructMaldor::getListeningTestValues(float* a, float* b, float* c, float* d) const {
    *a = mImage.listeningTest[0];
    *b = mImage.listeningTest[1];
    *c = mImage.listeningTest[2];
    *d = mImage.listeningTest[3];
}
