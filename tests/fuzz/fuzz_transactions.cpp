// One execution: a phone of some generation, with faults or without, a service started on it, and a
// sequence of transactions, all made of the input. Its places are made in the current directory.
//
// Beyond what the sanitizers see, it ends the program when a reply is not what the protocol says,
// when a getter does not tell what was set, when a file is neither old nor new, and when memory,
// descriptors or address space stay behind.

#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>

#include "lab/conversion/layout.h"
#include "lab/journal/journal.h"
#include "lab/load/transactions.h"
#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, size_t),
                                                         void (*)(const volatile void*));
extern "C" size_t __sanitizer_get_allocated_size(const volatile void*);

namespace {

using android::Parcel;

// The input begins with these.
struct Head {
    uint8_t generation, layout, skip, failures, fault, settings, phone;
};

// What one code sets and another gets; a value without words is the name in tuning data.
struct Setting {
    uint32_t set;
    uint32_t get;
    size_t selectors;
    size_t words;
};
constexpr Setting kSettings[] = {{3, 2, 0, 1},   {5, 4, 0, 1},       {7, 6, 1, 1},   {9, 8, 1, 1},
                                 {12, 13, 0, 1}, {15, 14, 0, 10},    {19, 21, 0, 0}, {20, 22, 0, 0},
                                 {23, 24, 1, 0}, {25, 26, 1, 0},     {27, 28, 0, 0}, {29, 30, 0, 4},
                                 {40, 32, 0, 1}, {3005, 3004, 0, 10}};
constexpr int kLasting = 12;  // of them

constexpr int32_t kResults[] = {0,     -1,    -2,    -3,    -4,    -6,    -8,   -9,
                                -1000, -1001, -1002, -1003, -1004, -1005, -3000};
// A small pipeline, mostly, for speed; then the real one and misfits.
constexpr uint32_t kSmallPipeline = 1024;
constexpr uint32_t kOtherPipelines[] = {kImageSize, kImageSize, 200, 70000};
constexpr off_t kRegionSizes[] = {70000, 70000, 4096, 0};
constexpr const char* kRecords[] = {"speaker_on", "speaker_off", "bluetooth", "lineout"};
// Two of the longest blobs, and the copies that the conversion library's stand-in makes of one.
constexpr long kMostAllocated = (5 * 16 << 20) + (1 << 20);
constexpr char kRecordHead[] = "/data/misc/zyl/current_";
constexpr char kAside[] = "/etc/zyl/settings";
// Kinds of calls that fail, and with what.
constexpr std::pair<unsigned, int> kFaults[] = {
        {kOpen, EMFILE},     {kOpen, EACCES},  {kRead, EIO},      {kRead, kNothing},
        {kWrite, ENOSPC},    {kWrite, kHalf},  {kWrite, EINTR},   {kSync, EIO},
        {kRename, EIO},      {kRename, EPERM}, {kMap, ENOMEM},    {kCopy, EFAULT},
        {kAllocate, ENOMEM}, {kIoctl, EIO},    {kEveryCall, EIO}, {kCopy, ENOSYS}};

bool hasRegion;
int realRoot, roots[3], region, generation;
long liveBytes, mostLiveBytes;
Fault fault;
std::set<std::pair<int, uint32_t>> answered;
Parcel token;

void enter(int root) {
    if (fchdir(root) != 0 || chroot(".") != 0) _exit(125);
}

void expect(bool holds, const char* what) {
    if (holds) return;
    enter(realRoot);
    fprintf(stderr, "It does not hold that %s.\n", what);
    abort();
}

off_t sizeOf(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_size : -1;
}

// Returns the result in the reply; 0 where there is none.
int32_t checkReply(const Transaction& call, bool opened, android::status_t status, Parcel& reply) {
    const char* kind = call.reply;
    const bool answers = *kind != '-';
    const bool mayFail = *kind == '?';
    if (call.code > android::IBinder::LAST_CALL_TRANSACTION) {
        expect(status == android::NO_ERROR || status == android::BAD_VALUE,
               "what the platform asks for is answered, or too large");
        return 0;
    }
    if (!opened && (answers || call.code == Izyl_kwo_service::CHECKED_UNKNOWN)) {
        expect(status == android::PERMISSION_DENIED, "only the token opens the service");
    } else if (!answers) {
        expect(status == android::UNKNOWN_TRANSACTION, "a code that is not known is not answered");
    } else if (call.misused) {
        expect(status == android::BAD_TYPE || status == android::INVALID_OPERATION,
               "one-way calls and objects are refused");
    } else if (status != android::NO_ERROR) {
        expect(mayFail && status == android::FAILED_TRANSACTION, "a call is answered");
    }
    if (status != android::NO_ERROR) return 0;
    int32_t result = 0;
    for (kind += mayFail ? 1 : 0; *kind != '\0'; ++kind) {
        expect(reply.dataAvail() > 0, "a reply is whole");
        const int32_t word = *kind == 's' ? kVersionStringSize : reply.readInt32();
        if (*kind == 'r') {
            result = word;
            expect(std::count(std::begin(kResults), std::end(kResults), result) == 1,
                   "a result is documented");
        } else if (*kind == 'p') {
            reply.setDataPosition(reply.dataAvail() == 0 ? 4 : 4 + word);
        } else if (*kind != 'w' && *kind != 'f') {
            const char* text = reply.readCString();
            expect(text != nullptr && strlen(text) < static_cast<size_t>(word),
                   "a text ends in time");
        }
    }
    expect(reply.dataAvail() == 0, "a reply holds no more than it should");
    return result;
}

Words ask(android::IBinder& service, const Setting& setting, int32_t selector) {
    return transact(service, setting.get, {selector}).words;
}

Words askAll(android::IBinder& service) {
    Words all;
    for (const Setting* s = kSettings; s < kSettings + kLasting; ++s) {
        for (int32_t selector = 0; selector < (s->selectors == 0 ? 1 : 3); ++selector) {
            const Words words = ask(service, *s, selector);
            all.insert(all.end(), words.begin(), words.end());
        }
    }
    return all;
}

// What the getter replies once the setter has succeeded; `data` stands in front of the value.
Words valueSet(const Setting& setting, const Parcel& data) {
    Parcel reply;
    if (setting.get != Izyl_kwo_service::GET_ENABLED) reply.writeInt32(0);
    const bool gains = setting.get == 8 || setting.get == 14;
    for (size_t i = 0; i < setting.words; ++i) {
        reply.writeInt32(data.readInt32() & (gains ? 0xFFFF : -1));
    }
    if (setting.words == 0) {
        const auto size = static_cast<size_t>(data.readInt32());
        const auto* text = static_cast<const char*>(data.readInplace(size));
        reply.writeInt32(kZylcsNameSize);
        reply.writeCString(
                text == nullptr
                        ? ""
                        : std::string(text, strnlen(text, std::min<size_t>(size, 36))).c_str());
    }
    Words words(reply.dataSize() / 4);
    memcpy(words.data(), reply.data(), reply.dataSize());
    return words;
}

// Makes a call, with the getter of what it sets asked before and after; `calm` says that nothing
// fails but what a client causes.
void makeCall(android::IBinder& service, const Transaction& call, bool calm) {
    const bool opened = call.data.dataSize() >= token.dataSize() &&
                        memcmp(call.data.data(), token.data(), token.dataSize()) == 0;
    const Setting* s = std::find_if(std::begin(kSettings), std::end(kSettings),
                                    [&call](const Setting& x) { return x.set == call.code; });
    const bool sets = opened && s != std::end(kSettings);
    int32_t selector = 0;
    Words before, wanted, gate;
    if (sets) {
        call.data.setDataPosition(token.dataSize());
        if (s->selectors != 0) selector = call.data.readInt32();
        wanted = valueSet(*s, call.data);
        call.data.setDataPosition(0);
        before = ask(service, *s, selector);
        // Nothing is kept while what it is for is off.
        if (call.code == 9) gate = ask(service, kSettings[4], 0);
        if (call.code == 12) gate = ask(service, kSettings[0], 0);
    }
    Parcel reply;
    const size_t mapped = sharedMappings().size();
    const long from = mostLiveBytes = liveBytes;
    setFault(&fault);
    const android::status_t status = service.transact(call.code, call.data, &reply, call.flags);
    setFault(nullptr);
    expect(mostLiveBytes - from <= kMostAllocated, "a call takes no more memory than its blobs do");
    const int32_t result = checkReply(call, opened, status, reply);
    if (status == android::NO_ERROR) answered.emplace(generation, call.code);
    if (opened && !call.misused && call.code == 3001) hasRegion = sharedMappings().size() > mapped;
    if (opened && !call.misused && (call.code == 3002 || call.code == 3003)) {
        expect((result == kZylKwoNoSharedRegion) != hasRegion, "only a region can be copied");
    }
    if (!sets) return;
    const Words after = ask(service, *s, selector);
    if (status == android::NO_ERROR && result == 0) {
        const bool idle = !gate.empty() && gate.back() == 0;
        expect(after == wanted || (idle && after == before), "a getter tells what was set");
    } else if (calm && call.code != 3) {
        expect(after == before, "a call that fails changes nothing");
    }
}

// A phone as it is before the service starts.
void preparePhone(const Head& head, const uint8_t* bytes, size_t size) {
    resetDeviceCalls();
    layout() = defaultLayout();
    layout().words[0] = head.layout < 0xC0 ? kSmallPipeline : kOtherPipelines[head.layout % 4];
    if (head.layout >= 0xE0) setRowSize(layout(), head.skip % 29, head.phone % 12);
    for (const std::string name : kRecords) {
        unlink((kRecordHead + name).c_str());
        if (generation != 2 || (name == "lineout" && head.phone % 8 == 7)) continue;
        if (link(("/etc/zyl/current_" + name).c_str(), (kRecordHead + name).c_str()) != 0)
            _exit(125);
    }
    unlink(kSettingsFile);
    Bytes settings(head.settings < 0xC0 || size == 0 ? 0 : (head.settings - 0xC0) * 6);
    for (size_t i = 0; i < settings.size(); ++i) settings[i] = bytes[i % size];
    if (!settings.empty()) writeFile(kSettingsFile, settings);
    for (const char* key : {"QuorinVersion", "QuorinDescription", "QuorinPlatformVersion"}) {
        Phone::audioReplies()[key] = std::string(key) + std::string(head.skip * 10, 'v');
    }
    if (head.failures >= 0xF0) {
        deviceCalls().missing = (head.failures - 0xF0) * 4;
        deviceCalls().opensAs = head.failures == 0xFF ? 0 : -1;
    } else if (head.failures >= 0x80) {
        deviceCalls().model->fail(head.skip, head.failures % 16);
    }
    fault = {};
    if (head.fault >= 0xE0) {
        const auto& [calls, error] = kFaults[head.fault % std::size(kFaults)];
        fault = {calls & ~kUnlink, head.skip, error, error != EINTR && head.fault >= 0xF0};
    }
    if (ftruncate(region, kRegionSizes[head.phone / 8 % 4]) != 0) _exit(125);
}

void checkSettingsFile(off_t firstSize) {
    constexpr off_t kWholeSizes[] = {-1, 68, 348};
    const off_t size = sizeOf(kSettingsFile);
    expect(size == firstSize || size == kWholeSizes[generation], "the settings file is whole");
}

void checkRecords() {
    for (const auto& file : std::filesystem::directory_iterator("/data/misc/zyl")) {
        expect(file.path() == kSettingsFile || file.file_size() == kImageSize, "a record is whole");
        expect(file.path().extension() != ".tmp", "no temporary file stays");
    }
}

// Returns how many bytes the service may have kept.
long execute(const Head& head, const uint8_t* bytes, size_t size) {
    preparePhone(head, bytes, size);
    const off_t firstSize = sizeOf(kSettingsFile);
    const bool calm = head.failures < 0x80 && head.fault < 0xE0 && head.layout < 0xE0 &&
                      layout().words[0] >= kSmallPipeline;
    long mayKeep = 0;
    hasRegion = false;
    setFault(&fault);
    android::sp<android::IBinder> service = new zyl_kwo_service;
    setFault(nullptr);
    TransactionSource source(bytes, size, TransactionSource::kAnything, region);
    while (true) {
        // What a token leaves behind on its thread would get into the next one.
        android::IPCThreadState::self()->setStrictModePolicy(0);
        Transaction call;
        if (!source.next(&call)) break;
        if (call.code == 19 || call.code == 20) {
            // All that was announced, where it may be that it cannot be made smaller.
            const size_t announced = (fault.calls & kAllocate) != 0 ? 16 << 20 : 16;
            mayKeep += static_cast<long>(std::max(call.data.dataSize(), announced));
        }
        makeCall(*service, call, calm);
        checkSettingsFile(firstSize);
    }
    if (calm && head.phone >= 0xC0) {
        // What it would save while it ends in good order does not count.
        const Words before = askAll(*service);
        const bool saved = link(kSettingsFile, kAside) == 0;
        service.clear();
        unlink(kSettingsFile);
        if (saved && rename(kAside, kSettingsFile) != 0) _exit(125);
        service = new zyl_kwo_service;
        expect(askAll(*service) == before, "what was set outlives the service");
    }
    service.clear();
    checkSettingsFile(firstSize);
    if (generation == 2) checkRecords();
    const DeviceCalls& calls = deviceCalls();
    expect(calls.standing == 0 || calls.opensAs == 0, "the device is closed");
    expect(calls.badCloses == 0 && calls.zeroCloses == 0, "nothing is closed that is not open");
    // By now it has given back what it ever will.
    const std::map<char*, size_t> regions = sharedMappings();
    for (const auto& [start, length] : regions) {
        expect(length <= layout().words[0] + 4096, "of a region only a block stays mapped");
        munmap(start, length);
    }
    return mayKeep;
}

long closedDescriptors() {
    pollfd all[256];
    for (int fd = 0; fd < 256; ++fd) all[fd] = {fd, 0, 0};
    poll(all, 256, 0);
    return std::count_if(std::begin(all), std::end(all),
                         [](const pollfd& p) { return (p.revents & POLLNVAL) != 0; });
}

// Whether all is as it was, but for what the service may keep.
bool leavesNothing(const uint8_t* bytes, size_t size) {
    Head head;
    memcpy(&head, bytes, sizeof(head));
    generation = head.generation % 3;
    const long memory = liveBytes;
    const long descriptors = closedDescriptors();
    enter(roots[generation]);
    const long mayKeep = execute(head, bytes + sizeof(head), size - sizeof(head));
    resetDeviceCalls();
    layout() = defaultLayout();
    enter(realRoot);
    return liveBytes - memory <= mayKeep && closedDescriptors() == descriptors;
}

void countAllocated(const volatile void*, size_t size) {
    liveBytes += static_cast<long>(size);
    mostLiveBytes = std::max(mostLiveBytes, liveBytes);
}

void countFreed(const volatile void* place) {
    liveBytes -= static_cast<long>(__sanitizer_get_allocated_size(place));
}

}  // namespace

// Nothing is written down.
void journal(const char* /*format*/, ...) {}

extern "C" {

const char* __asan_default_options() {
    return "detect_leaks=0:quarantine_size_mb=8:malloc_context_size=1";
}

// Their reports, and the input, go where they were meant to.
void __asan_on_error() {
    enter(realRoot);
}
void __ubsan_on_report() {
    enter(realRoot);
}

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    realRoot = open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
    region = memfd_create("region", MFD_CLOEXEC);
    __android_log_set_logger([](const __android_logger_data*, const char*) {});
    const int start = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int g : {0, 1, 2}) {
        const std::string name = std::to_string(g);
        for (const char* directory : {"/data/misc/zyl", "/etc/zyl"}) {
            std::filesystem::create_directories(name + directory);
        }
        roots[g] = open(name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        enter(roots[g]);
        if (g == 1) Phone::install("torvane");
        if (g == 2) Phone::install("maldor");
        for (const std::string record : kRecords) {
            if (g == 2) std::filesystem::rename(kRecordHead + record, "/etc/zyl/current_" + record);
        }
        enter(realRoot);
        if (fchdir(start) != 0) return 1;
    }
    token.writeInterfaceToken(Izyl_kwo_service::descriptor);
    __sanitizer_install_malloc_and_free_hooks(countAllocated, countFreed);
    atexit([] { fprintf(stderr, "answered %zu codes\n", answered.size()); });
    return 0;
}

// What is set up once, by the first call that needs it, is not there the second time.
int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    if (size < sizeof(Head)) return -1;
    expect(leavesNothing(bytes, size) || leavesNothing(bytes, size), "nothing stays behind");
    return 0;
}
}
