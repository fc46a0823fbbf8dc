// What the parts of zyl_bench share with each other, in part with zyl_dbus_bench and, the names,
// with the floor.

#ifndef ZYL_BENCH_BENCH_H
#define ZYL_BENCH_BENCH_H

#include <binder/IBinder.h>
#include <binder/Parcel.h>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

constexpr char kFloorName[] = "zyl_floor";
// What clients put in front of each call, of the service and of the floor alike.
constexpr char kDescriptor[] = "zyl.kwo.Izyl_kwo_service";

// Band, block and listening test of those calls that name one.
constexpr int kBenchBand = 3;
constexpr int kBenchBlock = 1;
constexpr float kBenchTest[] = {1, 2, 3, 4};

// How much is measured.
struct Effort {
    int rounds;
    int percent;       // of each call's repetitions in a round
    int milliseconds;  // that clients call for in one go
};

// The two that are measured against each other, in this order everywhere.
enum Target { kService, kFloor, kTargetCount };
const char* nameOf(Target target);

using Clock = std::chrono::steady_clock;
double microsecondsSince(Clock::time_point from);

// The value that this part of all values is below. There is one, at least.
double quantile(std::vector<double> values, double part);

// The figures that are asked for; none is all of them.
void want(std::vector<std::string> figures);
bool wanted(const std::string& figure);

// A line of output: what one round found for the service and for its floor, or for the service
// alone. For figures that nobody asked for there is none.
void sample(const std::string& figure, double service, double floor);
void sample(const std::string& figure, double service);

// Tells how far it is.
void progress(const char* part, int round, int rounds);

// Ends the program: what was measured is worth nothing.
[[noreturn]] void giveUp(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Binder is not inherited: what talks to it does so in a process of its own, and starts no other.
pid_t inProcess(const std::function<void()>& body);
void waitFor(pid_t process);

// Memory that all processes of the program share, zeroed.
void* sharedMemory(size_t size);

// Null when it is not registered.
android::sp<android::IBinder> look(Target target);
android::sp<android::IBinder> find(Target target);

// Calls; gives up when the call does not come through. The microseconds are the transaction's
// alone.
double call(android::IBinder& target, uint32_t code, const android::Parcel& data,
            android::Parcel* reply);
void writeCall(android::Parcel* data, const std::vector<int32_t>& words);

// The rest is zyl_bench's alone. start.cpp: starts both, time and again; the last of each goes on.
void measureStarts(int rounds, pid_t processes[kTargetCount]);
void restart(pid_t processes[kTargetCount]);
void measureMemory(const char* when, const pid_t processes[kTargetCount]);
// The microseconds that all threads of a process have run for.
double ownTime(pid_t process);

// calls.cpp: calls of one client, one after the other. They change nothing but what they set
// already, as that is how the floor has it as well.
struct Call {
    std::string name;
    uint32_t code;
    std::vector<int32_t> words;
    int repetitions;  // a round
};
std::vector<Call> torvaneCalls();
std::vector<Call> maldorCalls();
// It leaves the service in forced mode.
std::vector<Call> forcedCalls();
// Readies both for the calls, and gives up where they do not do the same.
void prepareCalls(const std::vector<Call>& calls);
void measureCalls(const Effort& effort, const std::vector<Call>& calls,
                  const pid_t processes[kTargetCount]);
// Out of forced mode, and with the service's own blocks in the DSP in place of the floor's.
void reloadService();
// What one of so many settings takes that are set without a pause.
void measureWrites(const Effort& effort);

// clients.cpp
// These two leave out what nobody asked for, unless it is for the load that it puts on both.
void measureClients(const Effort& effort, bool all);
void measureGettersBesideUploads(const Effort& effort, bool all);
void measureWaits(const Effort& effort);

// start.cpp, as well: commands of the client, from fork to their end.
void measureCommands(const Effort& effort);

#endif  // ZYL_BENCH_BENCH_H
