#include "tests/support/phone.h"

#include <android/log.h>
#include <binder/Parcel.h>
#include <fcntl.h>
#include <media/AudioSystem.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <random>

#include "lab/cases/case_table.h"
#include "lab/cases/story.h"
#include "lab/conversion/layout.h"
#include "lab/journal/journal.h"

namespace {

std::mutex gLogLock;
Lines gLog;

void keepLogLine(const __android_logger_data* data, const char* text) {
    const std::string tag = data->tag == nullptr ? "" : data->tag;
    if (tag.compare(0, 4, "zyl_") != 0 && tag != "ZylcsToQuorinConv") return;
    const std::lock_guard<std::mutex> lock(gLogLock);
    gLog.push_back(std::to_string(data->priority) + " " + tag + ": " + text);
}

void changeRootTo(const char* directory) {
    if (chroot(directory) != 0 || chdir("/") != 0) {
        perror("chroot");
        abort();
    }
}

int realRoot() {
    static const int fd = open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
    return fd;
}

// In memory: on a disk, most of a run is waiting for what the service syncs.
std::string makeRoot() {
    char path[] = "/dev/shm/zyl-unit.XXXXXX";
    if (mkdtemp(path) == nullptr) abort();
    for (const char* directory : {"/data/misc/zyl", "/etc/zyl", "/run/properties"}) {
        std::filesystem::create_directories(std::string(path) + directory);
    }
    return path;
}

void installFiles(const std::string& directory, std::initializer_list<const char*> names) {
    for (const char* name : names) writeFile(directory + name, tuningImage(name));
}

}  // namespace

Phone::Phone() {
    realRoot();
    mRoot = makeRoot();
    changeRootTo(mRoot.c_str());
    resetDeviceCalls();
    audioReplies().clear();
    layout() = defaultLayout();
    fillParameterTable();
    g_tuningDirectory = "/data/misc/zyl/";
    static const std::vector<uint32_t> masks(std::begin(g_deviceMasks), std::end(g_deviceMasks));
    std::copy(masks.begin(), masks.end(), g_deviceMasks);
    __android_log_set_logger(keepLogLine);
    log();
}

Phone::~Phone() {
    EXPECT_EQ(deviceCalls().badCloses, 0) << "of a descriptor that was not open, or another's";
    EXPECT_TRUE(deviceCalls().standing == 0 || deviceCalls().opensAs == 0);
    EXPECT_EQ(deviceCalls().zeroCloses, 0);
    EXPECT_EQ(deviceCalls().strayOpens, 0) << "a file was opened elsewhere";
    resetDeviceCalls();
    if (fchdir(realRoot()) != 0) abort();
    changeRootTo(".");
    std::filesystem::remove_all(mRoot);
}

void Phone::install(const std::string& generation) {
    if (generation == "torvane") {
        installFiles("/etc/zyl/", {"speaker_0", "speaker_1", "speaker_2", "speaker_off",
                                   "lineout_1", "lineout_3", "bluetooth_0", "bluetooth_1"});
    } else if (generation == "maldor") {
        installFiles("/data/misc/zyl/", {"current_speaker_on", "current_speaker_off",
                                         "current_lineout", "current_bluetooth"});
    }
}

android::sp<zyl_kwo_service> Phone::start(const std::string& generation) {
    install(generation);
    android::sp<zyl_kwo_service> service = new zyl_kwo_service;
    journal();
    log();
    return service;
}

std::map<std::string, std::string>& Phone::audioReplies() {
    static std::map<std::string, std::string> replies;
    return replies;
}

Lines Phone::journal() {
    std::ifstream file("/run/journal");
    // Only what is new: a long sweep writes a journal of megabytes.
    file.seekg(mJournalRead);
    Lines lines;
    std::string line;
    while (std::getline(file, line)) {
        lines.push_back(line);
        mJournalRead += static_cast<std::streamoff>(line.size() + 1);
    }
    return lines;
}

std::string Phone::story() {
    return withoutSaves(storyWithSaves());
}

std::string Phone::storyWithSaves() {
    return storyOf(journal());
}

Lines Phone::log() {
    const std::lock_guard<std::mutex> lock(gLogLock);
    return std::exchange(gLog, {});
}

Bytes tuningImage(const std::string& name) {
    std::seed_seq seed(name.begin(), name.end());
    std::mt19937 random(seed);
    Bytes bytes(kImageSize);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
    return bytes;
}

void writeFile(const std::string& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush().good()) << path;
}

void writeFile(const std::string& path, const std::string& text) {
    writeFile(path, Bytes(text.begin(), text.end()));
}

Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

bool exists(const std::string& path) {
    return std::filesystem::exists(path);
}

Bytes bytesOf(const std::vector<uint32_t>& words) {
    Bytes bytes(words.size() * 4);
    memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

uint32_t wordAt(const Bytes& bytes, size_t offset) {
    uint32_t word = 0;
    if (offset + sizeof(word) <= bytes.size()) memcpy(&word, &bytes[offset], sizeof(word));
    return word;
}

void putWord(Bytes& bytes, size_t offset, uint32_t word) {
    memcpy(&bytes.at(offset), &word, sizeof(word));
}

Answer transact(android::IBinder& service, uint32_t code, const Words& arguments,
                const android::String16& token) {
    android::Parcel data;
    android::Parcel reply;
    data.writeInterfaceToken(token);
    for (int32_t word : arguments) data.writeInt32(word);
    Answer answer = {service.transact(code, data, &reply), Words(reply.dataSize() / 4)};
    if (!answer.words.empty()) memcpy(answer.words.data(), reply.data(), reply.dataSize());
    return answer;
}

std::string replyTo(android::IBinder& service, const std::string& call) {
    android::Parcel data;
    android::Parcel reply;
    const uint32_t code = fillCall(call, &data);
    const android::status_t status = service.transact(code, data, &reply);
    return replyText(code, status, reply);
}

void expectReplies(android::IBinder& service, std::initializer_list<const char*> calls) {
    for (const std::string call : calls) {
        const size_t colon = call.find(" : ");
        EXPECT_EQ(replyTo(service, call.substr(0, colon)), call.substr(colon + 3)) << call;
    }
}

namespace android {

status_t AudioSystem::setParameters(audio_io_handle_t handle, const String8& pairs) {
    if (handle != 0) return BAD_VALUE;
    journal("audio set %s", pairs.string());
    return NO_ERROR;
}

String8 AudioSystem::getParameters(audio_io_handle_t handle, const String8& keys) {
    if (handle != 0) return String8("");
    journal("audio get %s", keys.string());
    const auto reply = Phone::audioReplies().find(keys.string());
    return String8(reply == Phone::audioReplies().end() ? "" : reply->second.c_str());
}

}  // namespace android
