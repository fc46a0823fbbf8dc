// What the tables of cases cannot show: the token, replies that cannot be written, the proxy's own
// results.

#include <binder/Parcel.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>

#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

using android::FAILED_TRANSACTION;
using android::NO_ERROR;
using android::PERMISSION_DENIED;
using android::sp;
using android::UNKNOWN_TRANSACTION;

namespace {

std::string logged(const std::string& text) {
    return "6 zyl_kwo_service service: virtual status_t Bn_zyl_kwo_service::onTransact(uint32_t, "
           "const android::Parcel &, android::Parcel *, uint32_t): " +
           text;
}

// What a code logs when its reply cannot be written.
struct Code {
    uint32_t number;
    const char* failure;
    bool fails = true;
};

std::vector<Code> allCodes() {
    std::vector<Code> codes = {
            {1, "Error writing platform info to reply"},
            {2, "error writing KWO enabled info to reply"},
            {4, "Error writing KWO get stereo mode reply"},
            {5, "Error writing KWO set stereo mode info to reply"},
            {6, "error writing KWO getTuning to reply"},
            {7, "error writing KWO setTuning info to reply"},
            {8, "Error writing KWO get geq gain reply"},
            {9, "Error writing KWO set geq gain info to reply"},
            {12, "Error writing KWO set geq enable info to reply"},
            {13, "Error writing KWO get geq enable reply"},
            {14, "Problem writing GEQ gains, failed transaction"},
            {15, "Error writing KWO set geq geq gain all info to reply"},
            {29, "Error writing KWO set listening test result to reply"},
            {30, "Error writing KWO set listening test result to reply"},
            {31, "Error writing KWO reset listening test result to reply"},
            {32, "error writing GET_ACTIVE_ROUTE to reply"},
            {1001, "error writing KWO get route mask to reply"},
            {3002, "error writing into reply"},
            {3003, "error writing into reply"},
            {3004, "error writing get dB levels, failed transaction"},
            {3005, "Error writing KWO set db gain info to reply"},
    };
    // Without a text: 3 replies nothing, and nobody looks at what 40 and 41 reply; the parcel
    // itself does not tell that 11 failed.
    for (uint32_t code : {3, 11, 40, 41}) codes.push_back({code, nullptr, false});
    for (uint32_t code = 19; code <= 28; ++code) codes.push_back({code, nullptr});
    return codes;
}

const std::vector<Code> kCodes = allCodes();

// The way to the service: not local, so that a proxy is needed, and open to faults.
class Way : public android::BBinder {
  public:
    explicit Way(const sp<zyl_kwo_service>& service) : mService(service) {}

    android::status_t fault = NO_ERROR;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override {
        return fault != NO_ERROR ? fault : mService->transact(code, data, reply, flags);
    }

  private:
    const sp<zyl_kwo_service> mService;
};

}  // namespace

TEST(Dispatcher, TheTokenIsAskedForBeforeAnythingElseAndOnlyByKnownCodes) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const android::String16 wrong("zyl.kwo.Izyl_kwo_servic");
    const Answer denied = {PERMISSION_DENIED, {}};
    for (const Code& code : kCodes) {
        EXPECT_EQ(transact(*service, code.number, {1}, wrong), denied);
    }
    for (uint32_t code : {10u, 3001u}) EXPECT_EQ(transact(*service, code, {1}, wrong), denied);
    for (uint32_t code : {0u, 16u, 17u, 18u, 33u, 39u, 42u, 43u, 1000u, 1002u, 3000u, 3006u}) {
        EXPECT_EQ(transact(*service, code, {}, wrong).status, UNKNOWN_TRANSACTION) << code;
    }
    EXPECT_EQ(transact(*service, android::IBinder::PING_TRANSACTION, {}, wrong).status, NO_ERROR);
    EXPECT_EQ(phone.story(), "");
    EXPECT_FALSE(exists(kSettingsFile));
    EXPECT_EQ(phone.log(), Lines());
}

// Objects would be read as words, and getDbLevels would hand out this process's addresses.
TEST(Dispatcher, ObjectsThatACodeDoesNotTakeAreRefusedBeforeAnythingIsRead) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const Answer levels = transact(*service, 3004, {});
    const auto answerTo = [&service](uint32_t code, bool descriptor, int objects) {
        android::Parcel data;
        android::Parcel reply;
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
        for (int i = 0; i < objects; ++i) {
            descriptor ? data.writeDupFileDescriptor(STDERR_FILENO)
                       : data.writeStrongBinder(service);
        }
        return service->transact(code, data, &reply);
    };
    for (const Code& code : kCodes) {
        for (bool descriptor : {false, true}) {
            EXPECT_EQ(answerTo(code.number, descriptor, 1), android::BAD_TYPE) << code.number;
        }
    }
    EXPECT_EQ(answerTo(3001, true, 1), NO_ERROR);
    EXPECT_EQ(answerTo(3001, true, 2), android::BAD_TYPE);
    EXPECT_EQ(answerTo(10, true, 1), UNKNOWN_TRANSACTION);
    EXPECT_EQ(transact(*service, 3004, {}), levels);
    EXPECT_EQ(phone.story(), "");
}

TEST(Dispatcher, OneWayCallsAreRefusedBeforeTheyAct) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    for (const Code& code : kCodes) {
        android::Parcel data;
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
        data.writeInt32(0);
        EXPECT_EQ(service->transact(code.number, data, nullptr, android::IBinder::FLAG_ONEWAY),
                  android::INVALID_OPERATION);
    }
    EXPECT_EQ(phone.story(), "");
    EXPECT_FALSE(exists(kSettingsFile));
}

// The base class reads as many arguments as there are bytes.
TEST(Dispatcher, WhatThePlatformAsksForIsBoundedBySize) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    for (uint32_t code :
         {android::IBinder::DUMP_TRANSACTION, android::IBinder::SHELL_COMMAND_TRANSACTION,
          android::IBinder::INTERFACE_TRANSACTION}) {
        EXPECT_EQ(transact(*service, code, Words(257)).status, android::BAD_VALUE);
        // Arguments without end, of which the last is less than a word.
        android::Parcel data;
        android::Parcel reply;
        for (int i = 0; i < 5; ++i) data.writeInt32(INT_MAX);
        data.setDataSize(data.dataSize() - 1);
        EXPECT_EQ(service->transact(code, data, &reply), android::BAD_VALUE);
    }
    EXPECT_EQ(transact(*service, android::IBinder::INTERFACE_TRANSACTION, Words(100)).status,
              NO_ERROR);
    EXPECT_EQ(transact(*service, 3006, Words(10000)).status, UNKNOWN_TRANSACTION);
}

TEST(Dispatcher, AReplyThatCannotBeWrittenIsLoggedAndFails) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    // So large that the parcel refuses to grow any further.
    constexpr size_t kNearlyFull = 0x58000000;
    android::Parcel full;
    ASSERT_EQ(full.setDataSize(kNearlyFull), NO_ERROR);
    for (const Code& code : kCodes) {
        SCOPED_TRACE(code.number);
        full.setDataPosition(kNearlyFull);
        android::Parcel data;
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
        phone.log();
        EXPECT_EQ(service->transact(code.number, data, &full),
                  code.fails ? FAILED_TRANSACTION : NO_ERROR);
        Lines own;
        for (const std::string& line : phone.log()) {
            if (line.find("onTransact") != std::string::npos) own.push_back(line);
        }
        EXPECT_EQ(own, code.failure == nullptr ? Lines() : Lines{logged(code.failure)});
    }
    // Room for the result, but not for what follows it.
    full.setDataPosition(kNearlyFull - sizeof(int32_t));
    android::Parcel data;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    EXPECT_EQ(service->transact(Izyl_kwo_service::GET_LISTENING_TEST_RESULT, data, &full),
              FAILED_TRANSACTION);
}

TEST(Dispatcher, ADumpThatCannotBeWrittenIsLogged) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const int file = memfd_create("dump", MFD_CLOEXEC);
    EXPECT_EQ(service->dump(file, {}), NO_ERROR);
    close(file);
    EXPECT_EQ(phone.log(), Lines());
    EXPECT_EQ(service->dump(-1, {}), android::UNKNOWN_ERROR);
    EXPECT_EQ(phone.log(), Lines{"6 zyl_kwo_service service: virtual status_t "
                                 "zyl_kwo_service::dump(int, const Vector<android::String16> &): "
                                 "error writing string"});
}

// The speaker's tuning data stays allocated, but not without end; the other codes go on.
TEST(Dispatcher, TuningDataThatIsKeptIsBounded) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    Words data(1 + (1 << 18) + 1);
    data[0] = 1 << 20;
    // What was announced and did not arrive does not count.
    for (int n = 0; n < 200; ++n) {
        ASSERT_EQ(transact(*service, 19, {data[0]}), (Answer{NO_ERROR, {-9}})) << n;
    }
    for (uint32_t taken = 0; taken < 127; ++taken) {
        ASSERT_EQ(transact(*service, 19 + taken % 2, data), (Answer{NO_ERROR, {-9}})) << taken;
    }
    EXPECT_EQ(transact(*service, 19, data), (Answer{NO_ERROR, {-9}}));
    EXPECT_EQ(transact(*service, 19, {0, 0}), (Answer{FAILED_TRANSACTION, {}}));
    EXPECT_EQ(transact(*service, 27, data), (Answer{NO_ERROR, {-9}}));
}

// What was announced counts where it cannot be cut down to what arrived.
TEST(Dispatcher, TuningDataThatCannotBeMadeSmallerCountsWhole) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    for (int taken = 0; taken < 8; ++taken) {
        Fault third = {kAllocate, 2, ENOMEM};
        setFault(&third);
        EXPECT_EQ(transact(*service, 20, {16 << 20}), (Answer{NO_ERROR, {-9}}));
        setFault(nullptr);
        EXPECT_EQ(third.subject, "realloc");
    }
    EXPECT_EQ(transact(*service, 20, {16 << 20}), (Answer{FAILED_TRANSACTION, {}}));
}

TEST(Dispatcher, AFailedOperationIsLoggedInTheWordsOfItsCode) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    remove("/etc/zyl/speaker_1");
    EXPECT_EQ(transact(*service, 3, {1}), (Answer{FAILED_TRANSACTION, {}}));
    EXPECT_EQ(phone.log().back(), logged("Error reading KWO enabled info to reply"));
    EXPECT_EQ(transact(*service, 30, {}), (Answer{FAILED_TRANSACTION, {-9}}));
    EXPECT_EQ(phone.log().back(), logged("Error writing KWO set listening test result to reply"));
}

TEST(Proxy, WhatItSetsArrivesAndWhatItGetsComesBack) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("maldor");
    const sp<Izyl_kwo_service> proxy = Izyl_kwo_service::asInterface(new Way(service));
    int32_t value = 0;
    EXPECT_EQ(proxy->setEnabled(7), 0);
    EXPECT_EQ(proxy->getEnabled(&value), 0);
    EXPECT_EQ(value, 7);
    PlatformInfoRecord info = {};
    EXPECT_EQ(proxy->getPlatformInfo(&info), 0);
    EXPECT_STREQ(info.version, "1.0.3.5.0");
    EXPECT_EQ(info.platformType, 0);
    EXPECT_EQ(service->getPlatformInfo(&info), 20);
    EXPECT_EQ(service->unsupportedOperation(), -8);
    EXPECT_EQ(proxy->setListeningTestResult(1, 2, 3, 4), 0);
    float test[] = {77, 77, 77, 77};
    EXPECT_EQ(service->getListeningTestResult(&test[0], &test[1], &test[2], &test[3]), 0);
    EXPECT_THAT(test, testing::ElementsAre(1, 2, 3, 4));
    // A name that its blob just holds, and a work area.
    uint8_t data[] = "Tuning";
    uint8_t work[5] = {};
    EXPECT_EQ(proxy->setAccessoryZylcsTuning(2, data, sizeof(data), work, sizeof(work)), 0);
    char name[kZylcsNameSize] = {};
    int32_t length = kZylcsNameSize;
    EXPECT_EQ(proxy->getAccessoryZylcsTuningName(2, name, &length), 0);
    EXPECT_STREQ(name, "Tuning");
    memset(name, 'x', sizeof(name));
    EXPECT_EQ(service->getAccessoryZylcsTuningName(2, name, &length), 0);
    EXPECT_STREQ(name, "Tuning");
    length = 3;
    EXPECT_EQ(service->getAccessoryZylcsTuningName(2, name, &length), 0);
    EXPECT_STREQ(name, "Tu");
    // The test that was taken is in the record, until it is reset.
    EXPECT_EQ(wordAt(readFile("/data/misc/zyl/current_bluetooth"), 448), 3u);
    EXPECT_EQ(proxy->resetListeningTestResult(), 0);
    EXPECT_EQ(wordAt(readFile("/data/misc/zyl/current_bluetooth"), 448), 0u);
    // A refusal leaves what the caller had.
    EXPECT_EQ(proxy->getTuning(0, &value), -9);
    EXPECT_EQ(value, 7);
}

TEST(Proxy, FaultsOfTheWayHaveResultsOfTheirOwn) {
    Phone phone;
    const sp<Way> way = new Way(phone.start("torvane"));
    const sp<Izyl_kwo_service> proxy = Izyl_kwo_service::asInterface(way);
    const std::pair<android::status_t, int32_t> kCases[] = {
            {android::DEAD_OBJECT, kZylKwoServiceGone},
            {PERMISSION_DENIED, kZylKwoCallRefused},
            {FAILED_TRANSACTION, kZylKwoCallFailed},
    };
    for (const auto& [fault, result] : kCases) {
        way->fault = fault;
        int32_t value = 123;
        EXPECT_EQ(proxy->setEnabled(1), result);
        EXPECT_EQ(proxy->getStereoMode(&value), result);
        EXPECT_EQ(proxy->getEnabled(&value), result);
        EXPECT_EQ(value, 123);
        char text[kVersionStringSize] = "as it was";
        PlatformInfoRecord info = {};
        value = sizeof(text);
        EXPECT_EQ(proxy->getVersionString(text, &value), result);
        EXPECT_EQ(proxy->getPlatformInfo(&info), result);
        EXPECT_STREQ(text, "as it was");
    }
}

TEST(Proxy, IsNotUsedForAServiceInTheSameProcess) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    const sp<android::IBinder> binder = android::IInterface::asBinder(service.get());
    EXPECT_EQ(Izyl_kwo_service::asInterface(binder).get(), service.get());
    EXPECT_EQ(binder->queryLocalInterface(android::String16("zyl.kwo.Izyl_kwo_service2")), nullptr);
    EXPECT_EQ(Izyl_kwo_service::asInterface(nullptr), nullptr);
}
