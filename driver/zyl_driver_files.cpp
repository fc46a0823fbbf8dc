// The files that the driver reads: tuning files and the device-mask file.

#include <android/log.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "driver/data_directory.h"
#include "driver/descriptor.h"
#include "driver/driver_log.h"
#include "driver/zyl_driver.h"

const char* g_tuningDirectory = ZYL_DATA_DIRECTORY;

namespace {

constexpr char kDeviceMaskFile[] = ZYL_LOGGED_DATA_DIRECTORY "cache-mask.csv";

// More than three numbers can need; what lies behind it is not read.
constexpr size_t kMostOfMaskFile = 4096;

// Takes three numbers, separated by commas, out of a text that ends in a NUL at `end`; fewer leave
// the masks alone.
bool parseMasks(const char* text, const char* end, uint32_t (&masks)[kCacheBlockCount]) {
    uint32_t parsed[kCacheBlockCount];
    for (uint32_t& mask : parsed) {
        if (text > end) return false;
        // Text without digits counts as 0. NOLINTNEXTLINE(cert-err34-c)
        mask = static_cast<uint32_t>(atoi(text));
        text = std::find(text, end, ',') + 1;
    }
    std::copy(std::begin(parsed), std::end(parsed), masks);
    return true;
}

}  // namespace

int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType type,
                              const std::string& name) {
    if (type > kBlockBluetooth) return kZylKwoBadArgument;
    const std::string path = g_tuningDirectory + name;
    const Descriptor file = openFile(path.c_str(), O_RDONLY);
    if (!file.isOpen()) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Tuning file cannot be opened [%s]",
                            "int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl &, "
                            "CacheBlockType, std::string)",
                            path.c_str());
        return kZylKwoTuningNotLoadable;
    }
    // Its length is known before it is read, so that a short file leaves the image whole.
    struct stat about = {};
    const bool holdsImage =
            fstat(file.get(), &about) == 0 && about.st_size >= static_cast<off_t>(mPipelineSize);
    if (!holdsImage || mPipelineSize > ctrl.pipelineSize()) return kZylKwoTuningTooShort;
    return readFully(file, ctrl.data(), mPipelineSize) ? kZylKwoOk : kZylKwoTuningTooShort;
}

void zylDriver::ReadDevicesCSV() {
    constexpr char kFunction[] = "void zylDriver::ReadDevicesCSV()";
    const Descriptor file = openFile(kDeviceMaskFile, O_RDONLY);
    if (!file.isOpen()) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Error while trying to open file for device mask (file:%s), "
                            "Using default values",
                            kFunction, kDeviceMaskFile);
        return;
    }
    char text[kMostOfMaskFile + 1] = {};
    size_t length = 0;
    readFully(file, text, kMostOfMaskFile, &length);
    if (!parseMasks(text, text + length, g_deviceMasks)) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Error reading mask cache file ...(file:%s), using defaults",
                            kFunction, kDeviceMaskFile);
    }
}
