// Tuning data from clients, Maldor only. The data is folded into the saved records before the lock
// is taken; under it the blocks that the records are for are loaded anew.

#include <algorithm>
#include <cstring>

#include "service/zyl_kwo_service.h"

namespace {

using Identifier = zylSettingsStructMaldor::Identifier;

// Tuning data begins with its identifier; data without a NUL is identifier to its end. Nothing
// behind what can be kept is looked at.
std::string identifierOf(const ZylcsData& zylcs) {
    const auto* text = reinterpret_cast<const char*>(zylcs.bytes);
    const size_t searched = std::min<size_t>(static_cast<uint32_t>(zylcs.size), kZylcsNameSize - 1);
    return std::string(text, strnlen(text, searched));
}

// Index 1 is lineout's, 2 bluetooth's; there is nothing to remember for others.
std::optional<Identifier> accessoryIdentifier(int32_t route) {
    if (route == kRouteLineout) return Identifier::kLineoutAccessory;
    if (route == kRouteBluetooth) return Identifier::kBluetoothAccessory;
    return std::nullopt;
}

std::optional<Identifier> stereoRoomIdentifier(int32_t index) {
    if (index == kRouteLineout) return Identifier::kLineoutStereoRoom;
    if (index == kRouteBluetooth) return Identifier::kBluetoothStereoRoom;
    return std::nullopt;
}

}  // namespace

int32_t zyl_kwo_service::setSpeakerTuning(bool on, const ZylcsData& zylcs) {
    if (mGeneration != kMaldor) return kZylKwoNotAvailable;
    const std::string identifier = identifierOf(zylcs);
    int32_t result = maldor().applySpeakerZylcsTuning(on, zylcs);
    if (result != 0) return result;
    ServiceLock lock(gServiceLock);
    result = reloadBlocks({kBlockSpeaker}, settings().getEnabled() != 0);
    if (result != 0) return result;
    maldor().setIdentifier(on ? Identifier::kSpeakerOn : Identifier::kSpeakerOff, identifier);
    mSettingsHolder->saveSettings();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                               uint8_t* work, int32_t workSize) {
    return setSpeakerTuning(true, {zylcs, zylcsSize, work, workSize});
}

int32_t zyl_kwo_service::setSecondSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                     uint8_t* work, int32_t workSize) {
    return setSpeakerTuning(false, {zylcs, zylcsSize, work, workSize});
}

int32_t zyl_kwo_service::reloadLineoutAndBluetooth() {
    ServiceLock lock(gServiceLock);
    return reloadBlocks({kBlockLineout, kBlockBluetooth}, true);
}

// Remembered and saved after the lock is released, as for all that follows.
int32_t zyl_kwo_service::remember(Identifier which, const ZylcsData& zylcs) {
    maldor().setIdentifier(which, identifierOf(zylcs));
    mSettingsHolder->saveSettings();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs,
                                                 int32_t zylcsSize, uint8_t* work,
                                                 int32_t workSize) {
    if (mGeneration != kMaldor) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    // Refuses every route that is not an accessory's.
    int32_t result = maldor().applyAccessoryZylcsTuning(static_cast<zylRoute>(route), data);
    if (result != 0) return result;
    {
        ServiceLock lock(gServiceLock);
        result = reloadBlocks({static_cast<CacheBlockType>(route)}, true);
    }
    return result != 0 ? result : remember(*accessoryIdentifier(route), data);
}

int32_t zyl_kwo_service::setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs,
                                                  int32_t zylcsSize, uint8_t* work,
                                                  int32_t workSize) {
    if (mGeneration != kMaldor) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    int32_t result = maldor().applyZylcsStereoRooms(index, data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    if (result != 0) return result;
    // A room for no output is in force all the same; only its name has no place.
    const std::optional<Identifier> identifier = stereoRoomIdentifier(index);
    return identifier ? remember(*identifier, data) : kZylKwoBadArgument;
}

int32_t zyl_kwo_service::setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                        uint8_t* work, int32_t workSize) {
    if (mGeneration != kMaldor) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    int32_t result = maldor().applyZylcsMultiChannelRoom(data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    return result != 0 ? result : remember(Identifier::kMultiChannelRoom, data);
}

int32_t zyl_kwo_service::getName(std::optional<Identifier> identifier, char* name,
                                 const int32_t* length) {
    if (mGeneration != kMaldor) return kZylKwoNotAvailable;
    if (!identifier) return kZylKwoBadArgument;
    const std::string text = maldor().getIdentifier(*identifier);
    const size_t copied = text.copy(name, static_cast<size_t>(*length) - 1);
    name[copied] = '\0';
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) {
    return getName(Identifier::kSpeakerOn, name, length);
}

int32_t zyl_kwo_service::getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize],
                                                         int32_t* length) {
    return getName(Identifier::kSpeakerOff, name, length);
}

int32_t zyl_kwo_service::getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                     int32_t* length) {
    return getName(accessoryIdentifier(route), name, length);
}

int32_t zyl_kwo_service::getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                      int32_t* length) {
    return getName(stereoRoomIdentifier(index), name, length);
}

int32_t zyl_kwo_service::getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                            int32_t* length) {
    return getName(Identifier::kMultiChannelRoom, name, length);
}
