#include "service/service_lock.h"

android::Mutex gServiceLock;
