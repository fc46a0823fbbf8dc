// Tuning data from clients, Maldor only. The records are changed before gServiceLock is taken.
// Under it the blocks that the records are for are loaded anew.

#include <algorithm>
#include <cstring>

#include "service/zyl_kwo_service.h"

namespace {

using TuningName = zylSettingsStructMaldor::TuningName;

// Where the names are kept of data that there is for lineout and for bluetooth.
constexpr TuningName kAccessories[] = {TuningName::kLineoutAccessory,
                                       TuningName::kBluetoothAccessory};
constexpr TuningName kStereoRooms[] = {TuningName::kLineoutStereoRoom,
                                       TuningName::kBluetoothStereoRoom};

// Index 1 is lineout's, 2 is bluetooth's; null for others.
const TuningName* nameAt(const TuningName (&names)[2], int32_t index) {
    if (index != kRouteLineout && index != kRouteBluetooth) return nullptr;
    return &names[index - kRouteLineout];
}

// Tuning data begins with its name and a NUL. Without a NUL all of it is the name. No more of it is
// looked at than can be kept. It is read before the conversion library gets the data.
std::string nameOf(const ZylcsData& zylcs) {
    const auto* text = reinterpret_cast<const char*>(zylcs.bytes);
    const size_t searched = std::min<size_t>(static_cast<uint32_t>(zylcs.size), kZylcsNameSize - 1);
    return std::string(text, strnlen(text, searched));
}

}  // namespace

int32_t zyl_kwo_service::setSpeakerTuning(bool on, const ZylcsData& zylcs) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const std::string name = nameOf(zylcs);
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applySpeakerZylcsTuning(on, zylcs);
    if (result != 0) return result;
    const ScopedLock lock(gServiceLock);
    result = reloadBlocks({kBlockSpeaker}, settings().getEnabled() != 0);
    if (result != 0) return result;
    return remember(on ? TuningName::kSpeakerOn : TuningName::kSpeakerOff, name);
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

// The operations below call this after gServiceLock was released, those above under it.
int32_t zyl_kwo_service::remember(TuningName which, const std::string& name) {
    mMaldor->setName(which, name);
    mMaldor->SaveStruct();
    return kZylKwoOk;
}

int32_t zyl_kwo_service::setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs,
                                                 int32_t zylcsSize, uint8_t* work,
                                                 int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const std::string name = nameOf(data);
    const ScopedLock turn(gRecordLock);
    // This refuses every other route than lineout and bluetooth.
    int32_t result = mMaldor->applyAccessoryZylcsTuning(static_cast<zylRoute>(route), data);
    if (result != 0) return result;
    {
        const ScopedLock lock(gServiceLock);
        result = reloadBlocks({static_cast<CacheBlockType>(route)}, true);
    }
    return result != 0 ? result : remember(*nameAt(kAccessories, route), name);
}

int32_t zyl_kwo_service::setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs,
                                                  int32_t zylcsSize, uint8_t* work,
                                                  int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const std::string name = nameOf(data);
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applyZylcsStereoRooms(index, data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    if (result != 0) return result;
    // A room with another index is in force all the same, but there is no place for its name.
    const TuningName* const which = nameAt(kStereoRooms, index);
    return which != nullptr ? remember(*which, name) : int32_t{kZylKwoBadArgument};
}

int32_t zyl_kwo_service::setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize,
                                                        uint8_t* work, int32_t workSize) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    const ZylcsData data = {zylcs, zylcsSize, work, workSize};
    const std::string name = nameOf(data);
    const ScopedLock turn(gRecordLock);
    int32_t result = mMaldor->applyZylcsMultiChannelRoom(data);
    if (result == 0) result = reloadLineoutAndBluetooth();
    return result != 0 ? result : remember(TuningName::kMultiChannelRoom, name);
}

int32_t zyl_kwo_service::getName(const TuningName* which, char* name, const int32_t* length) {
    if (mMaldor == nullptr) return kZylKwoNotAvailable;
    if (which == nullptr) return kZylKwoBadArgument;
    const std::string text = mMaldor->getName(*which);
    const size_t copied = text.copy(name, static_cast<size_t>(*length) - 1);
    name[copied] = '\0';
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) {
    const TuningName which = TuningName::kSpeakerOn;
    return getName(&which, name, length);
}

int32_t zyl_kwo_service::getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize],
                                                         int32_t* length) {
    const TuningName which = TuningName::kSpeakerOff;
    return getName(&which, name, length);
}

int32_t zyl_kwo_service::getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                                     int32_t* length) {
    return getName(nameAt(kAccessories, route), name, length);
}

int32_t zyl_kwo_service::getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                                      int32_t* length) {
    return getName(nameAt(kStereoRooms, index), name, length);
}

int32_t zyl_kwo_service::getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize],
                                                            int32_t* length) {
    const TuningName which = TuningName::kMultiChannelRoom;
    return getName(&which, name, length);
}
