// The service reaches the DSP only through this: its device node, the tuning files that fill its
// cache blocks, and the texts that the audio system has about it.
//
// The driver has no lock of its own. The three start-up operations (initDriverCache,
// configureCacheBlocks, ReadDevicesCSV) run before any client can call. All others may run on
// several threads at once: each request opens the device for itself and holds its own descriptor.
//
// A failed request is not logged; the result says it. When the device cannot be opened, twelve
// attempts are made in 1.2 seconds, and then the request fails like a refused one.

#ifndef ZYL_DRIVER_ZYL_DRIVER_H
#define ZYL_DRIVER_ZYL_DRIVER_H

#include <atomic>
#include <cstdint>
#include <string>

#include "driver/parameter_table.h"
#include "driver/pipeline.h"
#include "driver/zyl_quorin_ioctl.h"
#include "interface/zyl_kwo_types.h"

// A block of the DSP's parameter cache; its number is also the number of the output route it
// serves.
enum CacheBlockType : int32_t {
    kBlockSpeaker = 0,
    kBlockLineout = 1,
    kBlockBluetooth = 2,
};

static_assert(kBlockSpeaker == static_cast<int>(kRouteSpeaker) &&
                      kBlockLineout == static_cast<int>(kRouteLineout) &&
                      kBlockBluetooth == static_cast<int>(kRouteBluetooth) &&
                      kCacheBlockCount == kRouteCount,
              "one block for each route, by its number");

// The directory of the tuning files, with a trailing slash. Set once, while the service is
// constructed.
extern const char* g_tuningDirectory;

// The device mask of each cache block: the default, or the one that ReadDevicesCSV has set.
extern uint32_t g_deviceMasks[kCacheBlockCount];

class zylDriver {
  public:
    zylDriver() = default;
    zylDriver(const zylDriver&) = delete;
    zylDriver& operator=(const zylDriver&) = delete;

    // Learns the pipeline size and tells the DSP how large its cache is. Always 0.
    int initDriverCache();

    // Reads the device masks and describes each cache block to the DSP. Always 0.
    int configureCacheBlocks();

    // Replaces all three device masks by those of the mask file, or leaves all three alone and logs
    // why.
    void ReadDevicesCSV();

    // Fills `ctrl` from a tuning file; `name` is relative to g_tuningDirectory. Returns a
    // zylKwoErrors: kZylKwoBadArgument for a block above 2, kZylKwoTuningNotLoadable when the file
    // cannot be opened (logged), kZylKwoTuningTooShort. On failure `ctrl` keeps its contents,
    // unless the file is cut while it is read.
    int LoadParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType type, const std::string& name);

    // Upload a whole pipeline, or `size` bytes of one parameter, into a cache block, then tell the
    // audio system, even when the DSP refused. `ctrl` was made with a header; `buffer` holds a
    // payload of at least `size` bytes. Return 0, or -1 when the DSP refused.
    int sendParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block);
    int sendParam(ParameterBuffer& buffer, int32_t id, uint32_t size, int32_t offset,
                  CacheBlockType block);

    // Reads a cache block back; what the DSP leaves out is zeros. `ctrl` was made with a header.
    // Returns 0, or -1.
    int readParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block);

    // Tells the audio system that new parameters are in place; returns its status.
    int notifyNewParams();

    uint32_t getDeviceMask(CacheBlockType block) const { return g_deviceMasks[block]; }

    // Store the audio system's text about the effect in `dest` of `size` bytes, NUL-terminated. The
    // first two leave out what stands in front of the key in the reply. Return 0, or
    // kZylKwoTextDoesNotFit (logged) when the reply does not fit or, for the first two, lacks its
    // key; then `dest` keeps its contents.
    int getQuorinVersion(char* dest, unsigned int size);
    int getQuorinDescription(char* dest, unsigned int size);
    int getQuorinPlatformVersion(char* dest, unsigned int size);

  private:
    int openDevice();
    int request(QuorinRequest request, void* argument);
    int upload(ParamBlockHeader* header);
    ParamBlockHeader wholePipelineHeader(CacheBlockType block) const;
    int queryFromKey(const char* key, const char* failure, const char* function, char* dest,
                     unsigned int size);

    // -1, or 0 once open() has returned 0. That descriptor serves all later requests and is never
    // closed, as devices have it; the next file that anyone opens would otherwise become standard
    // input.
    std::atomic<int> mStandingDescriptor{-1};

    // Set by initDriverCache; until then uploads carry a size of 0.
    uint32_t mPipelineSize = 0;
};

#endif  // ZYL_DRIVER_ZYL_DRIVER_H
