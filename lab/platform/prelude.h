// Comes before every file that sees the platform's headers: what Bionic's headers bring along and
// glibc's do not.
#pragma once

#include <linux/types.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <string>

using std::memory_order_acquire;
using std::memory_order_relaxed;
using std::memory_order_release;

#define SIZE_T_MAX SIZE_MAX
