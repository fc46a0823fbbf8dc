#include <binder/Parcel.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

using android::sp;

namespace {

// A service and a client's region, an unlinked file or plain memory, that it was handed in a
// parcel.
struct Shared {
    Phone phone;
    const int fd;
    sp<zyl_kwo_service> service = phone.start("torvane");

    explicit Shared(bool file = false)
        : fd(file ? open("/data/misc/zyl/", O_RDWR | O_TMPFILE | O_CLOEXEC, 0600)
                  : memfd_create("region", MFD_CLOEXEC)) {
        resize(kImageSize);
        android::Parcel data;
        android::Parcel reply;
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
        data.writeFileDescriptor(fd);
        data.writeInt32(kImageSize);
        android::IBinder& binder = *service;
        EXPECT_EQ(binder.transact(3001, data, &reply), android::NO_ERROR);
        EXPECT_EQ(reply.readInt32(), 0);
    }
    ~Shared() { close(fd); }

    void resize(size_t size) { EXPECT_EQ(ftruncate(fd, static_cast<off_t>(size)), 0); }
    void put(const Bytes& bytes) {
        EXPECT_EQ(pwrite(fd, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
    }
    Bytes get(size_t size = kImageSize) {
        Bytes bytes(size);
        EXPECT_EQ(pread(fd, bytes.data(), size, 0), static_cast<ssize_t>(size));
        return bytes;
    }
};

}  // namespace

// And not what an earlier image, of the start or of a fetch, has left in memory.
TEST(SharedMemory, WhatTheDspLeavesOutIsZeros) {
    Shared s;
    EXPECT_EQ(s.service->fetchCacheBlock(1), 0);
    for (bool lasting : {true, false}) {
        Fault nothing = {kIoctl, 0, kNothing, lasting};
        setFault(&nothing);
        EXPECT_EQ(s.service->fetchCacheBlock(1), 0);
        setFault(nullptr);
        EXPECT_TRUE(s.get() == (lasting ? Bytes(kImageSize) : deviceCalls().model->block(1)));
        EXPECT_EQ(s.phone.story(), "R1");
    }
}

// With the kernel's calls for it, and on one that lacks them.
TEST(SharedMemory, BlocksTravelBothWaysThroughMemoryAndFiles) {
    for (int n = 0; n < 4; ++n) {
        Shared s(n % 2 != 0);
        Fault missing = {n < 2 ? 0U : kCopy, 0, ENOSYS, true};
        setFault(&missing);
        EXPECT_EQ(s.service->fetchCacheBlock(2), 0);
        EXPECT_TRUE(s.get() == deviceCalls().model->block(2));
        s.put(tuningImage("pushed"));
        EXPECT_EQ(s.service->pushCacheBlock(1), 0);
        EXPECT_TRUE(deviceCalls().model->block(1) == tuningImage("pushed"));
        setFault(nullptr);
        EXPECT_EQ(missing.reached, n < 2 ? 0 : 2);
        EXPECT_EQ(s.phone.story(), "R2 W1 a");
    }
}

TEST(SharedMemory, ABlockThatDoesNotExistReadsAsZerosAndIsNotPushed) {
    Shared s;
    for (int32_t block : {3, 5, -1}) {
        Bytes expected(kImageSize + 4, 0x77);
        s.put(expected);
        EXPECT_EQ(s.service->pushCacheBlock(block), 0);
        EXPECT_EQ(s.service->fetchCacheBlock(block), 0);
        std::fill_n(expected.begin(), kImageSize, 0);
        EXPECT_TRUE(s.get(kImageSize + 4) == expected);
    }
    EXPECT_EQ(s.phone.story(), "");
}

TEST(SharedMemory, ARefusedRequestLeavesTheRegionAloneAndIsReported) {
    Shared s;
    s.put(tuningImage("before"));
    deviceCalls().model->fail(0, 2);
    EXPECT_EQ(s.service->fetchCacheBlock(0), -3);
    EXPECT_EQ(s.service->pushCacheBlock(0), -3);
    EXPECT_TRUE(s.get() == tuningImage("before"));
}

TEST(SharedMemory, OnlyARegionOfAWholeImageCounts) {
    Shared s;
    struct {
        int fd;
        int32_t length, result, copied;
        const char* error;
    } const kCases[] = {
            {s.fd, kImageSize, 0, 0, nullptr},
            {s.fd, kImageSize - 1, 0, -3000, nullptr},
            {s.fd, 1, 0, -3000, nullptr},
            {s.fd, 0, -3, -3000, "22, Invalid argument"},
            {999, kImageSize, -3, -3000, "9, Bad file descriptor"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.fd << " " << c.length);
        // What was there before counts no more.
        ASSERT_EQ(s.service->setFileDescriptor(s.fd, kImageSize), 0);
        EXPECT_EQ(s.service->setFileDescriptor(c.fd, c.length), c.result);
        for (int32_t block : {0, 5}) EXPECT_EQ(s.service->fetchCacheBlock(block), c.copied);
        for (int32_t block : {0, 5}) EXPECT_EQ(s.service->pushCacheBlock(block), c.copied);
        const std::string line = "6 zyl_kwo_service service: mmap failed! ";
        EXPECT_EQ(s.phone.log(), c.error == nullptr ? Lines() : Lines{line + c.error});
    }
}

// Every region stays mapped, but only a block's worth of it, and not without end.
TEST(SharedMemory, RegionsTakeUpABoundedPartOfTheAddressSpace) {
    Shared s;
    constexpr int kMost = (1 << 30) / (64 << 10);
    const Lines full = {"6 zyl_kwo_service service: mmap failed! 12, Cannot allocate memory"};
    // Not even for a moment; what is refused takes nothing.
    for (int length : {INT32_MAX, 1 << 30, -1}) {
        EXPECT_EQ(s.service->setFileDescriptor(s.fd, length), -3);
        EXPECT_EQ(s.phone.log(), full);
    }
    for (int taken = 1; taken < kMost; ++taken) {
        EXPECT_EQ(s.service->setFileDescriptor(-1, 1 << 16), -3);
        EXPECT_EQ(s.service->setFileDescriptor(s.fd, 4096), 0);
        ASSERT_EQ(s.service->setFileDescriptor(s.fd, 1 << 16), 0) << taken;
    }
    s.phone.log();
    EXPECT_EQ(s.service->fetchCacheBlock(0), 0);
    EXPECT_EQ(s.service->setFileDescriptor(s.fd, kImageSize), -3);
    EXPECT_EQ(s.phone.log(), full);
    EXPECT_EQ(s.service->fetchCacheBlock(0), -3000);
}

// What lies behind a block's worth, if only by a byte, does not stay mapped.
TEST(SharedMemory, OnlyABlocksWorthStaysMapped) {
    Shared s;
    sharedMappings().clear();
    for (int length : {65536, 65537, 1 << 20}) {
        EXPECT_EQ(s.service->setFileDescriptor(s.fd, length), 0);
        ASSERT_EQ(sharedMappings().size(), 1U);
        EXPECT_EQ(sharedMappings().begin()->second, 65536U) << length;
        sharedMappings().clear();
    }
}

TEST(SharedMemory, AnUnreachablePartOfTheRegionFailsTheCopyAndNothingElse) {
    Shared s;
    for (int n = 0; n < 4; ++n) {
        SCOPED_TRACE(n);
        s.resize(n % 2 * 4096);
        Fault missing = {n < 2 ? 0U : kCopy, 0, ENOSYS, true};
        setFault(&missing);
        // What an earlier call on this thread left behind must not be taken for this copy's error.
        for (int stale : {0, ENOSYS}) {
            errno = stale;
            EXPECT_EQ(s.service->pushCacheBlock(0), -3);
            errno = stale;
            EXPECT_EQ(s.service->fetchCacheBlock(5), -3);
        }
        setFault(nullptr);
        EXPECT_EQ(s.phone.story(), "");
        EXPECT_EQ(s.phone.log(), Lines());
        s.resize(kImageSize);
        EXPECT_EQ(s.service->fetchCacheBlock(5), 0);
    }
}

// A slow block copy keeps nobody waiting who only asks for settings.
TEST(SharedMemory, GettersAnswerWhileABlockIsCopied) {
    Shared s;
    deviceCalls().model->slow(1000);
    std::atomic<bool> copied{false};
    std::thread copy([&] {
        EXPECT_EQ(s.service->fetchCacheBlock(0), 0);
        copied = true;
    });
    while (deviceCalls().standing == 0 && !copied) std::this_thread::yield();
    expectReplies(*s.service, {"GET_STEREO_MODE : OK 2"});
    EXPECT_FALSE(copied);
    copy.join();
}
