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

// A line of output: what one round found for the service and for its floor.
void sample(const char* figure, double service, double floor);

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
void measureStarts(const Effort& effort, pid_t processes[kTargetCount]);
void restart(pid_t processes[kTargetCount]);
void measureMemory(const char* when, const pid_t processes[kTargetCount]);

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
// Readies both for the calls, and gives up where they do not do the same.
void prepareCalls(const std::vector<Call>& calls);
void measureCalls(const Effort& effort, const std::vector<Call>& calls);
// What one of so many settings takes that are set without a pause.
void measureWrites(const Effort& effort);

// clients.cpp
void measureClients(const Effort& effort);
void measureGettersBesideUploads(const Effort& effort);

#endif  // ZYL_BENCH_BENCH_H
