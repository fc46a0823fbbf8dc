#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <memory>

#include "settings/settings_struct_maldor.h"
#include "settings/settings_struct_torvane.h"
#include "tests/support/phone.h"

namespace {

constexpr char kTemporaryFile[] = "/data/misc/zyl/zyl_kwo_settings.tmp";

enum Problem { kNothing, kMissing, kShort, kNewer, kNotOpened, kNotWritten };

Lines logged(bool maldor, Problem problem, const std::string& versions = "") {
    const std::string kTexts[] = {
            "",
            "LoadStruct(): Error while trying to open file for loading ",
            "LoadStruct(): Error reading settings file ...",
            "LoadStruct(): Version problem detected, the settings file was saved with a newer "
            "version of the service ",
            "SaveStruct(): Error while trying to open file for saving ",
            "SaveStruct(): Error writing settings file ...",
    };
    if (problem == kNothing) return {};
    return {(maldor ? "6 zyl_settings_struct_maldor: virtual void zylSettingsStructMaldor::"
                    : "6 zyl_settings_struct_torvane: virtual void zylSettingsStructTorvane::") +
            kTexts[problem] +
            (problem == kNewer ? versions : "(file://data//misc//zyl//zyl_kwo_settings)")};
}

Bytes defaultImage(bool maldor) {
    std::vector<uint32_t> words = {maldor ? 6u : 3u, 1, 2, 1, 3, 0};
    words.insert(words.end(), 10, 0x1000);
    words.push_back(0);
    Bytes image = bytesOf(words);
    if (!maldor) return image;
    image.resize(348);
    for (size_t offset : {68, 105, 142, 179, 216, 273, 310}) {
        memcpy(&image[offset], "00000000-0000-0000-0000-000000000000", 37);
    }
    for (size_t offset : {256, 260, 264, 268}) putWord(image, offset, 0xBF800000);  // -1.0
    return image;
}

// Bytes that no default has, behind a version.
Bytes fileOf(int size, uint32_t version) {
    Bytes bytes(static_cast<size_t>(std::max(size, 0)));
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(0x80 + i % 100);
    if (size >= 4) putWord(bytes, 0, version);
    return bytes;
}

}  // namespace

// What a file holds is taken over as far as it goes, and comes back with the next save.
TEST(SettingsFile, LoadingTakesOverWhatIsThere) {
    struct {
        bool maldor;
        int size;  // -1: no file
        uint32_t version;
        Problem problem;
    } const kCases[] = {
            {false, -1, 0, kMissing}, {false, 0, 0, kShort},    {false, 3, 0, kShort},
            {false, 40, 3, kShort},   {false, 67, 4, kShort},   {false, 68, 3, kNothing},
            {false, 68, 2, kNothing}, {false, 68, 4, kNewer},   {false, 69, 3, kNothing},
            {false, 348, 6, kNewer},  {true, -1, 0, kMissing},  {true, 68, 3, kShort},
            {true, 347, 7, kShort},   {true, 348, 6, kNothing}, {true, 348, 7, kNewer},
            {true, 348, ~0u, kNewer}, {true, 400, 5, kNothing},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.maldor << " " << c.size << " " << c.version);
        Phone phone;
        const Bytes file = fileOf(c.size, c.version);
        if (c.size >= 0) writeFile(kSettingsFile, file);
        std::unique_ptr<zylSettingsStruct> settings = std::make_unique<zylSettingsStructTorvane>();
        if (c.maldor) settings = std::make_unique<zylSettingsStructMaldor>();
        settings->LoadStruct();
        const std::string version = std::to_string(static_cast<int32_t>(c.version));
        EXPECT_EQ(phone.log(),
                  logged(c.maldor, c.problem,
                         "(file is version " + version + " current service version is " +
                                 (c.maldor ? "6)" : "3)")));
        // Only Maldor makes up for a missing file at once.
        EXPECT_EQ(exists(kSettingsFile), c.size >= 0 || c.maldor);

        Bytes expected = defaultImage(c.maldor);
        std::copy_n(file.begin(), std::min(file.size(), expected.size()), expected.begin());
        settings->SaveStruct();
        EXPECT_EQ(readFile(kSettingsFile), expected);
        EXPECT_FALSE(exists(kTemporaryFile));
    }
}

// Whatever keeps a save from being carried out, the old file is still whole.
TEST(SettingsFile, AFailedSaveLeavesTheOldFile) {
    struct {
        const char* directory;  // stands in the way
        rlim_t largestFile;
        Problem problem;
    } const kCases[] = {
            {kTemporaryFile, RLIM_INFINITY, kNotOpened},
            {"/elsewhere", 0, kNotWritten},
            {"/elsewhere", 67, kNotWritten},
            {"/elsewhere", 68, kNothing},
    };
    signal(SIGXFSZ, SIG_IGN);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.directory << " " << c.largestFile);
        Phone phone;
        const Bytes old = fileOf(68, 3);
        writeFile(kSettingsFile, old);
        ASSERT_EQ(mkdir(c.directory, 0700), 0);
        rlimit before = {};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limited = {std::min(c.largestFile, before.rlim_max), before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
        zylSettingsStructTorvane().SaveStruct();
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(readFile(kSettingsFile), c.problem == kNothing ? defaultImage(false) : old);
        EXPECT_EQ(phone.log(), logged(false, c.problem));
        EXPECT_EQ(exists(kTemporaryFile), c.directory == kTemporaryFile);
    }
}

// A record is so large that half of it is written before the disk is full.
TEST(SettingsFile, ARecordThatDoesNotFitLeavesTheOldOneAndIsLogged) {
    Phone phone;
    phone.installMaldor();
    zylSettingsStructMaldor settings;
    signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limited = {kImageSize / 2, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
    uint8_t byte = 0;
    const zylKwoErrors result = settings.applySpeakerZylcsTuning(true, {&byte, 1, &byte, 0});
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(result, -2);
    EXPECT_TRUE(readFile("/data/misc/zyl/current_speaker_on") == tuningImage("current_speaker_on"));
    EXPECT_EQ(
            phone.log(),
            Lines{"6 zyl_settings_struct_maldor: zylKwoErrors zylSettingsStructMaldor::"
                  "saveQuorinPipeline(std::string, zylZylcsQuorinPipeLine *): Error writing tuning "
                  "file ...(file:/data/misc/zyl/current_speaker_on)"});
}

TEST(SettingsFile, APlaceThatCannotHoldItIsReportedAsNotOpened) {
    Phone phone;
    ASSERT_EQ(mkdir(kSettingsFile, 0700), 0);
    zylSettingsStructTorvane().SaveStruct();
    EXPECT_FALSE(exists(kTemporaryFile));
    ASSERT_EQ(rename("/data/misc/zyl", "/data/misc/other"), 0);
    zylSettingsStructTorvane().SaveStruct();
    const std::string line = logged(false, kNotOpened)[0];
    EXPECT_EQ(phone.log(), (Lines{line, line}));
}
