// Promises that no table can show: what is looked at, what is written over what, and which calls
// wait for nobody.

#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <thread>
#include <tuple>

#include "lab/conversion/layout.h"
#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

using android::sp;

namespace {

constexpr char kUnnamed[] = "OK \"00000000-0000-0000-0000-000000000000\"";

// Whether it comes to hold within seconds.
template <typename Condition>
bool becomes(Condition condition) {
    for (int i = 0; i < 2000; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

}  // namespace

// If one of them waited for a lock, it would not answer before the lock is given up.
TEST(Contract, WhatNeedsNoTurnIsAnsweredWhileAnotherHasIt) {
    const std::tuple<const char*, const char*, const char*> kCases[] = {
            {"maldor", "GET_LISTENING_TEST_RESULT", "OK -1 -1 -1 -1"},
            {"maldor", "GET_SPEAKER_ZYLCS_TUNING_NAME", kUnnamed},
            {"maldor", "GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME", kUnnamed},
            {"maldor", "GET_ACCESSORY_ZYLCS_TUNING_NAME 1", kUnnamed},
            {"maldor", "GET_STEREO_ROOM_ZYLCS_TUNING_NAME 2", kUnnamed},
            {"maldor", "GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME", kUnnamed},
            {"maldor", "GET_VERSION_STRING", "\"KwoService=1.0.3.5.0;ConversionLib=3.1.0;;;\""},
            {"maldor", "GET_PLATFORM_INFO 0", "00000014"},
            {"maldor", "GET_TUNING 0", "NOT_AVAILABLE 0"},
            {"maldor", "SET_TUNING 0 1", "NOT_AVAILABLE"},
            {"maldor", "SET_ACCESSORY_ZYLCS_TUNING 0 \"\" 0", "BAD_ARGUMENT"},
            {"torvane", "SET_SPEAKER_ZYLCS_TUNING \"\" 0", "NOT_AVAILABLE"},
            {"torvane", "SET_SECOND_SPEAKER_ZYLCS_TUNING \"\" 0", "NOT_AVAILABLE"},
            {"torvane", "SET_ACCESSORY_ZYLCS_TUNING 1 \"\" 0", "NOT_AVAILABLE"},
            {"torvane", "SET_STEREO_ROOM_ZYLCS_TUNING 1 \"\" 0", "NOT_AVAILABLE"},
            {"torvane", "SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING \"\" 0", "NOT_AVAILABLE"},
            {"torvane", "SET_LISTENING_TEST_RESULT 1 2 3 4", "NOT_AVAILABLE"},
            {"torvane", "RESET_LISTENING_TEST_RESULT", "NOT_AVAILABLE"},
            {"none", "GET_ENABLED", "FAILED_TRANSACTION"},
            {"none", "SET_ENABLED 1", "FAILED_TRANSACTION"},
            {"none", "GET_STEREO_MODE", "NOT_AVAILABLE 0"},
            {"none", "SET_STEREO_MODE 1", "NOT_AVAILABLE"},
            {"none", "GET_GEQ_GAIN 1", "NOT_AVAILABLE 0"},
            {"none", "SET_GEQ_GAIN 1 4096", "NOT_AVAILABLE"},
            {"none", "SET_GEQ_GAIN_ALL 4096*10", "NOT_AVAILABLE"},
            {"none", "GET_GEQ_ENABLE", "NOT_AVAILABLE 0"},
            {"none", "SET_GEQ_ENABLE 1", "NOT_AVAILABLE"},
    };
    for (const auto& [tunings, call, reply] : kCases) {
        SCOPED_TRACE(call);
        Phone phone;
        const sp<zyl_kwo_service> service = phone.start(tunings);
        std::atomic<bool> answered{false};
        std::string got;
        gServiceLock.lock();
        std::thread caller([&, asked = std::string(call)] {
            got = replyTo(*service, asked);
            answered = true;
        });
        EXPECT_TRUE(becomes([&answered] { return answered.load(); }));
        gServiceLock.unlock();
        caller.join();
        EXPECT_EQ(got, reply);
    }
}

// Others work on while tuning data is converted.
TEST(Contract, TuningDataIsConvertedBeforeItsTurn) {
    for (const char* call :
         {"SET_SPEAKER_ZYLCS_TUNING \"\" 0", "SET_ACCESSORY_ZYLCS_TUNING 1 \"\" 0",
          "SET_STEREO_ROOM_ZYLCS_TUNING 1 \"\" 0", "SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING \"\" 0",
          "SET_LISTENING_TEST_RESULT 1 2 3 4"}) {
        SCOPED_TRACE(call);
        Phone phone;
        const sp<zyl_kwo_service> service = phone.start("maldor");
        gServiceLock.lock();
        std::thread caller([&] { EXPECT_EQ(replyTo(*service, call), "OK"); });
        EXPECT_TRUE(becomes([&phone] { return !phone.journal().empty(); }));
        gServiceLock.unlock();
        caller.join();
    }
}

// That a tuning file is there is not enough.
TEST(Contract, AGenerationIsThereWhenItsTuningCanBeRead) {
    for (int unreadable = 0; unreadable < 3; ++unreadable) {
        Phone phone;
        Phone::install("torvane");
        Phone::install("maldor");
        Fault fault = {kOpen, 0, EACCES, unreadable == 2};
        if (unreadable > 0) setFault(&fault);
        const sp<zyl_kwo_service> service = new zyl_kwo_service;
        setFault(nullptr);
        const char* const kReplies[] = {"NOT_AVAILABLE 0", "OK 1", "NOT_AVAILABLE 0"};
        EXPECT_EQ(replyTo(*service, "GET_TUNING 0"), kReplies[unreadable]);
        EXPECT_EQ(replyTo(*service, "GET_ENABLED"), unreadable == 2 ? "FAILED_TRANSACTION" : "1");
    }
}

// Where rows overlap, the equaliser is written last.
TEST(Contract, TheEqualiserIsLaidOverTheEffect) {
    for (int row : {0, 1, 2, 26, 27}) {
        Phone phone;
        layout().rows[13].offset = layout().rows[row].offset;
        writeFile(kSettingsFile, bytesOf({3, 0, 3, 1, 3, 0, 4096, 4096, 4096, 4096, 4096, 4096,
                                          4096, 4096, 4096, 4096, 77}));
        const sp<zyl_kwo_service> service = phone.start("torvane");
        EXPECT_EQ(wordAt(deviceCalls().model->block(1), layout().rows[row].offset), 77u) << row;
    }
}

// Whatever the library's pipeline is, a record on disk has the size that it always had.
TEST(Contract, ARecordKeepsItsSize) {
    for (uint32_t size : {16384u, 61700u, 70000u}) {
        Phone phone;
        layout().words[0] = size;
        const sp<zyl_kwo_service> service = phone.start("maldor");
        replyTo(*service, "SET_SPEAKER_ZYLCS_TUNING \"Id\" 0");
        const Bytes record = readFile("/data/misc/zyl/current_speaker_on");
        EXPECT_EQ(record.size(), kImageSize);
        EXPECT_EQ(wordAt(record, kImageSize - 4),
                  wordAt(tuningImage("current_speaker_on"), kImageSize - 4));
    }
}

TEST(Contract, AListeningTestIsMarkedInBothHeadphonesRecords) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    const std::pair<const char*, uint32_t> kCalls[] = {{"SET_LISTENING_TEST_RESULT 1 2 3 4", 3},
                                                       {"RESET_LISTENING_TEST_RESULT", 0}};
    for (const auto& [call, mark] : kCalls) {
        EXPECT_EQ(replyTo(*service, call), "OK");
        for (unsigned block : {1, 2}) {
            const std::string name = block == 1 ? "current_lineout" : "current_bluetooth";
            const Bytes record = readFile("/data/misc/zyl/" + name);
            EXPECT_EQ(wordAt(record, 448), mark) << name;
            EXPECT_FALSE(record == tuningImage(name)) << name;
            EXPECT_EQ(wordAt(deviceCalls().model->block(block), 448), mark) << name;
        }
        EXPECT_TRUE(readFile("/data/misc/zyl/current_speaker_on") ==
                    tuningImage("current_speaker_on"));
    }
}

// Each file, and in the end the directory for all of them.
TEST(Contract, AResetOfTheListeningTestSyncsTheDirectoryOnce) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    Fault none = {kSync, INT_MAX};
    setFault(&none);
    EXPECT_EQ(service->resetListeningTestResult(), 0);
    setFault(nullptr);
    EXPECT_EQ(none.reached, 4);
}

// The byte behind the values says that there is a test when it is 1, and nothing else does.
TEST(Contract, AListeningTestCountsWhenItsMarkIsOne) {
    for (int mark : {0, 1, 2, 255}) {
        Phone phone;
        sp<zyl_kwo_service> service = phone.start("maldor");
        for (const char* call :
             {"SET_LISTENING_TEST_RESULT 4 3 2 1", "SET_LISTENING_TEST_RESULT 1 2 3 4"}) {
            EXPECT_EQ(replyTo(*service, call), "OK");
        }
        service = nullptr;
        Bytes file = readFile(kSettingsFile);
        EXPECT_EQ(file.at(272), 1);
        file[272] = static_cast<uint8_t>(mark);
        writeFile(kSettingsFile, file);
        service = phone.start();
        replyTo(*service, "SET_ACCESSORY_ZYLCS_TUNING 2 \"\" 0");
        EXPECT_EQ(phone.story(), mark == 1 ? "Accessory(3,44100,1,0) ListeningTest(1,2,3,4) W2 a"
                                           : "Accessory(3,44100,1,0) W2 a");
    }
}
