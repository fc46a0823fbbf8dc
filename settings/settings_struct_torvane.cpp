#include "settings/settings_struct_torvane.h"

#include "driver/descriptor.h"

namespace {

constexpr const char* kRouteStems[kRouteCount] = {"speaker", "lineout", "bluetooth"};

constexpr uint32_t kOptionalLineoutTuning = 3;
constexpr uint32_t kFallbackLineoutTuning = 1;
constexpr char kOptionalLineoutFile[] = "/etc/zyl/lineout_3";

}  // namespace

const zylSettingsStruct::Traits zylSettingsStructTorvane::kTraits = {
        "zyl_settings_struct_torvane", "zylSettingsStructTorvane", 3, sizeof(CommonSettingsImage),
        false};

zylSettingsStructTorvane::zylSettingsStructTorvane() : zylSettingsStruct(kTraits, mImage) {
    zylSettingsStruct::SetDefaults();
}

zylKwoErrors zylSettingsStructTorvane::setTuning(zylRoute route, uint32_t tuning) {
    if (!isRoute(route)) {
        logError("virtual int32_t", "setTuning(zylRoute, uint32_t)",
                 "Headphone or route number out of range error, HP %d Route %d",
                 static_cast<int>(tuning), static_cast<int>(route));
        return kZylKwoBadArgument;
    }
    mImage.tuning[route] = tuning;
    return kZylKwoOk;
}

uint32_t zylSettingsStructTorvane::getTuning(zylRoute route) {
    if (!isRoute(route)) {
        logError("virtual uint32_t", "getTuning(zylRoute)",
                 "Headphone route out of range error, route %d", static_cast<int>(route));
        return static_cast<uint32_t>(kZylKwoBadArgument);
    }
    return mImage.tuning[route];
}

std::string zylSettingsStructTorvane::getTuningFileName(zylRoute route, bool /*on*/) {
    if (!isRoute(route)) return "";
    if (route == kRouteSpeaker && getEnabled() == 0) return "speaker_off";
    if (route == kRouteLineout && getTuning(route) == kOptionalLineoutTuning &&
        !canBeRead(kOptionalLineoutFile)) {
        setTuning(route, kFallbackLineoutTuning);
    }
    return std::string(kRouteStems[route]) + "_" + std::to_string(getTuning(route));
}
