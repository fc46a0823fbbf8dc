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
    for (uint32_t mode : {0u, 4u, UINT32_MAX}) t.setStereoMode(mode);
    EXPECT_EQ(t.getStereoMode(), 2u);
    EXPECT_EQ(t.setTuning(kNoRoute, 5), -1);
    EXPECT_EQ(t.setTuning(kNegativeRoute, 5), -1);
    EXPECT_EQ(t.getTuning(kNoRoute), 0xFFFFFFFF);
    EXPECT_EQ(t.getTuning(kNegativeRoute), 0xFFFFFFFF);
    EXPECT_EQ(t.getGEQGain(10, gain), -1);
    EXPECT_EQ(gain, 0);
    EXPECT_EQ(m.setTuning(kRouteBluetooth, 5), -8);
    EXPECT_EQ(m.getTuning(kRouteLineout), 0xFFFFFFF8);
    EXPECT_EQ(m.setGEQGain(3, 4096), -1);
    m.setGEQEnable(1);
    EXPECT_EQ(m.setGEQGain(10, 4096), -1);
    EXPECT_EQ(m.setGEQGain(0, 724), -1);
    for (zylRoute route : {kNoRoute, kNegativeRoute})
        EXPECT_EQ(t.getTuningFileName(route, true), "");

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
    const Lines expected = {
            torvane("void", mode + "0"),
            torvane("void", mode + "4"),
            torvane("void", mode + "-1"),
            torvane("int32_t", badSet + "3"),
            torvane("int32_t", badSet + "-1"),
            torvane("uint32_t", badGet + "3"),
            torvane("uint32_t", badGet + "-1"),
            torvane("int32_t", getGain + "10"),
            maldor("int32_t", set + noNumbers + "HP 5 Route 2"),
            maldor("uint32_t", get + noNumbers + "Route 1"),
            maldor("int32_t", setGain + "3"),
            maldor("int32_t", setGain + "10"),
            maldor("int32_t", setGain + "0"),
    };
    EXPECT_EQ(phone.log(), expected);
}
