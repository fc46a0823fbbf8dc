// The files that the driver reads: tuning files and the device-mask file.

#include <android/log.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "driver/driver_log.h"
#include "driver/zyl_driver.h"

const char* g_tuningDirectory = kMaldorTuningDirectory;

namespace {

// The doubled slashes appear in log lines that people search for.
constexpr char kDeviceMaskFile[] = "//data//misc//zyl//cache-mask.csv";

constexpr int kBadBlock = -1;
constexpr int kNotOpened = -2;
constexpr int kTooShort = -4;

}  // namespace

int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl& ctrl, CacheBlockType type,
                              const std::string& name) {
    if (type > kBlockBluetooth) return kBadBlock;
    const std::string path = g_tuningDirectory + name;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path.c_str(), "re"), fclose);
    if (file == nullptr) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Tuning file cannot be opened [%s]",
                            "int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl &, "
                            "CacheBlockType, std::string)",
                            path.c_str());
        return kNotOpened;
    }
    // Read aside first, so that a short file leaves the caller's image whole.
    zylQuorinPipelineCtrl image(zylQuorinPipelineCtrl::kWithoutHeader);
    if (mPipelineSize > image.pipelineSize() || mPipelineSize > ctrl.pipelineSize()) {
        return kTooShort;
    }
    if (fread(image.data(), 1, mPipelineSize, file.get()) != mPipelineSize) return kTooShort;
    memcpy(ctrl.data(), image.data(), mPipelineSize);
    return 0;
}

void zylDriver::ReadDevicesCSV() {
    constexpr char kFunction[] = "void zylDriver::ReadDevicesCSV()";
    std::ifstream file(kDeviceMaskFile);
    if (!file.is_open()) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Error while trying to open file for device mask (file:%s), "
                            "Using default values",
                            kFunction, kDeviceMaskFile);
        return;
    }
    std::array<uint32_t, kCacheBlockCount> masks;
    size_t count = 0;
    std::string token;
    while (count < masks.size() && file.good()) {
        std::getline(file, token, ',');
        // Text without digits counts as 0. NOLINTNEXTLINE(cert-err34-c)
        masks[count++] = static_cast<uint32_t>(atoi(token.c_str()));
    }
    if (count < masks.size()) {
        __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                            "%s: Error reading mask cache file ...(file:%s), using defaults",
                            kFunction, kDeviceMaskFile);
        return;
    }
    memcpy(g_deviceMasks, masks.data(), sizeof(g_deviceMasks));
}
