// What the whole process shares: its version and log tag.

#ifndef ZYL_SERVICE_PROCESS_H
#define ZYL_SERVICE_PROCESS_H

constexpr char kServiceVersion[] = "1.0.3.5.0";

// Tag of everything above the driver and the settings.
constexpr char kServiceLogTag[] = "zyl_kwo_service service";

#endif  // ZYL_SERVICE_PROCESS_H
