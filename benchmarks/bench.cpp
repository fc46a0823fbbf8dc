// zyl_bench ROUNDS PERCENT MILLISECONDS [FIGURE]...: measures the service against the floor, on a
// phone where neither runs yet. A line "FIGURE SERVICE FLOOR" a round; ./bench makes a table of
// them. With figures, these alone, and what it takes to have them.

#include "benchmarks/bench.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "interface/Izyl_kwo_service.h"

namespace {

void runOnPhone(const std::string& command) {
    if (system(command.c_str()) != 0) giveUp("failed: %s", command.c_str());
}

bool anyWanted(std::initializer_list<const char*> figures) {
    return std::any_of(figures.begin(), figures.end(), wanted);
}

bool isWanted(const Call& call) {
    return wanted(call.name + ".p50") || wanted(call.name + ".p99") || wanted(call.name + ".own");
}

bool anyWanted(const std::vector<Call>& calls) {
    return std::any_of(calls.begin(), calls.end(), isWanted);
}

// In processes of their own: one that has measured keeps what it has of binder.
void measureInTurn(const Effort& effort, const std::vector<Call>& calls, const pid_t* processes) {
    waitFor(inProcess([&] { prepareCalls(calls); }));
    if (calls.empty()) return;
    waitFor(inProcess([&] { measureCalls(effort, calls, processes); }));
}

// What clients of all kinds ask for; in the end, what memory that takes.
void measureTorvane(const Effort& effort, const pid_t* processes) {
    const bool all = anyWanted({"pss.end", "uss.end", "growth"});
    std::vector<Call> calls = torvaneCalls();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [all](const Call& call) { return !all && !isWanted(call); }),
                calls.end());
    measureInTurn(effort, calls, processes);
    if (all || anyWanted({"writes.1", "writes.10", "writes.100"})) {
        waitFor(inProcess([&] { measureWrites(effort); }));
    }
    // Once to have all threads and all memory that so many clients take, then to see whether that
    // is all.
    for (const auto& [rounds, when] : {std::pair{1, "warm"}, {effort.rounds, "end"}}) {
        const Effort part = {rounds, effort.percent, effort.milliseconds};
        measureClients(part, all);
        measureGettersBesideUploads(part, all);
        measureMemory(when, processes);
    }
    measureWaits(effort);
    if (!anyWanted(forcedCalls())) return;
    measureInTurn(effort, forcedCalls(), processes);
    waitFor(inProcess(reloadService));
}

std::vector<Call> reloadOf(int kilobytes) {
    return {{"reload." + std::to_string(kilobytes), Izyl_kwo_service::SET_RELOAD_FLAG, {0}, 6}};
}

// Pipelines from a quarter of the usual size to sixteen times it, of both, started anew for each.
void measureSizes(const Effort& effort, pid_t* processes) {
    runOnPhone("truncate -s 1M /etc/zyl/*_*");
    for (const int kilobytes : {16, 64, 256, 1024}) {
        if (!anyWanted(reloadOf(kilobytes))) continue;
        runOnPhone("echo pipeline-size " + std::to_string(1024 * kilobytes) +
                   " >/etc/zyl/conversion.conf");
        waitFor(inProcess([&] { restart(processes); }));
        measureInTurn(effort, reloadOf(kilobytes), processes);
    }
    runOnPhone("rm -f /etc/zyl/conversion.conf");
}

void measureMaldor(const Effort& effort, pid_t* processes) {
    if (!anyWanted(maldorCalls())) return;
    // The service's own, as if it had made them.
    runOnPhone(
            "cp /usr/share/zyl/tunings/maldor/* /data/misc/zyl/ && "
            "chown $(stat -c %u:%g /data/misc/zyl) /data/misc/zyl/current_*");
    waitFor(inProcess([&] { restart(processes); }));
    measureInTurn(effort, maldorCalls(), processes);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        fprintf(stderr, "usage: zyl_bench ROUNDS PERCENT MILLISECONDS [FIGURE]...\n");
        return 2;
    }
    const Effort effort = {atoi(argv[1]), atoi(argv[2]), atoi(argv[3])};
    if (effort.rounds < 1 || effort.percent < 1 || effort.milliseconds < 1) giveUp("no effort");
    want({argv + 4, argv + argc});
    auto* processes = static_cast<pid_t*>(sharedMemory(kTargetCount * sizeof(pid_t)));
    // Started they are in any case.
    const int starts = anyWanted({"start", "pss.start", "uss.start"}) ? effort.rounds : 0;
    waitFor(inProcess([&] { measureStarts(starts, processes); }));
    waitFor(inProcess(reloadService));
    measureTorvane(effort, processes);
    // `kwoctl verify` hands over memory, which the service keeps: its own memory is measured
    // before.
    measureCommands(effort);
    measureSizes(effort, processes);
    measureMaldor(effort, processes);
}
