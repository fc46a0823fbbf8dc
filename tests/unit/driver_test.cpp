#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>
#include <tuple>

#include "driver/descriptor.h"
#include "lab/conversion/layout.h"
#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

namespace {

// A driver that knows the pipeline size, the three blocks configured.
struct Started {
    Phone phone;
    zylDriver driver;
    zylQuorinPipelineCtrl ctrl{zylQuorinPipelineCtrl::kWithHeader};

    Started() {
        EXPECT_EQ(driver.initDriverCache(), 0);
        EXPECT_EQ(driver.configureCacheBlocks(), 0);
        ctrl.clear();
        phone.story();
        phone.log();
        deviceCalls().opens = 0;
    }
};

const Words kDefaultMasks = {0x2, 0x2000C, 0x3F0};

// The number in front, behind the first and behind the second comma; nothing without both.
Words masksOf(const std::string& text) {
    const size_t second = text.find(',') + 1;
    const size_t third = text.find(',', second) + 1;
    if (second == 0 || third == 0) return {};
    return {atoi(&text[0]), atoi(&text[second]), atoi(&text[third])};
}

Lines driverError(const std::string& text) {
    return text.empty() ? Lines() : Lines{"6 ZylcsToQuorinConv: " + text};
}

}  // namespace

TEST(Driver, ADeviceThatIsNotThereIsTriedTwelveTimes) {
    struct {
        int missing, opens;
        long slept;
        int result;
        const char* actions;
    } const kCases[] = {
            {0, 1, 0, 0, "W1"},         {1, 2, 100000, 0, "W1"},         {11, 12, 1100000, 0, "W1"},
            {12, 12, 1200000, -1, "a"}, {INT_MAX, 12, 1200000, -1, "a"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.missing);
        Started s;
        deviceCalls().missing = c.missing;
        EXPECT_EQ(s.driver.sendParamBlock(s.ctrl, kBlockLineout), c.result);
        EXPECT_EQ(deviceCalls().opens, c.opens);
        EXPECT_EQ(deviceCalls().sleptMicros, c.slept);
        EXPECT_EQ(s.phone.story(), c.actions);
        EXPECT_EQ(s.phone.log(), Lines());
    }
}

// The descriptor 0 is never closed, and so it is used again.
TEST(Driver, ADeviceThatOpensAsZeroStaysOpen) {
    Started s;
    deviceCalls().opensAs = 0;
    for (int n = 0; n < 2; ++n) EXPECT_EQ(s.driver.sendParamBlock(s.ctrl, kBlockLineout), 0);
    EXPECT_EQ(deviceCalls().opens, 1);
    EXPECT_EQ(deviceCalls().sleptMicros, 0);
    EXPECT_EQ(deviceCalls().zeroCloses, 0);
    // It serves nobody who has not opened it.
    deviceCalls().missing = INT_MAX;
    ParameterBuffer buffer(4, 3);
    EXPECT_EQ(zylDriver().sendParam(buffer, g_parameterTable[2].id, 4, 0, kBlockSpeaker), -1);
}

TEST(Driver, WhatTheDspLeavesOutIsZerosInAnImageOfAnySize) {
    for (uint32_t size : {1, 7, 8}) {
        Started s;
        layout().words[0] = size;
        zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
        std::fill_n(ctrl.data(), size, uint8_t{0x77});
        Fault nothing = {kIoctl, 0, kNothing, true};
        setFault(&nothing);
        EXPECT_EQ(s.driver.readParamBlock(ctrl, kBlockLineout), 0);
        setFault(nullptr);
        EXPECT_EQ(Bytes(ctrl.data(), ctrl.data() + size), Bytes(size));
    }
}

TEST(Driver, TheLogTimePropertyLogsNanosecondsOfEachUpload) {
    const std::pair<const char*, bool> kCases[] = {
            {nullptr, false}, {"true", true}, {"trueish", true}, {"tru", false},
            {"TRUE", false},  {"1", false},   {" true", false}};
    for (const auto& [value, logs] : kCases) {
        SCOPED_TRACE(value == nullptr ? "unset" : value);
        Started s;
        if (value != nullptr) writeFile("/run/properties/zyl.kwo.log_time", std::string(value));
        const ParameterTableEntry& row = g_parameterTable[2];
        ParameterBuffer buffer(row.size, 3);
        s.driver.sendParamBlock(s.ctrl, kBlockLineout);
        s.driver.sendParam(buffer, row.id, row.size, row.offset, kBlockSpeaker);
        s.driver.readParamBlock(s.ctrl, kBlockBluetooth);
        s.driver.notifyNewParams();
        EXPECT_EQ(s.phone.story(), "W1 w2.0=3 R2 a");
        const auto line = testing::MatchesRegex(
                "4 ZylcsToQuorinConv: system time before sending parameters to driver "
                "[1-9][0-9]{0,8}");
        EXPECT_THAT(s.phone.log(),
                    testing::AllOf(testing::SizeIs(logs ? 2 : 0), testing::Each(line)));
    }
}

TEST(Driver, UploadsCarryASizeOfZeroUntilItIsKnown) {
    Phone phone;
    zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
    zylDriver().sendParamBlock(ctrl, kBlockLineout);
    EXPECT_EQ(ctrl.header()->size, 0U);
}

TEST(Driver, APipelineOfNoSizeThatCanBeIsLogged) {
    constexpr uint32_t kLargest = 4 << 20;
    for (uint32_t size : {0U, kLargest, kLargest + 1, UINT32_MAX}) {
        Phone phone;
        layout().words[0] = size;
        zylDriver().initDriverCache();
        EXPECT_EQ(phone.log(),
                  driverError(size == kLargest
                                      ? ""
                                      : "int zylDriver::initDriverCache(): the conversion library "
                                        "reports no pipeline of a size that can be"))
                << size;
    }
}

// Every length of each text, and each bit of it the wrong way round.
TEST(Driver, TheMaskFileSetsAllThreeMasksOrNone) {
    const std::string kShort =
            "void zylDriver::ReadDevicesCSV(): Error reading mask cache file "
            "...(file://data//misc//zyl//cache-mask.csv), using defaults";
    EXPECT_EQ(masksOf("0x10, +6,-1\n,4"), (Words{0, 6, -1}));
    for (const std::string text :
         {"2,131084,1008", "2,131084,1008\n", "\n", ",,", "1,2,3,4", "0x10,2,3", " 5,\t+6,-1\n",
          "7x,eight,9 9", "4294967295,2147483647,-2147483648"}) {
        for (size_t variant = 0; variant <= 9 * text.size(); ++variant) {
            std::string content = text.substr(0, variant);
            if (variant > text.size()) {
                const size_t bit = variant - text.size() - 1;
                content[bit / 8] = static_cast<char>(text[bit / 8] ^ 1 << bit % 8);
            }
            SCOPED_TRACE(content);
            Phone phone;
            writeFile(kMaskFile, content);
            zylDriver().configureCacheBlocks();
            const Words masks = masksOf(content);
            EXPECT_EQ(Words(std::begin(g_deviceMasks), std::end(g_deviceMasks)),
                      masks.empty() ? kDefaultMasks : masks);
            EXPECT_EQ(phone.log(), driverError(masks.empty() ? kShort : ""));
        }
    }
    Phone phone;
    ASSERT_EQ(mkdir(kMaskFile, 0700), 0);
    zylDriver().ReadDevicesCSV();
    EXPECT_EQ(Words(std::begin(g_deviceMasks), std::end(g_deviceMasks)), kDefaultMasks);
    EXPECT_EQ(phone.log(), driverError(kShort));
}

TEST(Driver, ATuningFileLoadsWholeOrNotAtAll) {
    const std::tuple<int, uint32_t, int> kCases[] = {{0, kImageSize, 0},
                                                     {2, kImageSize + 1, 0},
                                                     {1, kImageSize - 1, -4},
                                                     {3, kImageSize, -1}};
    for (const auto& [block, size, result] : kCases) {
        Started s;
        Bytes file = tuningImage("tuning");
        file.resize(size);
        writeFile("/data/misc/zyl/tuning", file);
        EXPECT_EQ(s.driver.LoadParamBlock(s.ctrl, static_cast<CacheBlockType>(block), "tuning"),
                  result);
        const Bytes loaded(s.ctrl.data(), s.ctrl.data() + kImageSize);
        EXPECT_TRUE(loaded == (result == 0 ? tuningImage("tuning") : Bytes(kImageSize, 0)))
                << block;
        EXPECT_EQ(s.phone.log(), Lines());
    }
}

TEST(Driver, ATuningFileThatCannotBeReadIsAShortOne) {
    Started s;
    writeFile("/data/misc/zyl/tuning", tuningImage("tuning"));
    Fault broken = {kRead, 0, EIO};
    setFault(&broken);
    EXPECT_EQ(s.driver.LoadParamBlock(s.ctrl, kBlockLineout, "tuning"), -4);
    setFault(nullptr);
}

// The sanitizer looks.
TEST(Pipeline, AParameterOfAnySizeHasRoom) {
    for (uint32_t size = 0; size < 9; ++size) memset(ParameterBuffer(size).payload(), 1, size);
}

// In a process of its own, as limits and descriptors are the whole process's.
void expectInAProcess(const std::function<bool()>& holds) {
    const pid_t process = fork();
    if (process == 0) _exit(holds() ? 0 : 1);
    int status = -1;
    waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
}

bool setLimits(rlim_t soft, rlim_t hard) {
    const rlimit limits = {soft, hard};
    return setrlimit(RLIMIT_NOFILE, &limits) == 0;
}

rlim_t softLimit() {
    rlimit limits = {};
    getrlimit(RLIMIT_NOFILE, &limits);
    return limits.rlim_cur;
}

TEST(Descriptors, SixtyFourAreKeptInReserveWhereThereAreMany) {
    struct {
        rlim_t soft, hard, left;
    } const kCases[] = {{1000, 1000, 936}, {937, 1000, 936}, {936, 1000, 936}, {500, 1000, 500},
                        {129, 129, 65},    {128, 128, 128},  {100, 129, 65}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.soft << " of " << c.hard);
        expectInAProcess([&c] {
            return setLimits(c.soft, c.hard) && (keepDescriptorsInReserve(), softLimit() == c.left);
        });
    }
}

TEST(Descriptors, AFullTableHasOneMoreInReserve) {
    Phone phone;
    writeFile(kMaskFile, std::string("1,2,3"));
    for (rlim_t reserve : {1, 0}) {
        expectInAProcess([reserve] {
            const auto full = static_cast<rlim_t>(openFile(kMaskFile, O_RDONLY).get());
            if (!setLimits(full, full + reserve)) return false;
            const bool missing = !openFile("/data/misc/zyl/none", O_RDONLY).isOpen() &&
                                 errno == (reserve == 0 ? EMFILE : ENOENT);
            const Descriptor file = openFile(kMaskFile, O_RDONLY);
            const long slept = reserve == 1 ? 0 : 2 * 1100000;
            return missing && file.isOpen() == (reserve == 1) && softLimit() == full &&
                   deviceCalls().sleptMicros == slept;
        });
    }
}

// Each by whoever opened it, and none twice.
TEST(Descriptors, OneAndZeroAreLikeOthers) {
    Started s;
    writeFile(kMaskFile, std::string("1,2,3"));
    expectInAProcess([&s] {
        deviceCalls().opensAs = 1;
        return s.driver.sendParamBlock(s.ctrl, kBlockLineout) == 0 && deviceCalls().standing == 0;
    });
    expectInAProcess([] {
        close(0);
        errno = EMFILE;
        return openOnce(kMaskFile, O_RDONLY) == 0 && close(0) == 0 && canBeRead(kMaskFile) &&
               openFile(kMaskFile, O_RDONLY).get() == 0;
    });
}

TEST(Descriptors, WhatIsReadIsCounted) {
    Phone phone;
    writeFile(kMaskFile, std::string("1,2,3"));
    char text[9];
    size_t count = 77;
    EXPECT_FALSE(readFully(openFile(kMaskFile, O_RDONLY), text, sizeof(text), &count));
    EXPECT_EQ(count, 5U);
}

TEST(Pipeline, TheLargerOfTwoFreedImagesServesTheNext) {
    constexpr size_t kLarge = 1 << 24;
    expectInAProcess([] {
        {
            const ImageMemory small(1);
            const ImageMemory large(kLarge);
        }
        Fault full = {kAllocate, 0, ENOMEM, true};
        setFault(&full);
        const ImageMemory next(kLarge, std::nothrow);
        return next.get() != nullptr;
    });
}

TEST(Pipeline, TakesOnlyWhatLiesWhollyInside) {
    constexpr int64_t kEnd = kImageSize;
    const std::pair<int64_t, bool> kCases[] = {{-1, false},       {0, true},
                                               {1, true},         {kEnd - 4, true},
                                               {kEnd - 3, false}, {1LL << 32, false}};
    const Bytes word = {1, 2, 3, 4};
    zylQuorinPipelineCtrl bare(zylQuorinPipelineCtrl::kWithoutHeader);
    EXPECT_EQ(static_cast<void*>(bare.data()), bare.header());
    for (const auto& [offset, taken] : kCases) {
        zylQuorinPipelineCtrl ctrl(zylQuorinPipelineCtrl::kWithHeader);
        ctrl.clear();
        *ctrl.header() = {};
        Bytes expected(sizeof(ParamBlockHeader) + kImageSize);
        if (taken) {
            std::copy(word.begin(), word.end(), &expected[sizeof(ParamBlockHeader) + offset]);
        }
        ctrl.put(offset, word.data(), 4);
        const auto* whole = reinterpret_cast<uint8_t*>(ctrl.header());
        EXPECT_TRUE(Bytes(whole, whole + expected.size()) == expected) << offset;
    }
}
