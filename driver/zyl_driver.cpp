// The device node and its requests.

#include "driver/zyl_driver.h"

#include <android/log.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <media/AudioSystem.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

#include "driver/descriptor.h"
#include "driver/driver_log.h"

const char kDevicePath[] = "/dev/zyl_quorin";

uint32_t g_deviceMasks[kCacheBlockCount] = {0x00000002, 0x0002000C, 0x000003F0};

namespace {

constexpr int kOpenAttempts = 12;
constexpr useconds_t kOpenRetryDelay = 100 * 1000;

// Logs the nanoseconds without their second. The line is fixed, see docs/operating.md.
void logUploadTime() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get("zyl.kwo.log_time", value, nullptr);
    if (strncmp(value, "true", 4) != 0) return;
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    __android_log_print(ANDROID_LOG_INFO, kDriverLogTag,
                        "system time before sending parameters to driver %li", now.tv_nsec);
}

}  // namespace

int zylDriver::openDevice() {
    for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
        if (mStandingDescriptor > -1) return mStandingDescriptor;
        const int fd = openOnce(kDevicePath, O_RDWR);
        if (fd == 0) mStandingDescriptor = fd;
        if (fd > -1) return fd;
        usleep(kOpenRetryDelay);
    }
    return -1;
}

// With no device the request is made on -1, and fails as any other refused request does.
int zylDriver::request(QuorinRequest request, void* argument) {
    const int fd = openDevice();
    const int result = ioctl(fd, request, argument);
    if (fd >= 1) close(fd);
    return result;
}

int zylDriver::initDriverCache() {
    mPipelineSize = reportedPipelineSize();
    if (mPipelineSize == 0) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "int zylDriver::initDriverCache(): the conversion library reports no "
                            "pipeline of a size that can be");
    }
    uint32_t cacheSize = kCacheBlockCount * mPipelineSize;
    request(kRequestSetCacheSize, &cacheSize);
    return 0;
}

int zylDriver::configureCacheBlocks() {
    ReadDevicesCSV();
    const _zylZylcsQuorinPipeLineInfo info = reportedPipeline();
    for (uint32_t block = 0; block < kCacheBlockCount; ++block) {
        CacheBlockConfig config = {};
        config.block = block;
        config.mask = g_deviceMasks[block];
        config.offset = info.words[0] * block;
        config.pipelineId = QUORIN_PIPELINE_ID;
        config.info1 = info.words[1];
        config.info4 = info.words[4];
        config.info3 = info.words[3];
        config.info6 = info.words[6];
        config.auxId = QUORIN_PIPELINE_AUX_ID;
        config.info5 = info.words[5];
        config.info8 = info.words[8];
        config.info7 = info.words[7];
        request(kRequestConfigureBlock, &config);
    }
    return 0;
}

ParamBlockHeader zylDriver::wholePipelineHeader(CacheBlockType block) const {
    return {QUORIN_PIPELINE_ID, mPipelineSize, 0, g_deviceMasks[block]};
}

int zylDriver::sendParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) {
    *ctrl.header() = wholePipelineHeader(block);
    return upload(ctrl.header());
}

int zylDriver::sendParam(ParameterBuffer& buffer, int32_t id, uint32_t size, int32_t offset,
                         CacheBlockType block) {
    *buffer.header() = {static_cast<uint32_t>(id), size, static_cast<uint32_t>(offset),
                        g_deviceMasks[block]};
    return upload(buffer.header());
}

int zylDriver::upload(ParamBlockHeader* header) {
    logUploadTime();
    const int result = request(kRequestWriteBlock, header);
    notifyNewParams();
    return result;
}

// To clear the image first would cost as much as all else here. The DSP fills it from the front, as
// a rule to its end: only where that was not reached is it cleared, and read once more.
int zylDriver::readParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType block) {
    *ctrl.header() = wholePipelineHeader(block);
    ctrl.mark();
    const int result = request(kRequestReadBlock, ctrl.header());
    if (result != 0 || !ctrl.isMarked()) return result;
    ctrl.clear();
    return request(kRequestReadBlock, ctrl.header());
}

int zylDriver::notifyNewParams() {
    static const android::String8 announcement("ZYL_NEW_PARAM_READY=1");
    return android::AudioSystem::setParameters(0, announcement);
}
