// The lock that makes operations take turns.

#ifndef ZYL_SERVICE_SERVICE_LOCK_H
#define ZYL_SERVICE_SERVICE_LOCK_H

#include <utils/Mutex.h>

// Held by an operation from its first look at the settings to its last request to the DSP, file
// access included. Not recursive. zyl_kwo_service.h names the operations that run without it.
extern android::Mutex gServiceLock;

using ServiceLock = android::Mutex::Autolock;

#endif  // ZYL_SERVICE_SERVICE_LOCK_H
