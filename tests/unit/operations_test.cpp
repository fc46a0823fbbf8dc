#include <functional>

#include "lab/conversion/layout.h"
#include "tests/support/phone.h"

using android::sp;

TEST(SetEnabled, WithoutItsTuningFileItSavesAndWritesNothing) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    remove("/etc/zyl/speaker_off");
    EXPECT_EQ(service->setEnabled(0), -1);
    EXPECT_EQ(wordAt(readFile(kSettingsFile), 4), 0u);
    EXPECT_EQ(phone.log().back(),
              "6 zyl_kwo_service service: LoadParamBlock returned an error (-2)....");
    writeFile("/etc/zyl/speaker_1", Bytes(kImageSize - 1));
    EXPECT_EQ(service->setEnabled(1), -1);
    EXPECT_EQ(phone.log(),
              Lines{"6 zyl_kwo_service service: LoadParamBlock returned an error (-4)...."});
    EXPECT_EQ(phone.story(), "");
    // A rebuild goes on with the other blocks.
    service->setReloadFlag(0);
    EXPECT_EQ(phone.story(), "W1 W2 a");
}

// Binder's reply does not tell why.
TEST(SetEnabled, WithoutAGenerationIsNotAvailable) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start();
    int32_t value = 0;
    EXPECT_EQ(service->getEnabled(&value), -9);
    EXPECT_EQ(service->setEnabled(1), -9);
}

TEST(SetTuning, AFileThatCannotBeLoadedRestoresThePreviousNumber) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    writeFile("/etc/zyl/bluetooth_5", Bytes(kImageSize - 1));
    expectReplies(*service, {"SET_TUNING 0 77 : TUNING_NOT_LOADABLE", "GET_TUNING 0 : OK 1",
                             "SET_TUNING 2 5 : TUNING_TOO_SHORT", "GET_TUNING 2 : OK 0"});
    EXPECT_EQ(phone.story(), "");
    EXPECT_FALSE(exists(kSettingsFile));
    // The speaker's file goes by the stored state of the effect; the other routes have no off file.
    service->setEnabled(0);
    expectReplies(*service, {"SET_TUNING 0 77 : OK", "GET_TUNING 0 : OK 77",
                             "SET_TUNING 2 77 : TUNING_NOT_LOADABLE"});
}

TEST(SetTuning, LineoutThreeBecomesOneWhereItsFileIsMissing) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    remove("/etc/zyl/lineout_3");
    expectReplies(*service, {"SET_TUNING 1 3 : OK", "GET_TUNING 1 : OK 1"});
    EXPECT_EQ(wordAt(readFile(kSettingsFile), 16), 1u);
    // Back to what was stored before, not to what the fallback stored in between.
    writeFile("/etc/zyl/lineout_7", tuningImage("lineout_7"));
    expectReplies(*service, {"SET_TUNING 1 7 : OK"});
    remove("/etc/zyl/lineout_1");
    expectReplies(*service, {"SET_TUNING 1 3 : TUNING_NOT_LOADABLE", "GET_TUNING 1 : OK 7"});
}

TEST(Getters, ReplaceWhatTheirCallerHad) {
    Phone phone;
    const sp<zyl_kwo_service> service = phone.start("torvane");
    service->setActiveRoute(1);
    using Getter = std::function<int32_t(int32_t*)>;
    const Getter kGetters[] = {
            [&](int32_t* value) { return service->getEnabled(value); },
            [&](int32_t* value) { return service->getStereoMode(value); },
            [&](int32_t* value) { return service->getTuning(1, value); },
            [&](int32_t* value) { return service->getGEQEnable(value); },
            [&](int32_t* value) { return service->getActiveRoute(value); },
            [&](int32_t* value) {
                return service->getRouteMask(1, reinterpret_cast<uint32_t*>(value));
            },
    };
    Words values;
    for (const Getter& getter : kGetters) {
        int32_t value = 77;
        EXPECT_EQ(getter(&value), 0);
        values.push_back(value);
    }
    EXPECT_EQ(values, (Words{1, 2, 3, 0, 1, 0x2000C}));
}

// A row may be narrower or wider than what is written to it.
TEST(Operations, RowsOfAnySizeAreWrittenWithZerosBehindTheirValue) {
    const std::string gains = "2003200320032003200320032003200320032003";
    struct {
        uint32_t size;
        const char* gain;
        std::string gains;
    } const kCases[] = {{1, "32", "0x" + gains.substr(20)},
                        {2, "800", "800,800,800,800,800,800,800,800,800,800"},
                        {3, "800", "0x" + gains + std::string(20, '0')},
                        {8, "800", ""}};
    for (const auto& c : kCases) {
        Phone phone;
        setRowSize(layout(), 2, c.size);
        setRowSize(layout(), 3, c.size);
        setRowSize(layout(), 13, c.size);
        const sp<zyl_kwo_service> service = phone.start("torvane");
        expectReplies(*service, {"SET_GEQ_ENABLE 1 : OK"});
        EXPECT_EQ(phone.story(), "w13.0=1 w13.2=1 w13.1=1 a");
        expectReplies(*service, {"SET_STEREO_MODE 3 : OK"});
        EXPECT_EQ(phone.story(), "w2.1=3 w2.2=3 a");
        expectReplies(*service, {"SET_GEQ_GAIN 0 800 : OK"});
        EXPECT_THAT(phone.story(), testing::StartsWith(std::string("w3.2=") + c.gain + " "));
        expectReplies(*service, {"SET_GEQ_GAIN_ALL 800*10 : OK"});
        EXPECT_EQ(wordAt(readFile(kSettingsFile), 60), 800u);
        EXPECT_THAT(phone.story(),
                    testing::HasSubstr(" w3-12.0" + (c.gains.empty() ? "" : "=" + c.gains) + " "));
    }
}

TEST(Operations, AResetClearsTheWholeRowOfAListeningTest) {
    Phone phone;
    setRowSize(layout(), 28, 8);
    const sp<zyl_kwo_service> service = phone.start("maldor");
    expectReplies(*service, {"RESET_LISTENING_TEST_RESULT : OK"});
    EXPECT_EQ(phone.story(), "w28.1=0 w28.2=0 a");
}

// A reply of the audio system has to fit as a whole, though what precedes the key is not copied.
TEST(VersionString, JoinsWhatIsKnownAndKeepsTheSeparators) {
    const std::string head = "KwoService=1.0.3.5.0";
    const std::string version = "QuorinVersion=" + std::string(23, 'v');
    const std::string text = "QuorinDescription=" + std::string(2071 - 18, 'd');
    const std::string platform(39, 'p');
    const auto refused = [](const std::string& name, const std::string& subject, int size) {
        return "6 ZylcsToQuorinConv: int zylDriver::getQuorin" + name +
               "(char *, unsigned int): cannot copy " + subject +
               ". min value of 'size' should be " + std::to_string(size);
    };
    const Lines missing = {refused("Version", "version info", 0),
                           refused("Description", "quorin description", 0)};
    struct {
        std::string library;  // empty: it tells no version
        Lines replies;
        std::string text;
        Lines log;
    } const kCases[] = {
            {"4.5", {"", "", ""}, head + ";ConversionLib=4.5;;;", missing},
            {"4.5",
             {"x;" + version, text, platform},
             head + ";ConversionLib=4.5;" + version + ";" + text + ";" + platform,
             {}},
            {"",
             {"xy;" + version, text + "d", platform + "p"},
             head + ";;;",
             {refused("Version", "version info", 40),
              refused("Description", "quorin description", 2072),
              refused("PlatformVersion", "quorin platform version", 40)}},
            // A library with more to say than there is room for.
            {std::string(4000, 'v'),
             {"", "", ""},
             head + ";ConversionLib=" + std::string(3071 - 20 - 15, 'v'),
             missing},
    };
    for (const auto& c : kCases) {
        Phone phone;
        layout().version.reset();
        if (!c.library.empty()) layout().version = c.library;
        const sp<zyl_kwo_service> service = phone.start("torvane");
        Phone::audioReplies() = {{"QuorinVersion", c.replies[0]},
                                 {"QuorinDescription", c.replies[1]},
                                 {"QuorinPlatformVersion", c.replies[2]}};
        std::vector<char> reply(kVersionStringSize, 'x');
        auto length = static_cast<int32_t>(reply.size());
        EXPECT_EQ(service->getVersionString(reply.data(), &length), 0);
        EXPECT_STREQ(reply.data(), c.text.c_str());
        EXPECT_EQ(length, static_cast<int32_t>(c.text.size()));
        EXPECT_EQ(phone.log(), c.log);
        android::Parcel data;
        android::Parcel answer;
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
        EXPECT_EQ(service->transact(Izyl_kwo_service::GET_VERSION_STRING, data, &answer), 0);
        EXPECT_STREQ(answer.readCString(), c.text.c_str());
        phone.log();
        std::string own(40, 'x');
        EXPECT_EQ(zylDriver().getQuorinVersion(&own[0], 40), c.log.empty() ? 0 : -7);
        if (c.log.empty()) {
            EXPECT_STREQ(own.c_str(), &c.replies[0][c.replies[0].find("Quorin")]);
        }
    }
}
