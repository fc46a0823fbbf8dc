#include "service/zyl_kwo_service.h"

int32_t zyl_kwo_service::setSpeakerZylcsTuning(const uint8_t*, int32_t, uint8_t*, int32_t) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::setSecondSpeakerZylcsTuning(const uint8_t*, int32_t, uint8_t*, int32_t) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::setAccessoryZylcsTuning(int32_t, const uint8_t*, int32_t, uint8_t*,
                                                 int32_t) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::setStereoRoomZylcsTuning(int32_t, const uint8_t*, int32_t, uint8_t*,
                                                  int32_t) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::setMultiChannelRoomZylcsTuning(const uint8_t*, int32_t, uint8_t*,
                                                        int32_t) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getSpeakerZylcsTuningName(char*, int32_t*) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getSecondSpeakerZylcsTuningName(char*, int32_t*) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getAccessoryZylcsTuningName(int32_t, char*, int32_t*) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getStereoRoomZylcsTuningName(int32_t, char*, int32_t*) {
    return kZylKwoNotAvailable;
}

int32_t zyl_kwo_service::getMultiChannelRoomZylcsTuningName(char*, int32_t*) {
    return kZylKwoNotAvailable;
}
