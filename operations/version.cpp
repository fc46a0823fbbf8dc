#include <algorithm>
#include <cstring>
#include <string>

#include "driver/zyl_convert_api.h"
#include "service/process.h"
#include "service/zyl_kwo_service.h"

namespace {

// The devices that code 1 has a number for, by which a service that selects its device would name
// it. This service selects none: mDevicePath is null, and the number is 0. Compared by identity.
constexpr const char* kKnownDevices[] = {kDevicePath, "/dev/snd/hwC0D999", "/dev/snd/hwC0D2"};

// A text that the audio system does not give is left empty. The driver has logged that.
template <size_t kCapacity>
void appendQuery(std::string& text, zylDriver& driver,
                 int (zylDriver::*query)(char*, unsigned int)) {
    char reply[kCapacity] = {};
    (driver.*query)(reply, sizeof(reply));
    text += ';';
    text += reply;
}

}  // namespace

int32_t zyl_kwo_service::getVersionString(char* text, int32_t* length) {
    std::string version = std::string("KwoService=") + kServiceVersion;
    unsigned char* library = nullptr;
    int libraryLength = 0;
    ZYL_Convert_API_GetZylcsToQuorinConvLibVersion(&library, &libraryLength);
    if (library != nullptr) {
        version += ";ConversionLib=";
        version += reinterpret_cast<const char*>(library);
    }
    zylDriver& driver = driverWithoutLock();
    appendQuery<40>(version, driver, &zylDriver::getQuorinVersion);
    appendQuery<2072>(version, driver, &zylDriver::getQuorinDescription);
    appendQuery<40>(version, driver, &zylDriver::getQuorinPlatformVersion);

    const size_t copied = std::min(version.size(), static_cast<size_t>(*length) - 1);
    memcpy(text, version.data(), copied);
    text[copied] = '\0';
    *length = static_cast<int32_t>(copied);
    return kZylKwoOk;
}

int32_t zyl_kwo_service::getPlatformInfo(PlatformInfoRecord* info) {
    const auto* known = std::find(std::begin(kKnownDevices), std::end(kKnownDevices), mDevicePath);
    info->platformType =
            known == std::end(kKnownDevices) ? 0 : static_cast<int32_t>(known - kKnownDevices) + 1;
    return info->size;
}

int32_t zyl_kwo_service::unsupportedOperation() {
    return kZylKwoUnsupported;
}
