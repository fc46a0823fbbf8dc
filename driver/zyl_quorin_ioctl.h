// The interface of the kernel driver behind /dev/zyl_quorin: its four requests and their arguments.
// All fields are 32-bit in host byte order (little-endian on the phone).

#ifndef ZYL_DRIVER_ZYL_QUORIN_IOCTL_H
#define ZYL_DRIVER_ZYL_QUORIN_IOCTL_H

#include <sys/ioctl.h>

#include <cstddef>
#include <cstdint>

// One object in the whole program, so that it can be compared by identity.
extern const char kDevicePath[];

// The id that stands for the whole pipeline, and the second id that every CacheBlockConfig carries.
constexpr uint32_t QUORIN_PIPELINE_ID = 0x10015100;
constexpr uint32_t QUORIN_PIPELINE_AUX_ID = 0x1001522C;

// The parameter cache of the DSP holds one block for each output route.
constexpr int kCacheBlockCount = 3;

// Every request number encodes an argument of four bytes, the size of the pointer, however large
// the structure behind the pointer is. The numbers are the kernel driver's and do not follow from
// the structures.
enum QuorinRequest : uint32_t {
    kRequestSetCacheSize = 0x4004F201,    // argument: uint32_t, bytes of all three blocks together
    kRequestReadBlock = 0x8004F202,       // argument: ParamBlockHeader; its payload is filled
    kRequestWriteBlock = 0x4004F203,      // argument: ParamBlockHeader and its payload
    kRequestConfigureBlock = 0x4004F204,  // argument: CacheBlockConfig
};

static_assert(kRequestSetCacheSize == _IOC(_IOC_WRITE, 0xF2, 1, 4) &&
                      kRequestReadBlock == _IOC(_IOC_READ, 0xF2, 2, 4) &&
                      kRequestWriteBlock == _IOC(_IOC_WRITE, 0xF2, 3, 4) &&
                      kRequestConfigureBlock == _IOC(_IOC_WRITE, 0xF2, 4, 4),
              "fixed by the kernel driver");

// Stands directly in front of its payload of `size` bytes.
struct ParamBlockHeader {
    uint32_t id;      // QUORIN_PIPELINE_ID, or a parameter's id
    uint32_t size;    // length of the payload in bytes
    uint32_t offset;  // where in the pipeline the payload belongs
    uint32_t mask;    // device mask of the target block
};
static_assert(sizeof(ParamBlockHeader) == 16 && offsetof(ParamBlockHeader, id) == 0 &&
                      offsetof(ParamBlockHeader, size) == 4 &&
                      offsetof(ParamBlockHeader, offset) == 8 &&
                      offsetof(ParamBlockHeader, mask) == 12,
              "fixed by the kernel driver");

// Describes one block of the cache. The infoN fields are layout words of the conversion library,
// named by their index there. The kernel driver has them in this order.
struct CacheBlockConfig {
    uint32_t block;   // 0, 1 or 2
    uint32_t mask;    // device mask that binds the block to its outputs
    uint32_t offset;  // where in the cache the block begins, in bytes
    uint32_t pipelineId;
    uint32_t info1;
    uint32_t info4;
    uint32_t zero24;
    uint32_t info3;
    uint32_t info6;
    uint32_t auxId;
    uint32_t info5;
    uint32_t info8;
    uint32_t zero48;
    uint32_t info7;
};
static_assert(sizeof(CacheBlockConfig) == 56, "fixed by the kernel driver");
static_assert(offsetof(CacheBlockConfig, block) == 0 && offsetof(CacheBlockConfig, mask) == 4 &&
                      offsetof(CacheBlockConfig, offset) == 8 &&
                      offsetof(CacheBlockConfig, pipelineId) == 12 &&
                      offsetof(CacheBlockConfig, info1) == 16 &&
                      offsetof(CacheBlockConfig, info4) == 20 &&
                      offsetof(CacheBlockConfig, zero24) == 24 &&
                      offsetof(CacheBlockConfig, info3) == 28 &&
                      offsetof(CacheBlockConfig, info6) == 32 &&
                      offsetof(CacheBlockConfig, auxId) == 36 &&
                      offsetof(CacheBlockConfig, info5) == 40 &&
                      offsetof(CacheBlockConfig, info8) == 44 &&
                      offsetof(CacheBlockConfig, zero48) == 48 &&
                      offsetof(CacheBlockConfig, info7) == 52,
              "fixed by the kernel driver");

#endif  // ZYL_DRIVER_ZYL_QUORIN_IOCTL_H
