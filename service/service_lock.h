// The lock by which operations take turns.

#ifndef ZYL_SERVICE_SERVICE_LOCK_H
#define ZYL_SERVICE_SERVICE_LOCK_H

#include "settings/settings_struct_maldor.h"

// Held by an operation from its first look at the settings to its last request to the DSP, file
// access included. Not recursive. zyl_kwo_service.h names the operations that run without it.
extern FairLock gServiceLock ZYL_ACQUIRED_AFTER(gRecordLock);

#endif  // ZYL_SERVICE_SERVICE_LOCK_H
