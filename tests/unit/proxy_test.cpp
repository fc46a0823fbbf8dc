// What the proxy sends for each operation, byte for byte, and what it makes of the reply.

#include <binder/Binder.h>

#include <cstring>
#include <functional>
#include <sstream>

#include "lab/cases/case_table.h"
#include "tests/support/phone.h"

namespace {

using Proxy = Izyl_kwo_service;

// Keeps what it is sent and replies with words of the test's choice.
class Recorder : public android::BBinder {
  public:
    uint32_t code = 0;
    Bytes sent;
    size_t objects = 0;
    Words reply;

  protected:
    android::status_t onTransact(uint32_t number, const android::Parcel& data, android::Parcel* out,
                                 uint32_t /*flags*/) override {
        code = number;
        sent.assign(data.data(), data.data() + data.dataSize());
        objects = data.objectsCount();
        for (int32_t word : reply) out->writeInt32(word);
        return android::NO_ERROR;
    }
};

// A getter of `Value`s into an array that begins with `first`; the result and the values in words.
template <typename Value, int kCount, typename Call>
std::string got(Call call, Value before) {
    Value values[kCount];
    std::fill_n(values, kCount, before);
    std::ostringstream text;
    text << call(values);
    for (Value value : values) text << ' ' << value;
    return text.str();
}

// A getter of a text.
template <typename Call>
std::string gotText(Call call, int32_t capacity) {
    char text[64];
    memset(text, 'x', sizeof(text));
    const int32_t result = call(text, &capacity);
    return std::to_string(result) + " " + text + " " + std::to_string(capacity);
}

uint8_t data[] = "Id";
uint8_t work[4] = {};
const uint16_t kGains[] = {725, 2, 3, 4, 5, 6, 7, 8, 9, 32767};
const int32_t kLevels[] = {-80000, 2, 3, 4, 5, 6, 7, 8, 9, 10};
constexpr int32_t kAbcd = 0x64636261;  // "abcd"
constexpr int32_t kEf = 0x00006665;    // "ef" and its NUL

// The operations of a row, in words: its result; or the result and the values of a getter, which
// are all `before` before; or the result, the text and its length.
#define RESULT(operation) [](Proxy& p) { return std::to_string(p.operation); }
#define VALUES(type, count, before, operation) \
    [](Proxy& p) { return got<type, count>([&](type* v) { return p.operation; }, before); }
#define TEXT(capacity, operation) \
    [](Proxy& p) { return gotText([&](char* t, int32_t* n) { return p.operation; }, capacity); }

const struct {
    const char* call;  // empty: nothing is sent
    Words reply;
    std::function<std::string(Proxy&)> made;
    std::string result;
} kCases[] = {
        {"GET_ENABLED", {7}, VALUES(int32_t, 1, 7, getEnabled(v)), "0 7"},
        {"SET_ENABLED 7", {}, RESULT(setEnabled(7)), "0"},
        {"GET_STEREO_MODE", {0, 3}, VALUES(int32_t, 1, 7, getStereoMode(v)), "0 3"},
        {"GET_STEREO_MODE", {-9, 3}, VALUES(int32_t, 1, 8, getStereoMode(v)), "-9 8"},
        {"SET_STEREO_MODE 2", {-1}, RESULT(setStereoMode(2)), "-1"},
        {"GET_TUNING 2", {0, 5}, VALUES(int32_t, 1, 7, getTuning(2, v)), "0 5"},
        {"SET_TUNING 1 5", {-4}, RESULT(setTuning(1, 5)), "-4"},
        {"GET_GEQ_GAIN 9", {0, 725}, VALUES(uint16_t, 1, 7, getGEQGain(9, v)), "0 725"},
        {"SET_GEQ_GAIN 9 32767", {-3}, RESULT(setGEQGain(9, 32767)), "-3"},
        {"GET_GEQ_ENABLE", {0, 1}, VALUES(int32_t, 1, 7, getGEQEnable(v)), "0 1"},
        {"SET_GEQ_ENABLE 1", {-9}, RESULT(setGEQEnable(1)), "-9"},
        {"GET_GEQ_GAIN_ALL",
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
         VALUES(uint16_t, 10, 7, getGEQGainAll(v)),
         "0 1 2 3 4 5 6 7 8 9 10"},
        {"SET_GEQ_GAIN_ALL 725 2 3 4 5 6 7 8 9 32767", {-1}, RESULT(setGEQGainAll(kGains)), "-1"},
        {"GET_VERSION_STRING", {kAbcd, kEf}, TEXT(7, getVersionString(t, n)), "0 abcdef 6"},
        {"GET_VERSION_STRING", {kAbcd, kEf}, TEXT(6, getVersionString(t, n)), "0 abcde 5"},
        {"SET_SPEAKER_ZYLCS_TUNING \"Id\" 4",
         {-1000},
         RESULT(setSpeakerZylcsTuning(data, 3, work, 4)),
         "-1000"},
        {"SET_SECOND_SPEAKER_ZYLCS_TUNING \"Id\" 0",
         {-2},
         RESULT(setSecondSpeakerZylcsTuning(data, 3, work, 0)),
         "-2"},
        {"SET_SECOND_SPEAKER_ZYLCS_TUNING \"\" 1",
         {-2},
         RESULT(setSecondSpeakerZylcsTuning(data + 2, 1, work, 1)),
         "-2"},
        {"SET_ACCESSORY_ZYLCS_TUNING 2 \"Id\" 4",
         {-3},
         RESULT(setAccessoryZylcsTuning(2, data, 3, work, 4)),
         "-3"},
        {"SET_STEREO_ROOM_ZYLCS_TUNING 1 \"Id\" 4",
         {-6},
         RESULT(setStereoRoomZylcsTuning(1, data, 3, work, 4)),
         "-6"},
        {"SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING \"Id\" 4",
         {-8},
         RESULT(setMultiChannelRoomZylcsTuning(data, 3, work, 4)),
         "-8"},
        {"GET_SPEAKER_ZYLCS_TUNING_NAME",
         {0, 37, kAbcd, kEf},
         TEXT(37, getSpeakerZylcsTuningName(t, n)),
         "0 abcdef 37"},
        {"GET_SPEAKER_ZYLCS_TUNING_NAME",
         {0, 37},
         TEXT(37, getSpeakerZylcsTuningName(t, n)),
         "0  37"},
        {"GET_SECOND_SPEAKER_ZYLCS_TUNING_NAME",
         {0, 36, 'e'},
         TEXT(37, getSecondSpeakerZylcsTuningName(t, n)),
         "0 e 36"},
        {"GET_ACCESSORY_ZYLCS_TUNING_NAME 2",
         {0, 37, kEf},
         TEXT(37, getAccessoryZylcsTuningName(2, t, n)),
         "0 ef 37"},
        {"GET_STEREO_ROOM_ZYLCS_TUNING_NAME 1",
         {0, 37, kEf},
         TEXT(37, getStereoRoomZylcsTuningName(1, t, n)),
         "0 ef 37"},
        {"GET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING_NAME",
         {0, 37, kEf},
         TEXT(37, getMultiChannelRoomZylcsTuningName(t, n)),
         "0 ef 37"},
        {"SET_LISTENING_TEST_RESULT 1 2.5 -3 4",
         {-1005},
         RESULT(setListeningTestResult(1, 2.5F, -3, 4)),
         "-1005"},
        {"GET_LISTENING_TEST_RESULT",
         {0, 0x3F800000, 0x40200000, -0x3FC00000, 0x40800000},
         VALUES(float, 4, 7, getListeningTestResult(v, v + 1, v + 2, v + 3)),
         "0 1 2.5 -3 4"},
        {"GET_LISTENING_TEST_RESULT",
         {-9, 0x3F800000},
         VALUES(float, 4, 7, getListeningTestResult(v, v + 1, v + 2, v + 3)),
         "-9 7 7 7 7"},
        {"RESET_LISTENING_TEST_RESULT", {-9}, RESULT(resetListeningTestResult()), "-9"},
        {"GET_ACTIVE_ROUTE 9", {0, 77}, VALUES(int32_t, 1, 9, getActiveRoute(v)), "0 77"},
        {"SET_ACTIVE_ROUTE -5", {0}, RESULT(setActiveRoute(-5)), "0"},
        {"SET_RELOAD_FLAG 1", {0}, RESULT(setReloadFlag(true)), "0"},
        {"SET_RELOAD_FLAG 0", {0}, RESULT(setReloadFlag(false)), "0"},
        {"GET_ROUTE_MASK 1", {0, 0x2000C}, VALUES(uint32_t, 1, 7, getRouteMask(1, v)), "0 131084"},
        {"SET_FILE_DESCRIPTOR /dev/null 61700", {-3}, RESULT(setFileDescriptor(0, 61700)), "-3"},
        {"FETCH_CACHE_BLOCK 2", {-3000}, RESULT(fetchCacheBlock(2)), "-3000"},
        {"PUSH_CACHE_BLOCK 1", {0}, RESULT(pushCacheBlock(1)), "0"},
        {"GET_DB_LEVELS",
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
         VALUES(int32_t, 10, 7, getDbLevels(v)),
         "0 1 2 3 4 5 6 7 8 9 10"},
        {"SET_DB_GAIN -80000 2 3 4 5 6 7 8 9 10", {0}, RESULT(setDbGain(kLevels)), "0"},
        {"", {}, RESULT(unsupportedOperation()), "-8"},
};

}  // namespace

TEST(ProxyCalls, AreOnTheWireAsTheProtocolSays) {
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.call);
        const android::sp<Recorder> recorder = new Recorder;
        recorder->reply = c.reply;
        const android::sp<Proxy> proxy = Proxy::asInterface(recorder);
        EXPECT_EQ(c.made(*proxy), c.result);
        if (c.call[0] == '\0') continue;
        android::Parcel expected;
        EXPECT_EQ(recorder->code, fillCall(c.call, &expected));
        EXPECT_EQ(recorder->objects, expected.objectsCount());
        // Where a descriptor stands, its number is nobody's business.
        const bool object = expected.objectsCount() > 0;
        EXPECT_EQ(recorder->sent.size(), expected.dataSize());
        EXPECT_TRUE(object || recorder->sent == Bytes(expected.data(),
                                                      expected.data() + expected.dataSize()));
    }
}

// A record of the right size, two that are not, and one that is cut short.
TEST(ProxyCalls, ThePlatformsRecordIsTakenWhole) {
    for (const auto& [size, words] : {std::pair(20, 6), {19, 6}, {21, 6}, {20, 5}}) {
        const android::sp<Recorder> recorder = new Recorder;
        recorder->reply = {size, 20, 0x302E3112, 0x352E332E, 0x0000302E, 3};
        recorder->reply.resize(words);
        PlatformInfoRecord info = {};
        const int32_t result = Proxy::asInterface(recorder)->getPlatformInfo(&info);
        const bool whole = size == 20 && words == 6;
        EXPECT_EQ(result, whole ? 0 : -20003);
        EXPECT_EQ(info.platformType, whole ? 3 : 0);
        EXPECT_STREQ(info.version, whole ? "1.0.3.5.0" : "");
        android::Parcel expected;
        EXPECT_EQ(recorder->code, fillCall("GET_PLATFORM_INFO 1", &expected));
        EXPECT_TRUE(recorder->sent ==
                    Bytes(expected.data(), expected.data() + expected.dataSize()));
    }
}
