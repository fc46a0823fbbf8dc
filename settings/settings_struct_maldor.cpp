#include "settings/settings_struct_maldor.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* kCurrentTuningStems[kRouteCount] = {"current_speaker", "current_lineout",
                                                          "current_bluetooth"};

constexpr char kNoName[kZylcsNameSize] = "00000000-0000-0000-0000-000000000000";

// Where the names lie in the image, by zylSettingsStructMaldor::TuningName.
constexpr size_t kNameOffsets[] = {
        offsetof(MaldorSettingsImage, lineoutAccessoryTuningId),
        offsetof(MaldorSettingsImage, bluetoothAccessoryTuningId),
        offsetof(MaldorSettingsImage, multiChannelRoomId),
        offsetof(MaldorSettingsImage, lineoutStereoRoomId),
        offsetof(MaldorSettingsImage, bluetoothStereoRoomId),
        offsetof(MaldorSettingsImage, speakerOnTuningId),
        offsetof(MaldorSettingsImage, speakerOffTuningId),
};

}  // namespace

FairLock gRecordLock;

const zylSettingsStruct::Traits zylSettingsStructMaldor::kTraits = {
        "zyl_settings_struct_maldor", "zylSettingsStructMaldor", 6, sizeof(MaldorSettingsImage),
        true};

zylSettingsStructMaldor::zylSettingsStructMaldor() : zylSettingsStruct(kTraits, mImage.common) {
    zylSettingsStructMaldor::SetDefaults();
}

void zylSettingsStructMaldor::SetDefaults() {
    mImage = {};
    zylSettingsStruct::SetDefaults();
    for (size_t offset : kNameOffsets) {
        memcpy(imageBytes() + offset, kNoName, kZylcsNameSize);
    }
    std::fill(std::begin(mImage.listeningTest), std::end(mImage.listeningTest), kNoListeningTest);
}

zylKwoErrors zylSettingsStructMaldor::setTuning(zylRoute route, uint32_t tuning) {
    logError("virtual int32_t", "setTuning(zylRoute, uint32_t)",
             "Maldor doesn't support tuning number changes, HP %d Route %d",
             static_cast<int>(tuning), static_cast<int>(route));
    return kZylKwoUnsupported;
}

uint32_t zylSettingsStructMaldor::getTuning(zylRoute route) {
    logError("virtual uint32_t", "getTuning(zylRoute)",
             "Maldor doesn't support tuning number changes, Route %d", static_cast<int>(route));
    return static_cast<uint32_t>(kZylKwoUnsupported);
}

std::string zylSettingsStructMaldor::getTuningFileName(zylRoute route, bool on) {
    std::string name = kCurrentTuningStems[route];
    if (route == kRouteSpeaker) name += on ? "_on" : "_off";
    return name;
}

void zylSettingsStructMaldor::setName(TuningName which, const std::string& text) {
    char padded[kZylcsNameSize] = {};
    text.copy(padded, kZylcsNameSize - 1);
    memcpy(imageBytes() + kNameOffsets[static_cast<size_t>(which)], padded, kZylcsNameSize);
}

// A settings file may hold a name without its NUL.
std::string zylSettingsStructMaldor::getName(TuningName which) const {
    const char* const text = imageBytes() + kNameOffsets[static_cast<size_t>(which)];
    return std::string(text, strnlen(text, kZylcsNameSize - 1));
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
