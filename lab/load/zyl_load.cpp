// zyl_load MODE CLIENTS CALLS [SEED]: so many clients at once, each a process and a user of its
// own, make so many calls each; MODE is
//     proper     calls as applications make them, which mostly ask
//     anything   calls that no application makes, half of them of any code from 0 to 5000
//     restless   whole blocks through a region that its client keeps cutting, growing and unmapping
//     changing   each client changes a setting of its own and, whenever the service died under it,
//                looks whether what was acknowledged is still there
// Beside them a bystander asks for the stereo mode and measures how long the answer takes.
//
// Ends with a line of counts; its exit status is 0 when nobody was answered wrongly.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "interface/Izyl_kwo_service.h"
#include "lab/load/transactions.h"

using android::IBinder;
using android::Parcel;
using android::sp;

namespace {

constexpr uid_t kFirstAppUid = 10000;
constexpr int kMostClients = 64;
constexpr size_t kRegionLength = 70000;

// Shared by all clients.
struct Counts {
    std::atomic<unsigned long> calls, known, done, refused, died, regions, kept, wrong;
    std::atomic<bool> over;
};
Counts* counts;

sp<IBinder> findService() {
    const android::String16 name(kZylKwoServiceName);
    sp<IBinder> service;
    while ((service = android::defaultServiceManager()->checkService(name)) == nullptr) {
        usleep(2000);
    }
    return service;
}

// The words of the reply to a call with 32-bit arguments; none when it did not come through.
std::vector<int32_t> call(IBinder& service, uint32_t code, std::initializer_list<int32_t> words) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    for (int32_t word : words) data.writeInt32(word);
    if (service.transact(code, data, &reply) != android::NO_ERROR) return {};
    std::vector<int32_t> answer(reply.dataSize() / sizeof(int32_t));
    for (int32_t& word : answer) word = reply.readInt32();
    return answer;
}

int makeRegion() {
    const int fd = memfd_create("region", MFD_CLOEXEC);
    if (fd < 0 || ftruncate(fd, kRegionLength) != 0) abort();
    return fd;
}

// What the DSP hears of.
constexpr uint32_t kLoud[] = {3, 5, 7, 9, 12, 15, 19, 20, 23, 25, 27, 29, 31, 41, 3001, 3002, 3003};

bool isLoud(uint32_t code) {
    return std::find(std::begin(kLoud), std::end(kLoud), code) != std::end(kLoud);
}

void makeCalls(unsigned seed, unsigned long number, TransactionSource::Form form) {
    std::minstd_rand random(seed);
    const int region = makeRegion();
    bool handedOver = false;
    sp<IBinder> service = findService();
    for (unsigned long made = 0; made < number;) {
        uint8_t bytes[96];
        std::generate(std::begin(bytes), std::end(bytes),
                      [&random] { return static_cast<uint8_t>(random() >> 8); });
        // Most calls leave the DSP alone: its node is slow, and users are slower.
        const bool mayBeLoud = bytes[2] % (form == TransactionSource::kProper ? 32 : 64) == 0;
        if (form == TransactionSource::kAnything && (random() & 0x100) != 0) {
            bytes[1] = TransactionSource::kOther;
        }
        TransactionSource source(bytes, sizeof(bytes), form, region);
        Transaction transaction;
        source.next(&transaction);
        if (!mayBeLoud && isLoud(transaction.code)) continue;
        // Each region stays mapped for good: an application hands over one.
        if (transaction.handsRegionOver && handedOver) continue;
        handedOver |= transaction.handsRegionOver;
        ++made;
        Parcel reply;
        const android::status_t status =
                service->transact(transaction.code, transaction.data, &reply, transaction.flags);
        ++counts->calls;
        counts->known += *transaction.reply != '-';
        ++(status == android::NO_ERROR ? counts->done : counts->refused);
        if (status == android::DEAD_OBJECT) {
            ++counts->died;
            service = findService();
        }
        if (status != android::NO_ERROR || transaction.misused) continue;
        counts->kept += transaction.keptBytes;
        counts->regions += transaction.handsRegionOver && reply.readInt32() == 0;
    }
}

void beRestless(unsigned long number) {
    const int region = makeRegion();
    const sp<IBinder> service = findService();
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    data.writeDupFileDescriptor(region);
    data.writeInt32(kRegionLength);
    service->transact(Izyl_kwo_service::SET_FILE_DESCRIPTOR, data, &reply);
    ++counts->regions;
    std::thread resizer([region] {
        for (off_t length = 0; !counts->over; length = (length + 4096) % kRegionLength) {
            void* own = mmap(nullptr, kRegionLength, PROT_READ, MAP_SHARED, region, 0);
            if (ftruncate(region, length) != 0 || ftruncate(region, kRegionLength) != 0) abort();
            munmap(own, kRegionLength);
        }
    });
    for (unsigned long i = 0; i < number; ++i) {
        const auto block = static_cast<int32_t>(i / 2 % 4);
        const auto code = i % 2 == 0 ? Izyl_kwo_service::FETCH_CACHE_BLOCK
                                     : Izyl_kwo_service::PUSH_CACHE_BLOCK;
        const std::vector<int32_t> result = call(*service, code, {block});
        ++counts->calls;
        ++counts->known;
        counts->died += result.empty();
        ++(result == std::vector<int32_t>{0} ? counts->done : counts->refused);
    }
    counts->over = true;
    resizer.join();
}

// A setting that one client has for itself.
struct Setting {
    uint32_t set;
    uint32_t get;
    int32_t which;  // none when negative
    int32_t low;
    int32_t count;
};
constexpr Setting kSettings[] = {
        {5, 4, -1, 1, 3}, {7, 6, 0, 0, 3}, {9, 8, 3, 1000, 3000}, {9, 8, 7, 1000, 3000}};

std::vector<int32_t> ask(IBinder& service, const Setting& s) {
    return s.which < 0 ? call(service, s.get, {}) : call(service, s.get, {s.which});
}

std::vector<int32_t> change(IBinder& service, const Setting& s, int32_t value) {
    return s.which < 0 ? call(service, s.set, {value}) : call(service, s.set, {s.which, value});
}

void keepChanging(const Setting& setting, unsigned long number) {
    const std::vector<int32_t> kDone = {0};
    sp<IBinder> service = findService();
    // While the equaliser is off, gains are acknowledged and not kept. The service may die under
    // this call, too.
    while (call(*service, Izyl_kwo_service::SET_GEQ_ENABLE, {1}) != kDone) service = findService();
    int32_t kept = -1;
    for (unsigned long i = 0; i < number; ++i) {
        const int32_t value = setting.low + static_cast<int32_t>(i) % setting.count;
        ++counts->calls;
        const std::vector<int32_t> answer = change(*service, setting, value);
        if (!answer.empty()) {
            ++counts->done;
            if (answer != kDone) {
                ++counts->wrong;
                fprintf(stderr, "setting %u to %d: answered %d\n", setting.set, value, answer[0]);
            }
            kept = value;
            continue;
        }
        // It may have been saved all the same, though nobody heard.
        ++counts->died;
        std::vector<int32_t> found;
        do {
            service = findService();
            found = ask(*service, setting);
        } while (found.size() != 2);
        if (found[1] != value && found[1] != kept && kept != -1) {
            ++counts->wrong;
            fprintf(stderr, "setting %u: %d or %d was set, found %d\n", setting.set, kept, value,
                    found[1]);
        }
        kept = found[1];
    }
}

void standBy() {
    std::vector<long> micros;
    sp<IBinder> service = findService();
    while (!counts->over) {
        const auto from = std::chrono::steady_clock::now();
        const std::vector<int32_t> answer = call(*service, Izyl_kwo_service::GET_STEREO_MODE, {});
        const auto taken = std::chrono::steady_clock::now() - from;
        micros.push_back(std::chrono::duration_cast<std::chrono::microseconds>(taken).count());
        if (answer.empty()) service = findService();
        if (!answer.empty() && (answer.size() != 2 || answer[0] != 0 || (answer[1] - 1U) > 2)) {
            ++counts->wrong;
        }
        usleep(2000);
    }
    if (micros.empty()) return;
    std::sort(micros.begin(), micros.end());
    printf("bystander: asked %zu times, answered within p50 %ld us, p99 %ld us, longest %ld us\n",
           micros.size(), micros[micros.size() / 2], micros[micros.size() * 99 / 100],
           micros.back());
}

void runClient(const std::string& mode, int client, unsigned seed, unsigned long number) {
    if (mode == "proper") makeCalls(seed, number, TransactionSource::kProper);
    if (mode == "anything") makeCalls(seed, number, TransactionSource::kAnything);
    if (mode == "restless") beRestless(number);
    if (mode == "changing") keepChanging(kSettings[client % std::size(kSettings)], number);
}

// Binder is opened by each process for itself, under its own user.
template <typename Body>
pid_t start(int user, Body body) {
    const pid_t child = fork();
    if (child != 0) return child;
    if (setgid(kFirstAppUid + user) != 0 || setuid(kFirstAppUid + user) != 0) _exit(1);
    body();
    fflush(nullptr);
    _exit(0);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4 || atoi(argv[2]) < 1 || atoi(argv[2]) > kMostClients) {
        fprintf(stderr, "usage: zyl_load proper|anything|restless|changing CLIENTS CALLS [SEED]\n");
        return 2;
    }
    const std::string mode = argv[1];
    const unsigned long number = strtoul(argv[3], nullptr, 10);
    const unsigned seed = argc > 4 ? kMostClients * static_cast<unsigned>(atoi(argv[4])) : 0;
    counts = static_cast<Counts*>(mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE,
                                       MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const pid_t bystander = start(kMostClients, standBy);
    std::vector<pid_t> clients;
    for (int client = 0; client < atoi(argv[2]); ++client) {
        clients.push_back(
                start(client, [&] { runClient(mode, client, seed + client + 1, number); }));
    }
    clients.push_back(bystander);
    for (pid_t client : clients) {
        int status = 0;
        if (client == bystander) counts->over = true;
        waitpid(client, &status, 0);
        if (status != 0) ++counts->wrong;
    }
    printf("calls=%lu known=%lu done=%lu refused=%lu died=%lu regions=%lu kept=%lu wrong=%lu\n",
           counts->calls.load(), counts->known.load(), counts->done.load(), counts->refused.load(),
           counts->died.load(), counts->regions.load(), counts->kept.load(), counts->wrong.load());
    return counts->wrong == 0 ? 0 : 1;
}
