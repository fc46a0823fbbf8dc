// Many clients at once.

#include <unistd.h>

#include <atomic>
#include <string>

#include "benchmarks/bench.h"
#include "interface/Izyl_kwo_service.h"

using android::Parcel;

namespace {

constexpr int kMostClients = 64;

// Of all clients of one go.
struct Go {
    std::atomic<int> ready;
    std::atomic<bool> begun;
    std::atomic<bool> over;
    std::atomic<unsigned long> calls;
    double figure[2];
};

// Calls, from the beginning to the end of the go; returns what each call took.
std::vector<double> keepCalling(Go* go, Target target, uint32_t code,
                                const std::vector<int32_t>& words) {
    const android::sp<android::IBinder> binder = find(target);
    Parcel data;
    writeCall(&data, words);
    Parcel first;
    call(*binder, code, data, &first);
    ++go->ready;
    while (!go->begun) usleep(2000);
    std::vector<double> taken;
    while (!go->over) {
        Parcel reply;
        taken.push_back(call(*binder, code, data, &reply));
    }
    go->calls += taken.size();
    return taken;
}

// Returns the seconds that it took.
double run(Go* go, const std::vector<pid_t>& clients, int milliseconds) {
    while (go->ready < static_cast<int>(clients.size())) usleep(1000);
    const auto from = Clock::now();
    go->begun = true;
    usleep(static_cast<useconds_t>(milliseconds) * 1000);
    go->over = true;
    const double seconds = microsecondsSince(from) / 1e6;
    for (pid_t client : clients) waitFor(client);
    return seconds;
}

double gettersPerSecond(Go* go, Target target, int clients, int milliseconds) {
    new (go) Go{};
    std::vector<pid_t> processes;
    for (int i = 0; i < clients; ++i) {
        processes.push_back(
                inProcess([&] { keepCalling(go, target, Izyl_kwo_service::GET_STEREO_MODE, {}); }));
    }
    const double seconds = run(go, processes, milliseconds);
    return go->calls / seconds;
}

struct Beside {
    double getter;  // what the slowest of a hundred takes
    double upload;  // what half of them take
};

// One client asks, another uploads.
Beside besideUploads(Go* go, Target target, uint32_t code, const std::vector<int32_t>& words,
                     int milliseconds) {
    new (go) Go{};
    const pid_t uploader =
            inProcess([&] { go->figure[0] = quantile(keepCalling(go, target, code, words), 0.5); });
    const pid_t getter = inProcess([&] {
        go->figure[1] =
                quantile(keepCalling(go, target, Izyl_kwo_service::GET_STEREO_MODE, {}), 0.99);
    });
    run(go, {uploader, getter}, milliseconds);
    return {go->figure[1], go->figure[0]};
}

}  // namespace

void measureClients(const Effort& effort) {
    auto* go = static_cast<Go*>(sharedMemory(sizeof(Go)));
    for (int round = 0; round < effort.rounds; ++round) {
        double alone = 0;
        for (int clients = 1; clients <= kMostClients; clients *= 2) {
            double rate[kTargetCount];
            for (int i = 0; i < kTargetCount; ++i) {
                const auto target = static_cast<Target>((i + round) % kTargetCount);
                rate[target] = gettersPerSecond(go, target, clients, effort.milliseconds);
            }
            sample(("clients." + std::to_string(clients)).c_str(), rate[kService], rate[kFloor]);
            if (clients == 1) alone = rate[kService];
            if (clients == kMostClients) sample("collapse", rate[kService], alone);
        }
    }
}

void measureGettersBesideUploads(const Effort& effort) {
    auto* go = static_cast<Go*>(sharedMemory(sizeof(Go)));
    const Call uploads[] = {
            {"beside.push", Izyl_kwo_service::PUSH_CACHE_BLOCK, {kBenchBlock}, 0},
            {"beside.setTuning", Izyl_kwo_service::SET_TUNING, {0, 1}, 0},
    };
    for (int round = 0; round < effort.rounds; ++round) {
        for (const Call& upload : uploads) {
            Beside beside[kTargetCount];
            for (int i = 0; i < kTargetCount; ++i) {
                const auto target = static_cast<Target>((i + round) % kTargetCount);
                beside[target] = besideUploads(go, target, upload.code, upload.words,
                                               4 * effort.milliseconds);
            }
            sample(upload.name.c_str(), beside[kService].getter, beside[kService].upload);
            sample((upload.name + ".floor").c_str(), beside[kService].getter,
                   beside[kFloor].getter);
        }
    }
}
