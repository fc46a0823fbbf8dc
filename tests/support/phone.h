// A phone for one test: a root directory of its own with the places that the service knows, the
// devices behind it, and what was journalled and logged.

#ifndef ZYL_TESTS_SUPPORT_PHONE_H
#define ZYL_TESTS_SUPPORT_PHONE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "service/zyl_kwo_service.h"
#include "tests/support/device_calls.h"

using Lines = std::vector<std::string>;
using Words = std::vector<int32_t>;
using Bytes = std::vector<uint8_t>;

constexpr uint32_t kImageSize = 61700;
constexpr char kSettingsFile[] = "/data/misc/zyl/zyl_kwo_settings";
constexpr char kMaskFile[] = "/data/misc/zyl/cache-mask.csv";

// One phone at a time. Nothing of an earlier one is left: devices, replies, masks and layout are as
// they are when a phone boots. What uses the phone goes before it does.
class Phone {
  public:
    Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;
    // Fails the test if a descriptor was left open or closed twice.
    ~Phone();

    // Sample tunings of a generation, torvane or maldor, each file a tuningImage() of its name.
    static void install(const std::string& generation);

    // A service on such a phone. Its start is forgotten: journal and log begin after it.
    android::sp<zyl_kwo_service> start(const std::string& generation = "none");

    // Since the last look. A log line is "PRIORITY TAG: TEXT"; only the service's own tags count.
    Lines journal();
    static Lines log();

    // What the audio system answers each key with; nothing where the key is not here.
    static std::map<std::string, std::string>& audioReplies();

    // The journal since the last look in short, see lab/cases/story.h.
    std::string story();
    std::string storyWithSaves();

  private:
    std::string mRoot;
    std::streamoff mJournalRead = 0;
};

Bytes tuningImage(const std::string& name);

void writeFile(const std::string& path, const Bytes& bytes);
void writeFile(const std::string& path, const std::string& text);
// Empty when there is none.
Bytes readFile(const std::string& path);
bool exists(const std::string& path);

Bytes bytesOf(const std::vector<uint32_t>& words);
uint32_t wordAt(const Bytes& bytes, size_t offset);
void putWord(Bytes& bytes, size_t offset, uint32_t word);

struct Answer {
    android::status_t status;
    Words words;
};
inline bool operator==(const Answer& a, const Answer& b) {
    return a.status == b.status && a.words == b.words;
}
inline std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    return out << "status " << answer.status << " words " << testing::PrintToString(answer.words);
}

// One transaction with 32-bit arguments.
Answer transact(android::IBinder& service, uint32_t code, const Words& arguments,
                const android::String16& token = Izyl_kwo_service::descriptor);

// A call and its reply, as tables of cases have them; or several, each as "CALL : REPLY".
std::string replyTo(android::IBinder& service, const std::string& call);
void expectReplies(android::IBinder& service, std::initializer_list<const char*> calls);

#endif  // ZYL_TESTS_SUPPORT_PHONE_H
