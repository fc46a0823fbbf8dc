// The version and the log tag of the service.

#ifndef ZYL_SERVICE_PROCESS_H
#define ZYL_SERVICE_PROCESS_H

constexpr char kServiceVersion[] = "1.0.3.5.0";

// The tag of the dispatcher, the service object, its operations and the dump.
constexpr char kServiceLogTag[] = "zyl_kwo_service service";

#endif  // ZYL_SERVICE_PROCESS_H
