// Tuning data from clients, Maldor only. The data is folded into the saved records before the
// service's lock is taken; under it the blocks that the records are for are loaded anew.

#include <algorithm>
#include <cstring>

#include "service/zyl_kwo_service.h"

namespace {

using Identifier = zylSettingsStructMaldor::Identifier;

// Where the names of what several outputs have are kept, by index; others have no place.
constexpr Identifier kAccessories[] = {Identifier::kLineoutAccessory,
                                       Identifier::kBluetoothAccessory};
constexpr Identifier kStereoRooms[] = {Identifier::kLineoutStereoRoom,
                                       Identifier::kBluetoothStereoRoom};

// Of index 1, lineout's, and 2, bluetooth's; null for others.
const Identifier* identifierAt(const Identifier (&identifiers)[2], int32_t index) {
    if (index != kRouteLineout && index != kRouteBluetooth) return nullptr;
    return &identifiers[index - kRouteLineout];
}

// Tuning data begins with its identifier; data without a NUL is identifier to its end. Nothing
// behind what can be kept is looked at.
std::string identifierOf(const ZylcsData& zylcs) {
    const auto* text = reinterpret_cast<const char*>(zylcs.bytes);
    const size_t searched = std::min<size_t>(static_cast<uint32_t>(zylcs.size), kZylcsNameSize - 1);
    return std::string(text, strnlen(text, searched));
}

}  // namespace

int32_t zyl_kwo_service::setSpeakerTuning(bool on, const ZylcsData& zylcs) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applySpeakerZylcsTuning(on, zylcs);
    if (result != 0) return result;
    const ScopedLock lock(gServiceLock);
    result = reloadBlocks({kBlockSpeaker}, settings().getEnabled() != 0);
    if (result != 0) return result;
    return remember(on ? Identifier::kSpeakerOn : Identifier::kSpeakerOff, zylcs);
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
    const ScopedLock lock(gServiceLock);
    return reloadBlocks({kBlockLineout, kBlockBluetooth}, true);
}

// For all that follows, after the service's lock is released.
int32_t zyl_kwo_service::remember(Identifier which, const ZylcsData& zylcs) {
    mMaldor->setIdentifier(which, identifierOf(zylcs));
    mMaldor->SaveStruct();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs,
                                                 int32_t zylcsSize, uint8_t* work,
                                                 int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const ScopedLock turn(gRecordLock);
    // Refuses every route that is not an accessory's.
    int32_t result = mMaldor->applyAccessoryZylcsTuning(static_cast<zylRoute>(route), data);
    if (result != 0) return result;
    {
        const ScopedLock lock(gServiceLock);
        result = reloadBlocks({static_cast<CacheBlockType>(route)}, true);
    }
    return result != 0 ? result : remember(*identifierAt(kAccessories, route), data);
}

int32_t zyl_kwo_service::setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs,
                                                  int32_t zylcsSize, uint8_t* work,
                                                  int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applyZylcsStereoRooms(index, data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    if (result != 0) return result;
    // A room for no output is in force all the same; only its name has no place.
    const Identifier* const which = identifierAt(kStereoRooms, index);
    return which != nullptr ? remember(*which, data) : int32_t{kZylKwoBadArgument};
}

int32_t zyl_kwo_service::setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                        uint8_t* work, int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applyZylcsMultiChannelRoom(data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    return result != 0 ? result : remember(Identifier::kMultiChannelRoom, data);
}

int32_t zyl_kwo_service::getName(const Identifier* which, char* name, const int32_t* length) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    if (which == nullptr) return kZylKwoBadArgument;
    const std::string text = mMaldor->getIdentifier(*which);
    const size_t copied = text.copy(name, static_cast<size_t>(*length) - 1);
    name[copied] = '\0';
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) {
    const Identifier which = Identifier::kSpeakerOn;
    return getName(&which, name, length);
}

int32_t zyl_kwo_service::getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize],
                                                         int32_t* length) {
    const Identifier which = Identifier::kSpeakerOff;
    return getName(&which, name, length);
}

int32_t zyl_kwo_service::getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                     int32_t* length) {
    return getName(identifierAt(kAccessories, route), name, length);
}

int32_t zyl_kwo_service::getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                      int32_t* length) {
    return getName(identifierAt(kStereoRooms, index), name, length);
}

int32_t zyl_kwo_service::getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                            int32_t* length) {
    const Identifier which = Identifier::kMultiChannelRoom;
    return getName(&which, name, length);
}
