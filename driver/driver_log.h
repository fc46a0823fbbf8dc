#ifndef ZYL_DRIVER_DRIVER_LOG_H
#define ZYL_DRIVER_DRIVER_LOG_H

// The driver logs under the tag that the process uses while it starts.
constexpr char kDriverLogTag[] = "ZylcsToQuorinConv";

#endif  // ZYL_DRIVER_DRIVER_LOG_H
