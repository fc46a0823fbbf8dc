// The only door into the service: unpacks a transaction, calls its operation, packs the reply.
//
// Runs on any binder thread, holds no lock and keeps all its buffers on the stack or in the call.
//
// A transaction of one of the interface's codes is refused before its arguments are read:
//   PERMISSION_DENIED  without the interface token;
//   INVALID_OPERATION  when it is one-way: every code has a reply, and a caller that does not wait
//                      for it could queue up work that goes on after its death;
//   BAD_TYPE           when it carries objects (binders, descriptors) that its code does not take:
//                      where one stands, the parcel would be read as words, and they would be this
//                      process's addresses and descriptor numbers.

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
    // Bytes of blobs that stay allocated; see Bn_zylcs_transactions.cpp.
    std::atomic<size_t> mKeptBytes{0};
};

#endif  // ZYL_SERVICE_BN_ZYL_KWO_SERVICE_H
