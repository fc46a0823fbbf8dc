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

// Calls, from the beginning to the end of the go, with a pause of so many microseconds after each;
// returns what each call took.
std::vector<double> keepCalling(Go* go, Target target, uint32_t code,
                                const std::vector<int32_t>& words, useconds_t pause = 0) {
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
        if (pause > 0) usleep(pause);
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

// What one client waits for at most that asks now and then, while so many others upload; and what
// half of those uploads take there.
Beside besideUploaders(Go* go, uint32_t code, int uploaders, int milliseconds) {
    constexpr useconds_t kPause = 3000;
    new (go) Go{};
    std::vector<pid_t> clients;
    for (int i = 0; i < uploaders; ++i) {
        clients.push_back(inProcess([go, i] {
            const std::vector<double> taken =
                    keepCalling(go, kService, Izyl_kwo_service::SET_TUNING, {0, 1});
            if (i == 0) go->figure[0] = quantile(taken, 0.5);
        }));
    }
    clients.push_back(inProcess(
            [=] { go->figure[1] = quantile(keepCalling(go, kService, code, {}, kPause), 1); }));
    run(go, clients, milliseconds);
    return {go->figure[1], go->figure[0]};
}

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

void measureClients(const Effort& effort, bool all) {
    auto* go = static_cast<Go*>(sharedMemory(sizeof(Go)));
    for (int round = 0; round < effort.rounds; ++round) {
        progress("clients", round, effort.rounds);
        double alone = 0;
        for (int clients = 1; clients <= kMostClients; clients *= 2) {
            const std::string figure = "clients." + std::to_string(clients);
            // Against one and many there is a figure more.
            const bool collapses = clients == 1 || clients == kMostClients;
            if (!all && !wanted(figure) && !(collapses && wanted("collapse"))) continue;
            double rate[kTargetCount];
            for (int i = 0; i < kTargetCount; ++i) {
                const auto target = static_cast<Target>((i + round) % kTargetCount);
                rate[target] = gettersPerSecond(go, target, clients, effort.milliseconds);
            }
            sample(figure, rate[kService], rate[kFloor]);
            if (clients == 1) alone = rate[kService];
            if (clients == kMostClients) sample("collapse", rate[kService], alone);
        }
    }
}

void measureGettersBesideUploads(const Effort& effort, bool all) {
    auto* go = static_cast<Go*>(sharedMemory(sizeof(Go)));
    const Call uploads[] = {
            {"beside.push", Izyl_kwo_service::PUSH_CACHE_BLOCK, {kBenchBlock}, 0},
            {"beside.setTuning", Izyl_kwo_service::SET_TUNING, {0, 1}, 0},
    };
    for (int round = 0; round < effort.rounds; ++round) {
        progress("beside uploads", round, effort.rounds);
        for (const Call& upload : uploads) {
            if (!all && !wanted(upload.name) && !wanted(upload.name + ".floor")) continue;
            Beside beside[kTargetCount];
            for (int i = 0; i < kTargetCount; ++i) {
                const auto target = static_cast<Target>((i + round) % kTargetCount);
                beside[target] = besideUploads(go, target, upload.code, upload.words,
                                               4 * effort.milliseconds);
            }
            sample(upload.name, beside[kService].getter, beside[kService].upload);
            sample(upload.name + ".floor", beside[kService].getter, beside[kFloor].getter);
        }
    }
}

void measureWaits(const Effort& effort) {
    struct Wait {
        const char* figure;
        uint32_t code;
        int uploaders;
    };
    constexpr Wait kWaits[] = {
            {"waits.1", Izyl_kwo_service::GET_STEREO_MODE, 1},
            {"waits.4", Izyl_kwo_service::GET_STEREO_MODE, 4},
            {"waits.unlocked.16", Izyl_kwo_service::GET_ACTIVE_ROUTE, 16},
    };
    auto* go = static_cast<Go*>(sharedMemory(sizeof(Go)));
    for (int round = 0; round < effort.rounds; ++round) {
        progress("waits", round, effort.rounds);
        for (const Wait& wait : kWaits) {
            if (!wanted(wait.figure)) continue;
            const Beside beside =
                    besideUploaders(go, wait.code, wait.uploaders, 8 * effort.milliseconds);
            sample(wait.figure, beside.getter, beside.upload);
        }
    }
}
