// The only door into the service: unpacks a transaction, calls its operation, packs the reply.
//
// Runs on any binder thread, holds no lock and keeps all its buffers on the stack or in the call.
// What the interface token does not open is answered PERMISSION_DENIED before anything is read.

#ifndef ZYL_SERVICE_BN_ZYL_KWO_SERVICE_H
#define ZYL_SERVICE_BN_ZYL_KWO_SERVICE_H

#include <binder/Parcel.h>

#include <atomic>

#include "interface/Izyl_kwo_service.h"

class Bn_zyl_kwo_service : public android::BnInterface<Izyl_kwo_service> {
  public:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    using Handler = android::status_t (Bn_zyl_kwo_service::*)(const android::Parcel& data,
                                                              android::Parcel* reply);
    static Handler handlerFor(uint32_t code);

    // One for each code, in the order of the codes.
    android::status_t onGetPlatformInfo(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetEnabled(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetEnabled(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetStereoMode(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetStereoMode(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetTuning(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetTuning(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetGEQGain(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetGEQGain(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetVersionString(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetGEQEnable(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetGEQEnable(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetGEQGainAll(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetGEQGainAll(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetSpeakerZylcsTuning(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetSecondSpeakerZylcsTuning(const android::Parcel& data,
                                                    android::Parcel* reply);
    android::status_t onGetSpeakerZylcsTuningName(const android::Parcel& data,
                                                  android::Parcel* reply);
    android::status_t onGetSecondSpeakerZylcsTuningName(const android::Parcel& data,
                                                        android::Parcel* reply);
    android::status_t onSetAccessoryZylcsTuning(const android::Parcel& data,
                                                android::Parcel* reply);
    android::status_t onGetAccessoryZylcsTuningName(const android::Parcel& data,
                                                    android::Parcel* reply);
    android::status_t onSetStereoRoomZylcsTuning(const android::Parcel& data,
                                                 android::Parcel* reply);
    android::status_t onGetStereoRoomZylcsTuningName(const android::Parcel& data,
                                                     android::Parcel* reply);
    android::status_t onSetMultiChannelRoomZylcsTuning(const android::Parcel& data,
                                                       android::Parcel* reply);
    android::status_t onGetMultiChannelRoomZylcsTuningName(const android::Parcel& data,
                                                           android::Parcel* reply);
    android::status_t onSetListeningTestResult(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetListeningTestResult(const android::Parcel& data, android::Parcel* reply);
    android::status_t onResetListeningTestResult(const android::Parcel& data,
                                                 android::Parcel* reply);
    android::status_t onGetActiveRoute(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetActiveRoute(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetReloadFlag(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetRouteMask(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetFileDescriptor(const android::Parcel& data, android::Parcel* reply);
    android::status_t onFetchCacheBlock(const android::Parcel& data, android::Parcel* reply);
    android::status_t onPushCacheBlock(const android::Parcel& data, android::Parcel* reply);
    android::status_t onGetDbLevels(const android::Parcel& data, android::Parcel* reply);
    android::status_t onSetDbGain(const android::Parcel& data, android::Parcel* reply);

    // Of blobs that stay allocated; see Bn_zylcs_transactions.cpp.
    std::atomic<size_t> mKeptBytes{0};
};

#endif  // ZYL_SERVICE_BN_ZYL_KWO_SERVICE_H
