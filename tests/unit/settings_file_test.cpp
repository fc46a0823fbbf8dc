#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <functional>
#include <tuple>

#include "lab/conversion/layout.h"
#include "settings/settings_struct_maldor.h"
#include "settings/settings_struct_torvane.h"
#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

namespace {

enum Problem { kNoProblem, kShort, kNewer, kNotOpened, kNotWritten };

Lines logged(bool maldor, Problem problem, const std::string& versions = "") {
    const std::string kTexts[] = {
            "",
            "LoadStruct(): Error reading settings file ...",
            "LoadStruct(): Version problem detected, the settings file was saved with a newer "
            "version of the service ",
            "SaveStruct(): Error while trying to open file for saving ",
            "SaveStruct(): Error writing settings file ...",
    };
    if (problem == kNoProblem) return {};
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
Bytes fileOf(size_t size, uint32_t version) {
    Bytes bytes(size);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(0x80 + i % 100);
    if (size >= 4) putWord(bytes, 0, version);
    return bytes;
}

// What a service makes of a settings file is what the bytes say, whatever they are: the answers of
// all getters, the tuning files that are looked for, the next save.
void expectTakenOver(Phone& phone, bool maldor, const Bytes& file) {
    writeFile(kSettingsFile, file);
    Bytes image = defaultImage(maldor);
    std::copy_n(file.begin(), std::min(file.size(), image.size()), image.begin());
    const auto word = [&image](size_t at) { return static_cast<int32_t>(wordAt(image, at)); };
    Problem problem = wordAt(image, 0) > (maldor ? 6 : 3) ? kNewer : kNoProblem;
    if (file.size() < image.size()) problem = kShort;
    Lines log = logged(maldor, problem,
                       "(file is version " + std::to_string(word(0)) +
                               " current service version is " + (maldor ? "6)" : "3)"));
    std::string story = "S185100 C0 C1 C2";
    const char* const kStems[] = {"speaker_", "lineout_", "bluetooth_"};
    for (size_t route = 0; route < 3; ++route) {
        std::string name = kStems[route] + std::to_string(wordAt(image, 12 + 4 * route));
        if (name == "lineout_3" && !maldor) putWord(image, 16, 1), name = "lineout_1";
        if (route == 0 && word(4) == 0) name = "speaker_off";
        if (maldor || exists("/etc/zyl/" + name)) {
            story += " W" + std::to_string(route);
        } else {
            log.push_back(
                    "6 ZylcsToQuorinConv: int zylDriver::LoadParamBlock(zylQuorinPipelineCtrl &, "
                    "CacheBlockType, std::string): Tuning file cannot be opened [/etc/zyl/" +
                    name + "]");
        }
    }
    android::sp<zyl_kwo_service> service = new zyl_kwo_service;
    EXPECT_EQ(phone.log(), log);
    EXPECT_EQ(phone.story(), story + " a");

    const auto expectReply = [&](uint32_t code, const Words& arguments, const Words& reply) {
        EXPECT_EQ(transact(*service, code, arguments), (Answer{android::NO_ERROR, reply})) << code;
    };
    expectReply(2, {}, {word(4)});
    expectReply(4, {}, {0, word(8)});
    expectReply(13, {}, {0, word(4) != 0 ? word(64) : 0});
    for (int band = 0; band < 10; ++band) expectReply(8, {band}, {0, word(24 + 4 * band) & 0xFFFF});
    for (int route = 0; route < 3; ++route) {
        expectReply(6, {route}, maldor ? Words{-9, 0} : Words{0, word(12 + 4 * route)});
    }
    if (maldor) expectReply(30, {}, {0, word(256), word(260), word(264), word(268)});
    const std::tuple<uint32_t, int, size_t> kNames[] = {{24, 1, 68},  {24, 2, 105}, {28, 0, 142},
                                                        {26, 1, 179}, {26, 2, 216}, {21, 0, 273},
                                                        {22, 0, 310}};
    for (const auto& [code, index, offset] : kNames) {
        if (!maldor) break;
        // 36 characters at most, whether or not a NUL follows them.
        const auto* text = reinterpret_cast<const char*>(&image[offset]);
        EXPECT_STREQ(reinterpret_cast<const char*>(&transact(*service, code, {index}).words.at(2)),
                     std::string(text, strnlen(text, 36)).c_str());
    }
    // Nothing is saved before something is set, or the service ends.
    EXPECT_EQ(readFile(kSettingsFile), file);
    service.clear();
    EXPECT_EQ(readFile(kSettingsFile), image);
    // Who may read it is up to whoever starts the service.
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(std::filesystem::status(kSettingsFile).permissions(),
              static_cast<std::filesystem::perms>(0666 & ~mask));
}

}  // namespace

// Every length up to more than the whole, of other values than the defaults, in an older, the
// current and a newer version; and every bit of a good file the wrong way round.
TEST(SettingsFile, WhateverItHoldsIsTakenOverAsFarAsItGoes) {
    for (bool maldor : {false, true}) {
        const Bytes good = defaultImage(maldor);
        for (size_t offset = 0; offset <= good.size(); offset += 4) {
            Phone phone;
            maldor ? phone.install("maldor") : phone.install("torvane");
            remove("/etc/zyl/lineout_3");
            writeFile(kMaskFile, std::string("2,131084,1008"));
            for (size_t size = offset; size < offset + 4; ++size) {
                SCOPED_TRACE(testing::Message() << "size " << size << " maldor " << maldor);
                const uint32_t version = maldor ? 5 : 2;
                expectTakenOver(phone, maldor, fileOf(size, version + offset / 4 % 3));
            }
            for (size_t bit = 8 * offset; bit < 8 * std::min(offset + 4, good.size()); ++bit) {
                SCOPED_TRACE(testing::Message() << "bit " << bit << " maldor " << maldor);
                Bytes flipped = good;
                flipped[bit / 8] ^= static_cast<uint8_t>(1 << bit % 8);
                expectTakenOver(phone, maldor, flipped);
            }
        }
    }
}

// What is folded into a record that is too short, or not there, fails and leaves it alone, and so
// does what leads to loading it.
TEST(SettingsFile, ARecordThatIsTooShortIsSkippedAndNotFoldedInto) {
    std::vector<int> sizes = {-1, 1, 448, 451, 452, 61699, 61700, 61701};
    for (int size = 0; size < 61700; size += 1999) sizes.push_back(size);
    for (int size : sizes) {
        for (const std::string name : {"current_lineout", "current_speaker_off"}) {
            SCOPED_TRACE(name + " " + std::to_string(size));
            Phone phone;
            phone.install("maldor");
            Bytes record = tuningImage(name);
            record.resize(static_cast<size_t>(std::max(size, 0)));
            const std::string path = "/data/misc/zyl/" + name;
            size < 0 ? static_cast<void>(remove(path.c_str())) : writeFile(path, record);
            const android::sp<zyl_kwo_service> service = new zyl_kwo_service;
            const bool whole = size >= 61700, lineout = name == "current_lineout";
            EXPECT_THAT(phone.story(),
                        testing::EndsWith(whole || !lineout ? "W0 W1 W2 a" : "W0 W2 a"));
            const char* const kCalls[] = {"SET_SPEAKER_ZYLCS_TUNING \"Id-1\" 4",
                                          "SET_ACCESSORY_ZYLCS_TUNING 1 \"Id-1\" 4",
                                          "SET_STEREO_ROOM_ZYLCS_TUNING 2 \"Id-1\" 4",
                                          "SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING \"Id-1\" 4",
                                          "SET_LISTENING_TEST_RESULT 0 0 0 0"};
            service->setEnabled(0);
            for (const std::string call : kCalls) {
                const bool meant = lineout == (call.find("SPEAKER") == std::string::npos);
                const char* const failure =
                        size < 0 || !lineout ? "TUNING_NOT_LOADABLE" : "TUNING_TOO_SHORT";
                EXPECT_EQ(replyTo(*service, call), whole || !meant ? "OK" : failure);
            }
            expectReplies(*service, {"RESET_LISTENING_TEST_RESULT : OK"});
            EXPECT_TRUE(whole || readFile(path) == record);
        }
    }
}

// The library is not given a size, and takes a record to be as large as its pipeline.
TEST(SettingsFile, ARecordIsNotTouchedWhereTheLibrarysPipelineIsNoPartOfIt) {
    for (uint32_t size : {0U, kImageSize, kImageSize + 1, UINT32_MAX}) {
        Phone phone;
        const android::sp<zyl_kwo_service> service = phone.start("maldor");
        layout().words[0] = size;
        const bool taken = size == kImageSize;
        phone.log();
        expectReplies(*service, {taken ? "SET_ACCESSORY_ZYLCS_TUNING 1 'A' 1 : OK"
                                       : "SET_ACCESSORY_ZYLCS_TUNING 1 'A' 1 : TUNING_TOO_SHORT"});
        const std::string reported = size == kImageSize + 1 ? "61701" : "0";
        EXPECT_EQ(phone.log(), taken ? Lines()
                                     : Lines{"6 zyl_settings_struct_maldor: zylKwoErrors "
                                             "zylSettingsStructMaldor::loadQuorinPipeline("
                                             "std::string, zylZylcsQuorinPipeLine **): a record "
                                             "holds 61700 bytes, the library's "
                                             "pipeline has " +
                                             reported + " (file:/data/misc/zyl/current_lineout)"});
        EXPECT_EQ(readFile("/data/misc/zyl/current_lineout") == tuningImage("current_lineout"),
                  !taken)
                << size;
    }
}

// It came with the file, as none that the library refuses is ever kept.
TEST(SettingsFile, AListeningTestThatCannotBeAppliedAgainDoesNotCostTheTuning) {
    Phone phone;
    phone.install("maldor");
    for (float first : {1.0F, kFailingTestValue}) {
        Bytes image = defaultImage(true);
        image[offsetof(MaldorSettingsImage, listeningTestSet)] = 1;
        memcpy(&image[offsetof(MaldorSettingsImage, listeningTest)], &first, sizeof(first));
        writeFile(kSettingsFile, image);
        expectReplies(*phone.start(), {"SET_ACCESSORY_ZYLCS_TUNING 1 'A' 1 : OK"});
        EXPECT_EQ(wordAt(readFile("/data/misc/zyl/current_lineout"), 448),
                  first == kFailingTestValue ? 0 : 3);
    }
}

// The words for it. A record that cannot be written counts as saved, without a word.
TEST(SettingsFile, WhatCannotBeSavedIsLogged) {
    const std::string kRecord =
            "6 zyl_settings_struct_maldor: zylKwoErrors zylSettingsStructMaldor::"
            "saveQuorinPipeline(std::string, zylZylcsQuorinPipeLine *): Error writing tuning "
            "file ...(file:/data/misc/zyl/current_speaker_on)";
    struct {
        unsigned call;
        int error;
        Problem problem;
        zylKwoErrors result;
    } const kCases[] = {
            {kOpen, EACCES, kNotOpened, kZylKwoOk},
            {kRename, EIO, kNotWritten, kZylKwoTuningNotLoadable},
            {kWrite, ENOSPC, kNotWritten, kZylKwoTuningNotLoadable},
            {kSync, EIO, kNotWritten, kZylKwoTuningNotLoadable},
    };
    const ScopedLock turn(gRecordLock);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.call << " " << c.error);
        Phone phone;
        phone.install("maldor");
        zylSettingsStructMaldor settings;
        zylSettingsStructTorvane torvane;
        Fault fault = {c.call, c.call == kOpen ? 1 : 0, c.error};
        uint8_t byte = 0;
        setFault(&fault);
        EXPECT_EQ(settings.applySpeakerZylcsTuning(true, {&byte, 1, &byte, 0}), c.result);
        fault = {c.call, 0, c.error};
        torvane.SaveStruct();
        setFault(nullptr);
        Lines expected = logged(false, c.problem);
        if (c.result != kZylKwoOk) expected.insert(expected.begin(), kRecord);
        EXPECT_EQ(phone.log(), expected);
    }
}

TEST(SettingsFile, ARecordThatFindsNoMemoryIsNotTouched) {
    Phone phone;
    phone.install("maldor");
    zylSettingsStructMaldor settings;
    const ScopedLock turn(gRecordLock);
    const ImageMemory kept(1);  // what an earlier image has left, of any size
    uint8_t byte = 0;
    Fault full = {kAllocate, 0, ENOMEM, true};
    setFault(&full);
    EXPECT_EQ(settings.applySpeakerZylcsTuning(true, {&byte, 1, &byte, 0}), -6);
    setFault(nullptr);
    EXPECT_TRUE(readFile("/data/misc/zyl/current_speaker_on") == tuningImage("current_speaker_on"));
}

// Each file, and once the directory that the records are renamed in, wherever the settings are.
TEST(SettingsFile, ResetsOfAListeningTestAreSynced) {
    struct {
        std::function<void()> prepare;
        int syncs;
    } const kCases[] = {
            {[] {}, 4},
            {[] { mkdir("/data/misc/zyl/zyl_kwo_settings.tmp", 0700); }, 4},  // written in place
            {[] { std::filesystem::remove(kSettingsFile), mkdir(kSettingsFile, 0700); }, 3},
            {[] {
                 mkdir("/data/misc/zyl/other", 0700);
                 std::filesystem::rename(kSettingsFile, "/data/misc/zyl/other/target");
                 symlink("other/target", kSettingsFile);
             },
             5},
            {[] {  // a record elsewhere
                 mkdir("/data/misc/zyl/other", 0700);
                 std::filesystem::rename("/data/misc/zyl/current_lineout",
                                         "/data/misc/zyl/other/l");
                 symlink("other/l", "/data/misc/zyl/current_lineout");
             },
             5},
    };
    for (const auto& c : kCases) {
        Phone phone;
        const android::sp<zyl_kwo_service> service = phone.start("maldor");
        expectReplies(*service, {"SET_GEQ_ENABLE 1 : OK"});
        c.prepare();
        Fault none = {kSync, INT_MAX};
        setFault(&none);
        EXPECT_EQ(service->resetListeningTestResult(), kZylKwoOk);
        setFault(nullptr);
        EXPECT_EQ(none.reached, c.syncs);
    }
}

TEST(SettingsFile, ARecordIsSyncedBeforeTheCallGoesOn) {
    Phone phone;
    phone.install("maldor");
    zylSettingsStructMaldor settings;
    const ScopedLock turn(gRecordLock);
    uint8_t byte = 0;
    Fault none = {kSync, INT_MAX};
    setFault(&none);
    EXPECT_EQ(settings.applySpeakerZylcsTuning(true, {&byte, 1, &byte, 0}), kZylKwoOk);
    setFault(nullptr);
    EXPECT_EQ(none.reached, 2);  // the file and its directory
}
