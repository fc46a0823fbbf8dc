#include "lab/conversion/layout.h"
#include "tests/support/phone.h"

using android::sp;

namespace {

const auto kSaysWhatIsMissing = testing::ElementsAre(
        testing::HasSubstr("::LoadStruct(): Error while trying to open file for "
                           "loading (file://data//misc//zyl//"),
        testing::HasSubstr("open file for device mask (file://data//"));

struct Overlay {
    uint32_t enabled = 1;
    uint32_t mode = 2;
    uint32_t geqEnable = 0;
    uint16_t firstGain = 4096;
    uint16_t gainStep = 0;
};

// What a block holds after a start: the tuning file with the settings laid over it.
Bytes laidOver(const std::string& tuning, int block, const Overlay& settings,
               uint32_t row27Size = 8) {
    Bytes image = tuningImage(tuning);
    if (block != 0) {
        putWord(image, 64, settings.mode);
        const uint32_t first = settings.enabled != 0 ? 0 : 23;
        for (uint32_t offset : {16, 32, 36, 40}) putWord(image, offset, first);
        const uint32_t second = settings.enabled != 0 ? 0 : 31;
        for (uint32_t offset : {352u, 400u, 352 + row27Size, 352 + 2 * row27Size}) {
            putWord(image, offset, second);
        }
    }
    putWord(image, 132, settings.geqEnable);
    for (uint32_t band = 0; band < 10; ++band) {
        const auto gain = static_cast<uint16_t>(settings.firstGain + band * settings.gainStep);
        memcpy(&image[100 + 2 * band], &gain, sizeof(gain));
    }
    return image;
}

void expectBlocks(const std::vector<std::string>& tunings, const Overlay& settings,
                  uint32_t row27Size = 8) {
    for (int block = 0; block < 3; ++block) {
        // Not printed: the images are long.
        EXPECT_TRUE(deviceCalls().model->block(block) ==
                    laidOver(tunings[block], block, settings, row27Size))
                << tunings[block];
    }
}

}  // namespace

TEST(Start, TorvanePreparesTheCacheAndUploadsItsTunings) {
    Phone phone;
    phone.install("torvane");
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    const std::string words =
            " words=0x10015100,0x1011,0x4044,0x0,0x3033,0x6066,0x1001522c,0x5055,0x8088,0x0,0x7077";
    EXPECT_THAT(phone.journal(),
                testing::IsSupersetOf({"dsp config block=0 mask=0x2 offset=0" + words,
                                       "dsp config block=1 mask=0x2000c offset=61700" + words,
                                       "dsp config block=2 mask=0x3f0 offset=123400" + words}));
    EXPECT_THAT(phone.log(), kSaysWhatIsMissing);
    expectBlocks({"speaker_1", "lineout_3", "bluetooth_0"}, {});
    // A missing settings file is not made up for until something is saved.
    EXPECT_FALSE(exists(kSettingsFile));
}

TEST(Start, MaldorIsPreferredAndWritesItsDefaultSettings) {
    Phone phone;
    phone.install("torvane");
    phone.install("maldor");
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    EXPECT_THAT(phone.log(), kSaysWhatIsMissing);
    expectBlocks({"current_speaker_on", "current_lineout", "current_bluetooth"}, {});
    EXPECT_EQ(readFile(kSettingsFile).size(), 348u);
    expectReplies(*service, {"GET_TUNING 0 : NOT_AVAILABLE 0", "SET_TUNING 0 1 : NOT_AVAILABLE",
                             "SET_ENABLED 0 : empty"});
    EXPECT_EQ(deviceCalls().model->block(0), laidOver("current_speaker_off", 0, {0}));
}

TEST(Start, SavedSettingsAreLaidOverEachBlock) {
    Phone phone;
    for (uint32_t enabled : {0u, 1u, 7u}) {
        for (uint32_t row27Size : {4u, 8u, 12u}) {
            SCOPED_TRACE(testing::Message() << enabled << " " << row27Size);
            setRowSize(layout(), 27, row27Size);
            std::vector<uint32_t> words = {3, enabled, 3, 2, 1, 1};
            // Only the low half of a gain counts.
            for (uint32_t band = 0; band < 10; ++band) words.push_back(0x10000 + 1000 + band * 77);
            words.push_back(5);
            writeFile(kSettingsFile, bytesOf(words));
            const sp<zyl_kwo_service> service = phone.start("torvane");
            expectBlocks({enabled != 0 ? "speaker_2" : "speaker_off", "lineout_1", "bluetooth_1"},
                         {enabled, 3, 5, 1000, 77}, row27Size);
        }
    }
}

// Rows that lie outside, or that are larger than any pipeline, which is logged.
TEST(Start, WhatLiesOutsideTheImageIsLeftOut) {
    Phone phone;
    layout().rows[2].offset = -4;
    layout().rows[13].offset = kImageSize - 3;
    layout().rows[3].offset = INT32_MAX;
    layout().rows[27].size = UINT32_MAX;
    layout().rows[12].offset = kImageSize - 2;
    layout().rows[25].size = 4 << 20;
    Phone::install("torvane");
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    EXPECT_THAT(phone.log(),
                testing::Contains("6 ZylcsToQuorinConv: void fillParameterTable(): row "
                                  "27 is refused, its size of 4294967295 is too large"));
    EXPECT_EQ(g_parameterTable[25].size, 4U << 20);
    EXPECT_EQ(g_parameterTable[27].size, 0U);
    const Bytes tuning = tuningImage("bluetooth_0");
    Bytes expected = laidOver("bluetooth_0", 2, {}, 0);
    for (size_t offset : {64, 132, 400}) putWord(expected, offset, wordAt(tuning, offset));
    memcpy(&expected[100], &tuning[100], 2);
    memcpy(&expected[118], &tuning[118], 2);
    memcpy(&expected[kImageSize - 2], "\0\x10", 2);
    EXPECT_TRUE(deviceCalls().model->block(2) == expected);
}

TEST(Start, WithoutTuningsItSaysSo) {
    Phone phone;
    const sp<zyl_kwo_service> service = new zyl_kwo_service;
    EXPECT_THAT(phone.log(),
                testing::ElementsAre(
                        "6 zyl_kwo_service service: zyl_kwo_service::zyl_kwo_service(): default "
                        "tuning file for either Maldor or Torvane/Ruvelle cannot be opened. "
                        "System is missing tunings"));
}
