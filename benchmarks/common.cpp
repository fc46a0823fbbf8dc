#include <binder/IServiceManager.h>
#include <errno.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "benchmarks/bench.h"
#include "interface/Izyl_kwo_service.h"

const char* nameOf(Target target) {
    return target == kService ? kZylKwoServiceName : kFloorName;
}

double microsecondsSince(Clock::time_point from) {
    return std::chrono::duration<double, std::micro>(Clock::now() - from).count();
}

double quantile(std::vector<double> values, double part) {
    const auto at = values.begin() + static_cast<ptrdiff_t>(part * (values.size() - 1) + 0.5);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

namespace {

std::vector<std::string> gWanted;

}  // namespace

void want(std::vector<std::string> figures) {
    gWanted = std::move(figures);
}

bool wanted(const std::string& figure) {
    return gWanted.empty() || std::find(gWanted.begin(), gWanted.end(), figure) != gWanted.end();
}

void sample(const std::string& figure, double service, double floor) {
    if (!wanted(figure)) return;
    printf("%s %.1f %.1f\n", figure.c_str(), service, floor);
    fflush(stdout);
}

void sample(const std::string& figure, double service) {
    if (!wanted(figure)) return;
    printf("%s %.1f\n", figure.c_str(), service);
    fflush(stdout);
}

void progress(const char* part, int round, int rounds) {
    fprintf(stderr, "%s, round %d of %d ...\n", part, round + 1, rounds);
}

void giveUp(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fprintf(stderr, "%s: ", program_invocation_short_name);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
    _exit(1);
}

pid_t inProcess(const std::function<void()>& body) {
    const pid_t process = fork();
    if (process < 0) giveUp("no process");
    if (process > 0) return process;
    body();
    fflush(nullptr);
    _exit(0);
}

void waitFor(pid_t process) {
    int status = 0;
    if (waitpid(process, &status, 0) != process || status != 0) giveUp("broken off");
}

void* sharedMemory(size_t size) {
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) giveUp("no memory");
    return memory;
}

android::sp<android::IBinder> look(Target target) {
    return android::defaultServiceManager()->checkService(android::String16(nameOf(target)));
}

android::sp<android::IBinder> find(Target target) {
    const android::sp<android::IBinder> found = look(target);
    if (found == nullptr) giveUp("%s is not there", nameOf(target));
    return found;
}

void writeCall(android::Parcel* data, const std::vector<int32_t>& words) {
    data->writeInterfaceToken(android::String16(kDescriptor));
    for (int32_t word : words) data->writeInt32(word);
}

double call(android::IBinder& target, uint32_t code, const android::Parcel& data,
            android::Parcel* reply) {
    const auto from = Clock::now();
    const android::status_t status = target.transact(code, data, reply);
    const double taken = microsecondsSince(from);
    if (status != android::NO_ERROR) giveUp("call %u failed with %d", code, status);
    return taken;
}
