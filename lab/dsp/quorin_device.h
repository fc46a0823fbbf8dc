// The interface of /dev/zyl_quorin as its kernel driver has it: the device's own words for it,
// which share nothing with whoever sends the requests. A mistake on either side shows.

#ifndef ZYL_LAB_DSP_QUORIN_DEVICE_H
#define ZYL_LAB_DSP_QUORIN_DEVICE_H

#include <linux/ioctl.h>

#include <cstdint>

namespace quorin {

constexpr char kNode[] = "/dev/zyl_quorin";
constexpr int kBlockCount = 3;

// Each request has a pointer, of 32 bits on the phone, to its argument.
constexpr unsigned kType = 0xF2;
constexpr uint32_t kSetCache = _IOW(kType, 1, uint32_t);   // CacheSize
constexpr uint32_t kRead = _IOR(kType, 2, uint32_t);       // Slice, filled behind its words
constexpr uint32_t kWrite = _IOW(kType, 3, uint32_t);      // Slice and its bytes
constexpr uint32_t kBindBlock = _IOW(kType, 4, uint32_t);  // Binding

// The id that stands for all of a block, and the one that is the last of a binding's first nine
// words.
constexpr uint32_t kWholeBlock = 0x10015100;
constexpr uint32_t kAuxiliary = 0x1001522C;

// Arguments are rows of 32-bit words; these are their places.
namespace slice {
enum Word { kId, kLength, kStart, kMask, kWords };
}
namespace binding {
enum Word { kBlock, kMask, kStart, kPipeline, kAux = 9, kWords = 14 };
}

using Slice = uint32_t[slice::kWords];

}  // namespace quorin

#endif  // ZYL_LAB_DSP_QUORIN_DEVICE_H
