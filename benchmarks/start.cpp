// How long a start takes, of the service and of its client's commands, and what a running service
// takes: memory, and time.

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "benchmarks/bench.h"

namespace {

// The service's, by its init file.
constexpr uid_t kUser = 2950;
constexpr gid_t kGroup = 1005;

[[noreturn]] void become(Target target) {
    const std::string program = std::string("/system/bin/") + nameOf(target);
    const std::string log = std::string("/run/log/") + nameOf(target);
    const int null = open("/dev/null", O_RDWR);
    const int output = open(log.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0644);
    dup2(null, 0);
    dup2(output, 1);
    dup2(output, 2);
    close(null);
    close(output);
    umask(077);
    if (setgid(kGroup) != 0 || setuid(kUser) != 0) giveUp("cannot be the service's user");
    execl(program.c_str(), program.c_str(), nullptr);
    giveUp("no program %s", program.c_str());
}

// Returns the microseconds until it was registered.
double start(Target target, pid_t* process) {
    constexpr useconds_t kPause = 500;
    const auto from = Clock::now();
    const pid_t child = fork();
    if (child < 0) giveUp("no process");
    if (child == 0) become(target);
    *process = child;
    while (look(target) == nullptr) {
        if (waitpid(child, nullptr, WNOHANG) != 0) giveUp("%s ended", nameOf(target));
        usleep(kPause);
    }
    return microsecondsSince(from);
}

void stop(Target target, pid_t process) {
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    while (look(target) != nullptr) usleep(1000);
}

struct Memory {
    double proportional = 0;  // kilobytes, as all that follow
    double unique = 0;
};

Memory memoryOf(pid_t process) {
    const std::string path = "/proc/" + std::to_string(process) + "/smaps_rollup";
    FILE* file = fopen(path.c_str(), "re");
    if (file == nullptr) giveUp("no %s", path.c_str());
    Memory memory;
    char line[256];
    while (fgets(line, sizeof(line), file) != nullptr) {
        char key[64];
        double kilobytes = 0;
        if (sscanf(line, "%63[^:]: %lf kB", key, &kilobytes) != 2) continue;
        const std::string name = key;
        if (name == "Pss") memory.proportional = kilobytes;
        if (name == "Private_Clean" || name == "Private_Dirty") memory.unique += kilobytes;
    }
    fclose(file);
    if (memory.proportional == 0) giveUp("%s says nothing", path.c_str());
    return memory;
}

}  // namespace

void measureStarts(int rounds, pid_t processes[kTargetCount]) {
    double taken[kTargetCount];
    // The first start finds no page of its program in memory.
    for (int round = -1; round < rounds; ++round) {
        for (int i = 0; i < kTargetCount; ++i) {
            const auto target = static_cast<Target>((i + round + 1) % kTargetCount);
            if (round >= 0) stop(target, processes[target]);
            taken[target] = start(target, &processes[target]);
        }
        if (round < 0) continue;
        progress("start", round, rounds);
        sample("start", taken[kService] / 1000, taken[kFloor] / 1000);
        measureMemory("start", processes);
    }
}

void restart(pid_t processes[kTargetCount]) {
    for (int i = 0; i < kTargetCount; ++i) {
        stop(static_cast<Target>(i), processes[i]);
        start(static_cast<Target>(i), &processes[i]);
    }
}

void measureMemory(const char* when, const pid_t processes[kTargetCount]) {
    const Memory service = memoryOf(processes[kService]);
    const Memory floor = memoryOf(processes[kFloor]);
    sample(std::string("pss.") + when, service.proportional, floor.proportional);
    sample(std::string("uss.") + when, service.unique, floor.unique);
    // Against itself: whether what it takes grows with the calls it has served.
    static double warm = 0;
    if (warm == 0 && std::string(when) == "warm") warm = service.unique;
    if (std::string(when) == "end") sample("growth", service.unique, warm);
}

double ownTime(pid_t process) {
    double nanoseconds = 0;
    const std::string tasks = "/proc/" + std::to_string(process) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        double ran = 0;
        if (!(std::ifstream(task.path() / "schedstat") >> ran))
            giveUp("no times in %s", tasks.c_str());
        nanoseconds += ran;
    }
    return nanoseconds / 1000;
}

void measureCommands(const Effort& effort) {
    const char* const commands[] = {"--version", "status", "verify"};
    // The first finds no page of the program in memory.
    for (int round = -1; round < effort.rounds; ++round) {
        for (const char* command : commands) {
            const std::string figure =
                    std::string("kwoctl.") + (*command == '-' ? command + 2 : command);
            if (!wanted(figure)) continue;
            const auto from = Clock::now();
            const pid_t child = fork();
            if (child < 0) giveUp("no process");
            if (child == 0) {
                dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), 1);
                execl("/system/bin/kwoctl", "kwoctl", command, nullptr);
                giveUp("no kwoctl");
            }
            waitFor(child);
            if (round >= 0) sample(figure, microsecondsSince(from) / 1000);
        }
    }
}
