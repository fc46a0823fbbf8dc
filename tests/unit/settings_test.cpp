#include "settings/settings_struct_maldor.h"
#include "settings/settings_struct_torvane.h"
#include "tests/support/phone.h"

namespace {

constexpr auto kNoRoute = static_cast<zylRoute>(3);
constexpr auto kNegativeRoute = static_cast<zylRoute>(-1);

std::string torvane(const std::string& type, const std::string& operationAndText) {
    return "6 zyl_settings_struct_torvane: virtual " + type +
           " zylSettingsStructTorvane::" + operationAndText;
}

std::string maldor(const std::string& type, const std::string& operationAndText) {
    return "6 zyl_settings_struct_maldor: virtual " + type +
           " zylSettingsStructMaldor::" + operationAndText;
}

}  // namespace

TEST(Settings, WhatIsRefusedIsLoggedAndChangesNothing) {
    Phone phone;
    zylSettingsStructTorvane t;
    zylSettingsStructMaldor m;
    uint16_t gain = 55;
    const auto modeAfter = [&t](uint32_t mode) {
        t.setStereoMode(mode);
        return t.getStereoMode();
    };
    const std::string mode = "setStereoMode(uint32_t): stereo mode out of range error, mode tried ";
    const std::string set = "setTuning(zylRoute, uint32_t): ";
    const std::string get = "getTuning(zylRoute): ";
    const std::string badSet = set + "Headphone or route number out of range error, HP 5 Route ";
    const std::string badGet = get + "Headphone route out of range error, route ";
    const std::string getGain =
            "getGEQGain(uint32_t, uint16_t &): Getting GEQ gain out of range error, band ";
    const std::string setGain =
            "setGEQGain(uint32_t, uint16_t): Setting GEQ gain out of range error, band ";
    const std::string noNumbers = "Maldor doesn't support tuning number changes, ";
    struct {
        int64_t result, expected;
        std::string logged;
    } const kCases[] = {
            {modeAfter(0), 2, torvane("void", mode + "0")},
            {modeAfter(4), 2, torvane("void", mode + "4")},
            {modeAfter(UINT32_MAX), 2, torvane("void", mode + "-1")},
            {t.setTuning(kNoRoute, 5), -1, torvane("int32_t", badSet + "3")},
            {t.setTuning(kNegativeRoute, 5), -1, torvane("int32_t", badSet + "-1")},
            {t.getTuning(kNoRoute), UINT32_MAX, torvane("uint32_t", badGet + "3")},
            {t.getTuning(kNegativeRoute), UINT32_MAX, torvane("uint32_t", badGet + "-1")},
            {t.getGEQGain(10, gain), -1, torvane("int32_t", getGain + "10")},
            {m.setTuning(kRouteBluetooth, 5), -8,
             maldor("int32_t", set + noNumbers + "HP 5 Route 2")},
            {m.getTuning(kRouteLineout), UINT32_MAX - 7,
             maldor("uint32_t", get + noNumbers + "Route 1")},
            {m.setGEQGain(3, 4096), -1, maldor("int32_t", setGain + "3")},
            {(m.setGEQEnable(1), m.setGEQGain(10, 4096)), -1, maldor("int32_t", setGain + "10")},
            {m.setGEQGain(0, 724), -1, maldor("int32_t", setGain + "0")},
    };
    Lines logged;
    for (const auto& c : kCases) {
        EXPECT_EQ(c.result, c.expected) << c.logged;
        logged.push_back(c.logged);
    }
    EXPECT_EQ(phone.log(), logged);
    EXPECT_EQ(gain, 0);
    EXPECT_EQ(t.getCurrentVersion(), 3U);
    EXPECT_EQ(m.getCurrentVersion(), 6U);
    for (zylRoute route : {kNoRoute, kNegativeRoute})
        EXPECT_EQ(t.getTuningFileName(route, true), "");
}
