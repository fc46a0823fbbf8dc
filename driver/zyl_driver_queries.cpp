// The texts about the effect that only the audio system has.

#include <android/log.h>
#include <media/AudioSystem.h>

#include <cstring>

#include "driver/driver_log.h"
#include "driver/zyl_driver.h"

namespace {

android::String8 query(const char* key) {
    return android::AudioSystem::getParameters(0, android::String8(key));
}

// The size printed is the reply's length, without the NUL. A key missing from the reply is reported
// in the same words. Both are fixed, see docs/operating.md.
int logDoesNotFit(const char* failure, const char* function, size_t length) {
    __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag, failure, function,
                        static_cast<unsigned long>(length));
    return kZylKwoTextDoesNotFit;
}

}  // namespace

int zylDriver::queryFromKey(const char* key, const char* failure, const char* function, char* dest,
                            unsigned int size) {
    const android::String8 reply = query(key);
    const size_t length = strlen(reply.string());
    const char* found = strstr(reply.string(), key);
    if (length >= size || found == nullptr) return logDoesNotFit(failure, function, length);
    memcpy(dest, found, strlen(found) + 1);
    return 0;
}

int zylDriver::getQuorinVersion(char* dest, unsigned int size) {
    return queryFromKey("QuorinVersion",
                        "%s: cannot copy version info. min value of 'size' should be %lu",
                        "int zylDriver::getQuorinVersion(char *, unsigned int)", dest, size);
}

int zylDriver::getQuorinDescription(char* dest, unsigned int size) {
    return queryFromKey("QuorinDescription",
                        "%s: cannot copy quorin description. min value of 'size' should be %lu",
                        "int zylDriver::getQuorinDescription(char *, unsigned int)", dest, size);
}

int zylDriver::getQuorinPlatformVersion(char* dest, unsigned int size) {
    const android::String8 reply = query("QuorinPlatformVersion");
    const size_t length = strlen(reply.string());
    if (length >= size) {
        return logDoesNotFit(
                "%s: cannot copy quorin platform version. min value of 'size' should be %lu",
                "int zylDriver::getQuorinPlatformVersion(char *, unsigned int)", length);
    }
    strncpy(dest, reply.string(), size);
    return 0;
}
