// zyl_bench ROUNDS PERCENT MILLISECONDS: measures the service against the floor, on a phone where
// neither runs yet. A line "FIGURE SERVICE FLOOR" a round; ./bench makes a table of them.

#include "benchmarks/bench.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "interface/Izyl_kwo_service.h"

namespace {

void runOnPhone(const std::string& command) {
    if (system(command.c_str()) != 0) giveUp("failed: %s", command.c_str());
}

// Pipelines from a quarter of the usual size to sixteen times it, of both, started anew for each.
void measureSizes(const Effort& effort, pid_t* processes) {
    runOnPhone("truncate -s 1M /etc/zyl/*_*");
    for (const int kilobytes : {16, 64, 256, 1024}) {
        runOnPhone("echo pipeline-size " + std::to_string(1024 * kilobytes) +
                   " >/etc/zyl/conversion.conf");
        const std::vector<Call> reload = {
                {"reload." + std::to_string(kilobytes), Izyl_kwo_service::SET_RELOAD_FLAG, {0}, 6}};
        waitFor(inProcess([&] { restart(processes); }));
        waitFor(inProcess([&] { prepareCalls(reload); }));
        waitFor(inProcess([&] { measureCalls(effort, reload); }));
    }
    runOnPhone("rm /etc/zyl/conversion.conf");
}

void measureMaldor(const Effort& effort, pid_t* processes) {
    runOnPhone("cp /usr/share/zyl/tunings/maldor/* /data/misc/zyl/");
    waitFor(inProcess([&] { restart(processes); }));
    waitFor(inProcess([] { prepareCalls(maldorCalls()); }));
    waitFor(inProcess([&] { measureCalls(effort, maldorCalls()); }));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        fprintf(stderr, "usage: zyl_bench ROUNDS PERCENT MILLISECONDS\n");
        return 2;
    }
    const Effort effort = {atoi(argv[1]), atoi(argv[2]), atoi(argv[3])};
    if (effort.rounds < 1 || effort.percent < 1 || effort.milliseconds < 1) giveUp("no effort");
    auto* processes = static_cast<pid_t*>(sharedMemory(kTargetCount * sizeof(pid_t)));
    waitFor(inProcess([&] { measureStarts(effort, processes); }));
    waitFor(inProcess([] { prepareCalls(torvaneCalls()); }));
    waitFor(inProcess([&] { measureCalls(effort, torvaneCalls()); }));
    waitFor(inProcess([&] { measureWrites(effort); }));
    // Once to have all threads and all memory that so many clients take, then to see whether that
    // is all.
    for (const auto& [rounds, when] : {std::pair{1, "warm"}, {effort.rounds, "end"}}) {
        const Effort part = {rounds, effort.percent, effort.milliseconds};
        measureClients(part);
        measureGettersBesideUploads(part);
        measureMemory(when, processes);
    }
    measureSizes(effort, processes);
    measureMaldor(effort, processes);
}
