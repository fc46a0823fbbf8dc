// The dispatcher is the only door into the service. It unpacks a transaction, calls the operation
// and packs the reply. It runs on any binder thread, takes no lock, and keeps its buffers on the
// stack or for the length of the call, but for tuning data of the speaker, which stays allocated.
//
// It refuses a transaction of one of the interface's codes, before its arguments are read, with
//   PERMISSION_DENIED  when the interface token is missing or another one;
//   INVALID_OPERATION  when it is one-way. Every code has a reply, and a caller that does not wait
//                      for it could queue up work that goes on after its death;
//   BAD_TYPE           when it carries objects (binders, descriptors) that its code does not take.
//                      The platform's parcels read an object as words, too, and these are addresses
//                      and descriptor numbers of this process.
// A request of the platform's own is refused with BAD_VALUE when it is larger than any needs to be.

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
    // How many bytes of blobs stay allocated; see Bn_zylcs_transactions.cpp.
    std::atomic<size_t> mKeptBytes{0};
};

#endif  // ZYL_SERVICE_BN_ZYL_KWO_SERVICE_H
