// The client's side of the interface: one transaction a call, laid out as the service reads it.
// Obtained through Izyl_kwo_service::asInterface().

#ifndef ZYL_INTERFACE_BP_ZYL_KWO_SERVICE_H
#define ZYL_INTERFACE_BP_ZYL_KWO_SERVICE_H

#include "interface/Izyl_kwo_service.h"

class Bp_zyl_kwo_service : public android::BpInterface<Izyl_kwo_service> {
  public:
    explicit Bp_zyl_kwo_service(const android::sp<android::IBinder>& remote);

    int32_t getPlatformInfo(PlatformInfoRecord* info) override;
    int32_t unsupportedOperation() override;
    int32_t getEnabled(int32_t* enabled) override;
    int32_t setEnabled(int32_t enabled) override;
    int32_t getStereoMode(int32_t* mode) override;
    int32_t setStereoMode(int32_t mode) override;
    int32_t getTuning(int32_t route, int32_t* tuning) override;
    int32_t setTuning(int32_t route, int32_t tuning) override;
    int32_t getGEQGain(int32_t band, uint16_t* gain) override;
    int32_t setGEQGain(int32_t band, uint16_t gain) override;
    int32_t getGEQEnable(int32_t* enabled) override;
    int32_t setGEQEnable(int32_t enabled) override;
    int32_t getGEQGainAll(uint16_t gains[kGEQBandCount]) override;
    int32_t setGEQGainAll(const uint16_t gains[kGEQBandCount]) override;
    int32_t getVersionString(char* text, int32_t* length) override;
    int32_t setSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                  int32_t workSize) override;
    int32_t setSecondSpeakerZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                        int32_t workSize) override;
    int32_t setAccessoryZylcsTuning(int32_t route, const uint8_t* zylcs, int32_t zylcsSize,
                                    uint8_t* work, int32_t workSize) override;
    int32_t setStereoRoomZylcsTuning(int32_t index, const uint8_t* zylcs, int32_t zylcsSize,
                                     uint8_t* work, int32_t workSize) override;
    int32_t setMultiChannelRoomZylcsTuning(const uint8_t* zylcs, int32_t zylcsSize, uint8_t* work,
                                           int32_t workSize) override;
    int32_t getSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;
    int32_t getSecondSpeakerZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;
    int32_t getAccessoryZylcsTuningName(int32_t route, char name[kZylcsNameSize],
                                        int32_t* length) override;
    int32_t getStereoRoomZylcsTuningName(int32_t index, char name[kZylcsNameSize],
                                         int32_t* length) override;
    int32_t getMultiChannelRoomZylcsTuningName(char name[kZylcsNameSize], int32_t* length) override;
    int32_t setListeningTestResult(float a, float b, float c, float d) override;
    int32_t getListeningTestResult(float* a, float* b, float* c, float* d) override;
    int32_t resetListeningTestResult() override;
    int32_t getActiveRoute(int32_t* route) override;
    int32_t setActiveRoute(int32_t route) override;
    int32_t setReloadFlag(bool forced) override;
    int32_t getRouteMask(int32_t route, uint32_t* mask) override;
    int32_t setFileDescriptor(int fd, int32_t length) override;
    int32_t fetchCacheBlock(int32_t block) override;
    int32_t pushCacheBlock(int32_t block) override;
    int32_t getDbLevels(int32_t levels[kDbLevelCount]) override;
    int32_t setDbGain(const int32_t levels[kDbLevelCount]) override;

  private:
    // Codes with one layout for several kinds of tuning.
    int32_t sendZylcsTuning(Code code, const int32_t* selector, const uint8_t* zylcs,
                            int32_t zylcsSize, const uint8_t* work, int32_t workSize);
    int32_t receiveZylcsName(Code code, const int32_t* selector, char name[kZylcsNameSize],
                             int32_t* length);
};

#endif  // ZYL_INTERFACE_BP_ZYL_KWO_SERVICE_H
