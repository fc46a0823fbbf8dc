// The parts of the dispatcher that all handlers of transactions share.

#ifndef ZYL_SERVICE_TRANSACTION_H
#define ZYL_SERVICE_TRANSACTION_H

#include <android/log.h>
#include <binder/Parcel.h>

#include <atomic>

#include "interface/Izyl_kwo_service.h"
#include "service/process.h"

// Given to a handler once the token was checked. The arguments are next in `data`.
struct Transaction {
    Izyl_kwo_service& service;
    const android::Parcel& data;
    android::Parcel* reply;
    std::atomic<size_t>& keptBytes;
};

// Reads the arguments, calls the operation and writes the reply. Returns the transaction's status.
using Handler = android::status_t (*)(const Transaction& transaction);

// Bn_zylcs_transactions.cpp: codes 19 to 28; null for all others.
Handler zylcsHandlerFor(uint32_t code);

constexpr char kDispatcherFunction[] =
        "virtual status_t Bn_zyl_kwo_service::onTransact(uint32_t, const android::Parcel &, "
        "android::Parcel *, uint32_t)";

inline android::status_t fail(const char* message) {
    __android_log_print(ANDROID_LOG_ERROR, kServiceLogTag, message, kDispatcherFunction);
    return android::FAILED_TRANSACTION;
}

// Ends a transaction according to the status of its last write.
inline android::status_t finish(android::status_t written, const char* message) {
    return written == android::NO_ERROR ? android::NO_ERROR : fail(message);
}

// The same for codes that fail without a log line.
inline android::status_t finishSilently(android::status_t written) {
    return written == android::NO_ERROR ? android::NO_ERROR : android::FAILED_TRANSACTION;
}

// Writes an operation's result and what it reports. In one step: a reply that grows is allocated
// time and again.
template <typename Value>
android::status_t writeWithResult(android::Parcel* reply, int32_t result, const Value* values,
                                  int count = 1) {
    const size_t size = (1 + static_cast<size_t>(count)) * sizeof(int32_t);
    auto* const words = static_cast<int32_t*>(reply->writeInplace(size));
    if (words == nullptr) return android::NO_MEMORY;
    words[0] = result;
    for (int i = 0; i < count; ++i) words[1 + i] = static_cast<int32_t>(values[i]);
    return android::NO_ERROR;
}

#endif  // ZYL_SERVICE_TRANSACTION_H
