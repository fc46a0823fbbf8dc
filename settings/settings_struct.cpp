#include "settings/settings_struct.h"

#include <android/log.h>
#include <fcntl.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "driver/data_directory.h"
#include "driver/descriptor.h"
#include "settings/replace_file.h"

namespace {

constexpr char kSettingsFile[] = ZYL_LOGGED_DATA_DIRECTORY "zyl_kwo_settings";
constexpr const char* kSettingsName = kSettingsFile + sizeof(ZYL_LOGGED_DATA_DIRECTORY) - 1;

constexpr uint32_t kDefaultTuning[kRouteCount] = {1, 3, 0};

}  // namespace

void zylSettingsStruct::logError(const char* returnType, const char* operation, const char* format,
                                 ...) const {
    char message[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof(message), format, arguments);
    va_end(arguments);
    __android_log_print(ANDROID_LOG_ERROR, mTraits.logTag, "%s %s::%s: %s", returnType,
                        mTraits.className, operation, message);
}

void zylSettingsStruct::setStereoMode(uint32_t mode) {
    if (!isStereoMode(static_cast<int32_t>(mode))) {
        logError("virtual void", "setStereoMode(uint32_t)",
                 "stereo mode out of range error, mode tried %d", static_cast<int>(mode));
        return;
    }
    mImage.stereoMode = mode;
}

zylKwoErrors zylSettingsStruct::setGEQGain(uint32_t band, uint16_t gain) {
    if (band >= kGEQBandCount || mImage.geqEnable == 0 || !isGEQGain(gain)) {
        logError("virtual int32_t", "setGEQGain(uint32_t, uint16_t)",
                 "Setting GEQ gain out of range error, band %d", static_cast<int>(band));
        return kZylKwoBadArgument;
    }
    mImage.geqGain[band] = gain;
    return kZylKwoOk;
}

zylKwoErrors zylSettingsStruct::refuseToGetGEQGain(uint32_t band, uint16_t& gain) const {
    gain = 0;
    logError("virtual int32_t", "getGEQGain(uint32_t, uint16_t &)",
             "Getting GEQ gain out of range error, band %d", static_cast<int>(band));
    return kZylKwoBadArgument;
}

void zylSettingsStruct::SetDefaults() {
    mImage.version = mTraits.currentVersion;
    mImage.enabled = 1;
    mImage.stereoMode = 2;
    std::copy(std::begin(kDefaultTuning), std::end(kDefaultTuning), mImage.tuning);
    std::fill(std::begin(mImage.geqGain), std::end(mImage.geqGain), uint32_t{kNeutralGEQGain});
    mImage.geqEnable = 0;
}

void zylSettingsStruct::LoadStruct() {
    const Descriptor file = openFile(kSettingsFile, O_RDONLY);
    if (!file.isOpen()) {
        logError("virtual void", "LoadStruct()",
                 "Error while trying to open file for loading (file:%s)", kSettingsFile);
        SetDefaults();
        if (mTraits.createsMissingFile) SaveStruct();
        return;
    }
    // Read straight into the fields, so that what a short file holds counts.
    if (!readFully(file, &mImage, mTraits.imageSize)) {
        logError("virtual void", "LoadStruct()", "Error reading settings file ...(file:%s)",
                 kSettingsFile);
        return;
    }
    if (getVersion() > mTraits.currentVersion) {
        logError("virtual void", "LoadStruct()",
                 "Version problem detected, the settings file was saved with a newer version of "
                 "the service (file is version %d current service version is %d)",
                 static_cast<int>(getVersion()), static_cast<int>(mTraits.currentVersion));
    }
}

bool zylSettingsStruct::SaveStruct() {
    const ScopedLock lock(mSaveLock);
    const ReplaceResult result = replaceFile(mDirectory, kSettingsName, &mImage, mTraits.imageSize);
    if (result == ReplaceResult::kNotOpened) {
        logError("virtual void", "SaveStruct()",
                 "Error while trying to open file for saving (file:%s)", kSettingsFile);
    }
    if (result == ReplaceResult::kNotWritten) {
        logError("virtual void", "SaveStruct()", "Error writing settings file ...(file:%s)",
                 kSettingsFile);
    }
    return result == ReplaceResult::kSynced;
}
