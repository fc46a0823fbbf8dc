#include "service/service_lock.h"

FairLock gServiceLock;
