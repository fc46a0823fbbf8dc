// What runs at once: under the thread sanitizer these find races, everywhere they find mix-ups of
// descriptors and half-done work.

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <fstream>
#include <thread>

#include "settings/settings_struct_maldor.h"
#include "tests/support/phone.h"

using android::sp;

namespace {

// Opens and closes descriptors of its own until told to stop; each must stay its own in between.
void bystand(const std::atomic<bool>& done) {
    while (!done) {
        const int fd = memfd_create("bystander", MFD_CLOEXEC);
        struct stat before = {};
        struct stat after = {};
        EXPECT_EQ(fstat(fd, &before), 0);
        std::this_thread::yield();
        EXPECT_EQ(fstat(fd, &after), 0);
        EXPECT_EQ(before.st_ino, after.st_ino);
        EXPECT_EQ(close(fd), 0);
    }
}

void callEverything(zyl_kwo_service& service, int thread) {
    for (int i = 0; i < 25; ++i) {
        int32_t value = 0;
        int32_t levels[kDbLevelCount];
        uint16_t gains[kGEQBandCount];
        std::fill(std::begin(levels), std::end(levels), thread);
        std::fill(std::begin(gains), std::end(gains), static_cast<uint16_t>(1000 + thread));
        EXPECT_EQ(service.setStereoMode(1 + i % 3), 0);
        service.getStereoMode(&value);
        EXPECT_THAT(value, testing::AllOf(testing::Ge(1), testing::Le(3)));
        EXPECT_EQ(service.fetchCacheBlock(i % 3), 0);
        EXPECT_EQ(service.setGEQGainAll(gains), 0);
        service.getGEQGainAll(gains);
        service.setDbGain(levels);
        service.getDbLevels(levels);
        EXPECT_THAT(levels, testing::Each(levels[0]));
        service.setActiveRoute(i);
        service.getActiveRoute(&value);
        EXPECT_EQ(service.pushCacheBlock(i % 3), 0);
        if (i % 8 == thread) service.setReloadFlag(i % 2 != 0);
        EXPECT_EQ(i % 8 == thread ? service.setEnabled(1) : 0, 0);
        EXPECT_EQ(service.setTuning(2, i % 2), 0);
    }
}

// Eight clients at once, each in turn calling with its number.
template <typename Client>
void runClients(Client client) {
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number) threads.emplace_back(client, number);
    for (std::thread& thread : threads) thread.join();
}

// Holds a lock for as long as it lives, while clients make a call each. None is answered before.
class Turn {
  public:
    Turn(zyl_kwo_service& service, FairLock& lock, std::initializer_list<const char*> calls)
        : mLock(lock) {
        mLock.lock();
        for (const char* call : calls) {
            mClients.emplace_back([this, &service, call] {
                expectReplies(service, {call});
                ++mAnswered;
            });
        }
    }
    ~Turn() {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_EQ(mAnswered, 0);
        mLock.unlock();
        for (std::thread& client : mClients) client.join();
    }

  private:
    FairLock& mLock;
    std::atomic<int> mAnswered{0};
    std::vector<std::thread> mClients;
};

}  // namespace

TEST(Threads, AllOperationsAtOnceKeepTheirDescriptorsAndTheirRecordsApart) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const int region = memfd_create("region", MFD_CLOEXEC);
    ASSERT_EQ(ftruncate(region, kImageSize), 0);
    ASSERT_EQ(service->setFileDescriptor(region, kImageSize), 0);
    close(region);
    service->setGEQEnable(1);
    std::atomic<bool> done{false};
    std::thread bystander([&done] { bystand(done); });
    runClients([&service](int thread) { callEverything(*service, thread); });
    done = true;
    bystander.join();
    EXPECT_EQ(phone.log(), Lines());
    EXPECT_THAT(phone.story(), testing::Not(testing::HasSubstr("!")));
}

// Refused calls, too. If one of the others took the lock, this would never end.
TEST(Threads, OperationsTakeTurnsButForThoseThatNeedNot) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const Turn turn(
            *service, gServiceLock,
            {"SET_STEREO_MODE 2 : OK", "GET_STEREO_MODE : OK 2", "SET_STEREO_MODE 4 : BAD_ARGUMENT",
             "GET_TUNING 0 : OK 1", "GET_TUNING 3 : BAD_ARGUMENT 0", "SET_TUNING 0 1 : OK",
             "SET_TUNING 0 -1 : BAD_ARGUMENT", "GET_GEQ_GAIN 0 : OK 4096",
             "GET_GEQ_GAIN 10 : BAD_ARGUMENT 0", "SET_GEQ_GAIN 10 4096 : BAD_ARGUMENT",
             "SET_GEQ_GAIN_ALL 1 : BAD_ARGUMENT", "SET_GEQ_ENABLE 0 : OK", "GET_GEQ_ENABLE : OK 0",
             "SET_RELOAD_FLAG 0 : OK", "GET_ROUTE_MASK 0 : OK 2",
             "GET_ROUTE_MASK 3 : BAD_ARGUMENT 0", "SET_DB_GAIN : OK"});
    expectReplies(*service, {"GET_ACTIVE_ROUTE 0 : OK 0", "SET_ACTIVE_ROUTE 1 : OK",
                             "SET_FILE_DESCRIPTOR 0 0 : UPLOAD_FAILED",
                             "FETCH_CACHE_BLOCK 0 : NO_SHARED_REGION"});
}

// Locks are handed on in the order in which they were asked for.
TEST(Threads, WhoAskedFirstGetsTheLockFirst) {
    FairLock lock;
    std::vector<int> order;
    std::vector<std::thread> waiting;
    const auto sleeps = [](pid_t thread) {
        std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/stat");
        std::string text;
        return std::getline(stat, text) && text.find(") S ") != std::string::npos;
    };
    lock.lock();
    for (int number = 0; number < 6; ++number) {
        std::atomic<pid_t> asking{0};
        waiting.emplace_back([&lock, &order, &asking, number] {
            asking = gettid();
            // The second round comes behind everybody's first.
            for (int round : {0, 6}) {
                const ScopedLock turn(lock);
                order.push_back(round + number);
            }
        });
        while (asking == 0 || !sleeps(asking)) std::this_thread::yield();
    }
    lock.unlock();
    for (std::thread& thread : waiting) thread.join();
    ASSERT_EQ(order.size(), 12u);
    EXPECT_THAT(std::vector<int>(order.begin(), order.begin() + 6),
                testing::ElementsAre(0, 1, 2, 3, 4, 5));
}

// A conversion may take long: while one is under way, what folds something into records waits for
// it, and nobody else does.
TEST(Threads, NobodyElseWaitsForAConversion) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    const Turn turn(
            *service, gRecordLock,
            {"SET_SPEAKER_ZYLCS_TUNING 'A' 1 : OK", "SET_SECOND_SPEAKER_ZYLCS_TUNING 'A' 1 : OK",
             "SET_ACCESSORY_ZYLCS_TUNING 1 'A' 1 : OK", "SET_STEREO_ROOM_ZYLCS_TUNING 1 'A' 1 : OK",
             "SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING 'A' 1 : OK",
             "SET_LISTENING_TEST_RESULT 0 0 0 0 : OK", "RESET_LISTENING_TEST_RESULT : OK"});
    expectReplies(*service,
                  {"SET_STEREO_MODE 3 : OK", "GET_STEREO_MODE : OK 3", "SET_GEQ_ENABLE 1 : OK",
                   "SET_RELOAD_FLAG 0 : OK", "SET_ENABLED 1 : empty"});
}

// Of two listening tests one wins, everywhere; and a client's tuning data does not undo a test.
TEST(Threads, RecordsMemoryAndFileHoldTheSameListeningTest) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    for (int i = 0; i < 30; ++i) {
        service->resetListeningTestResult();
        runClients([&service](int number) {
            uint8_t byte = 0;
            const auto value = static_cast<float>(number + 1);
            EXPECT_EQ(number % 2 == 0 ? service->setListeningTestResult(value, value, value, value)
                                      : service->setMultiChannelRoomZylcsTuning(&byte, 1, &byte, 1),
                      0);
        });
        float test[4] = {};
        service->getListeningTestResult(&test[0], &test[1], &test[2], &test[3]);
        uint32_t kept = 0;
        memcpy(&kept, test, sizeof(kept));
        EXPECT_EQ(wordAt(readFile(kSettingsFile), 256), kept);
        // The two records of the test that came last.
        Lines tests;
        for (const std::string& line : phone.journal()) {
            if (line.find("conv ListeningTest ") == 0) tests.push_back(line);
        }
        const std::string kLast =
                "conv ListeningTest a=" + std::to_string(std::lround(test[0])) + " ";
        EXPECT_THAT(Lines(tests.end() - 2, tests.end()), testing::Each(testing::StartsWith(kLast)));
    }
}

// The operations that run without the lock: whatever they are mixed with, a name is one that
// somebody gave, a file is whole at any moment, and what the sanitizer is told to let pass is all
// that it finds.
TEST(Threads, TuningDataFromAllClientsAtOnceIsKeptWhole) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    runClients([&service](int number) {
        uint8_t data[] = "client 0";
        data[7] = static_cast<uint8_t>('0' + number);
        uint8_t work[8] = {};
        const auto value = static_cast<float>(number);
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(service->setSpeakerZylcsTuning(data, 9, work, 8), 0);
            EXPECT_EQ(service->setAccessoryZylcsTuning(1 + i % 2, data, 9, work, 8), 0);
            EXPECT_EQ(service->setStereoRoomZylcsTuning(1 + i % 2, data, 9, work, 8), 0);
            EXPECT_EQ(service->setMultiChannelRoomZylcsTuning(data, 9, work, 8), 0);
            EXPECT_EQ(service->setListeningTestResult(value, value, value, value), 0);
            EXPECT_EQ(i % 4 == 0 ? service->resetListeningTestResult() : 0, 0);
            EXPECT_EQ(service->setStereoMode(1 + i % 3), 0);
            float values[4] = {};
            service->getListeningTestResult(&values[0], &values[1], &values[2], &values[3]);
            char name[kZylcsNameSize] = {};
            int32_t length = sizeof(name);
            EXPECT_EQ(service->getMultiChannelRoomZylcsTuningName(name, &length), 0);
            EXPECT_THAT(name, testing::StartsWith("client "));
            EXPECT_EQ(readFile(kSettingsFile).size(), 348u);
            for (const std::string record : {"speaker_on", "lineout", "bluetooth"}) {
                EXPECT_EQ(readFile("/data/misc/zyl/current_" + record).size(), kImageSize);
            }
        }
    });
    EXPECT_THAT(phone.story(), testing::Not(testing::HasSubstr("!")));
}
