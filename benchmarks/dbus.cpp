// zyl_dbus_bench ROUNDS CALLS: measures getStereoMode of the service, which runs already, against
// the same method of zyl_dbus_service behind two message buses, which it starts. A line "FIGURE
// SERVICE DBUS" a round, as zyl_bench writes them.

#include "benchmarks/dbus.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "benchmarks/bench.h"
#include "interface/Izyl_kwo_service.h"

using android::IBinder;
using android::Parcel;

namespace {

struct Bus {
    const char* name;
    std::vector<const char*> command;
    sd_bus* connection;
};

// Both are handed the socket that they listen on.
Bus gBuses[] = {
        {"daemon",
         {"/usr/bin/dbus-daemon", "--config-file=/etc/zyl_dbus.conf",
          "--address=systemd:", "--nofork", "--nopidfile", "--nosyslog"},
         nullptr},
        {"broker", {"/usr/bin/dbus-broker-launch", "--config-file=/etc/zyl_dbus.conf"}, nullptr},
};

struct Reply {
    int32_t result = -1;
    int32_t mode = -1;
};

std::string pathOf(const Bus& bus) {
    return std::string("/run/zyl_bus.") + bus.name;
}

// Ends when the caller does.
[[noreturn]] void become(const Bus& bus, std::vector<const char*> command) {
    const std::string log = std::string("/run/log/dbus.") + bus.name;
    const int output = open(log.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    command.push_back(nullptr);
    execv(command[0], const_cast<char**>(command.data()));
    giveUp("no program %s", command[0]);
}

int socketAt(const std::string& path, int type) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    unlink(path.c_str());
    const int made = socket(AF_UNIX, type, 0);
    if (bind(made, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        (type == SOCK_STREAM && listen(made, SOMAXCONN) != 0)) {
        giveUp("no socket %s", path.c_str());
    }
    return made;
}

void startBus(const Bus& bus) {
    constexpr int kHandedOver = 3;
    const int listening = socketAt(pathOf(bus), SOCK_STREAM);
    inProcess([&] {
        if (listening != kHandedOver) dup2(listening, kHandedOver);
        setenv("LISTEN_FDS", "1", 1);
        setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + pathOf(bus)).c_str(), 1);
        become(bus, bus.command);
    });
    close(listening);
}

// Returns what sd-bus says, below 0 for an error.
int callOverBus(sd_bus* bus, Reply* reply) {
    sd_bus_message* message = nullptr;
    int status = sd_bus_call_method(bus, kBusName, kObjectPath, kInterfaceName, kMethodName,
                                    nullptr, &message, "");
    if (status >= 0) status = sd_bus_message_read(message, "ii", &reply->result, &reply->mode);
    sd_bus_message_unref(message);
    return status;
}

android::status_t callOverBinder(IBinder& service, Reply* reply) {
    Parcel data;
    Parcel answer;
    writeCall(&data, {});
    const auto status = service.transact(Izyl_kwo_service::GET_STEREO_MODE, data, &answer);
    reply->result = answer.readInt32();
    reply->mode = answer.readInt32();
    return status;
}

// dbus-broker insists on one to connect to. What is sent there nobody reads.
void provideJournal() {
    mkdir("/run/systemd", 0755);
    mkdir("/run/systemd/journal", 0755);
    socketAt("/run/systemd/journal/socket", SOCK_DGRAM | SOCK_CLOEXEC);
}

// A bus, its service, and a connection to both.
void start(Bus& bus) {
    constexpr int kAttempts = 100;
    startBus(bus);
    const std::string address = "unix:path=" + pathOf(bus);
    inProcess([&] { become(bus, {"/system/bin/zyl_dbus_service", address.c_str()}); });
    bus.connection = connectTo(address.c_str());
    if (bus.connection == nullptr) giveUp("no bus at %s", address.c_str());
    Reply reply;
    for (int i = 0; callOverBus(bus.connection, &reply) < 0; ++i) {
        if (i == kAttempts) giveUp("nobody answers at %s", address.c_str());
        usleep(100000);
    }
}

void measure(IBinder& service, const Bus& bus, int calls, bool busFirst) {
    std::vector<double> taken[2];
    for (int i = 0; i < 2 * calls; ++i) {
        const bool overBus = (i + busFirst) % 2 != 0;
        Reply reply;
        const auto from = Clock::now();
        const int status =
                overBus ? callOverBus(bus.connection, &reply) : callOverBinder(service, &reply);
        taken[overBus].push_back(microsecondsSince(from));
        if (status < 0 || reply.result != 0 || reply.mode != kStereoMode) {
            giveUp("%s: status %d, result %d, mode %d", overBus ? bus.name : "binder", status,
                   reply.result, reply.mode);
        }
    }
    for (int percent : {50, 99}) {
        const std::string figure = std::string("dbus.") + bus.name + ".p" + std::to_string(percent);
        sample(figure.c_str(), quantile(taken[0], percent / 100.),
               quantile(taken[1], percent / 100.));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc == 3 ? atoi(argv[1]) : 0;
    const int calls = argc == 3 ? atoi(argv[2]) : 0;
    if (rounds < 1 || calls < 1) {
        fprintf(stderr, "usage: zyl_dbus_bench ROUNDS CALLS\n");
        return 2;
    }
    provideJournal();
    for (Bus& bus : gBuses) start(bus);
    const android::sp<IBinder> service = find(kService);
    Parcel data;
    Parcel reply;
    writeCall(&data, {kStereoMode});
    call(*service, Izyl_kwo_service::SET_STEREO_MODE, data, &reply);
    for (int round = 0; round < rounds; ++round) {
        for (const Bus& bus : gBuses) measure(*service, bus, calls, round % 2 != 0);
    }
}
