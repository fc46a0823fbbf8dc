// rc on EVENT | rc start NAME: does what /init.rc and /system/etc/init/*.rc say, as init of API 24
// would: the commands of the event, or, in place of this process, the service of that name. What
// cannot be done is said and passed over, except that a service which does not get its user, its
// group or a domain of its own is not started.
//
// Of init's language this knows what those files need.

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "lab/init/users.h"
#include "lab/init/words.h"
#include "lab/selinux/labels.h"

namespace {

constexpr int kNotStarted = 127;
constexpr char kContextOfInit[] = "u:r:init:s0";

// The lines between the one that begins with these words and the next section.
std::vector<Words> sectionsOf(const std::string& kind, const std::string& name, Words* head) {
    std::vector<Words> found;
    bool inside = false;
    for (const Words& line : linesOf({"/init.rc", "/system/etc/init/*.rc"})) {
        if (line[0] == "on" || line[0] == "service") {
            inside = line[0] == kind && line.size() > 1 && line[1] == name;
            if (inside) *head = line;
        } else if (inside) {
            found.push_back(line);
        }
    }
    return found;
}

// mkdir PATH [MODE [OWNER [GROUP]]]. Whom it does not know it leaves as it is.
int makeDirectory(const Words& line) {
    const char* path = line[1].c_str();
    const mode_t mode =
            line.size() > 2 ? static_cast<mode_t>(strtoul(line[2].c_str(), nullptr, 8)) : 0755;
    if (mkdir(path, mode) != 0 && errno != EEXIST) return -1;
    if (!restoreContext(path)) return -1;
    const uid_t owner = line.size() > 3 ? knownToInit(line[3]) : kNobodyKnown;
    const gid_t group = line.size() > 4 ? knownToInit(line[4]) : kNobodyKnown;
    if (lchown(path, owner, group) != 0) return -1;
    return chmod(path, mode);
}

int restoreContexts(const Words& line) {
    const pid_t child = fork();
    if (child == 0) {
        execl("/system/bin/restorecon", "restorecon", line[1].c_str(), nullptr);
        _exit(kNotStarted);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0 ? 0 : -1;
}

void carryOut(const Words& line) {
    const bool has = line.size() > 1;
    const int result = has && line[0] == "mkdir"                  ? makeDirectory(line)
                       : has && line[0] == "restorecon_recursive" ? restoreContexts(line)
                                                                  : (errno = ENOSYS, -1);
    if (result != 0) fprintf(stderr, "init: %s: %s\n", line[0].c_str(), strerror(errno));
}

bool writeAll(const char* path, const std::string& text) {
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    const bool written =
            fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (fd >= 0) close(fd);
    return written;
}

// The context that a program gets when init runs it; empty where the kernel does not say.
std::string contextOfProgram(const char* path) {
    char type[256] = {};
    if (getxattr(path, "security.selinux", type, sizeof(type) - 1) <= 0) return {};
    std::string number;
    std::ifstream("/sys/fs/selinux/class/process/index") >> number;
    const std::string request = std::string(kContextOfInit) + " " + type + " " + number;
    char answer[256] = {};
    const int fd = open("/sys/fs/selinux/create", O_RDWR | O_CLOEXEC);
    const bool answered = fd >= 0 && write(fd, request.data(), request.size()) > 0 &&
                          read(fd, answer, sizeof(answer) - 1) > 0;
    if (fd >= 0) close(fd);
    return answered ? answer : "";
}

int refuse(const Words& service, const char* why) {
    fprintf(stderr, "init: service %s is not started: %s\n", service[1].c_str(), why);
    return kNotStarted;
}

int startService(const Words& service, const std::vector<Words>& options) {
    uid_t user = 0;
    Words groups;
    std::string context;
    for (const Words& option : options) {
        if (option.size() < 2) continue;
        if (option[0] == "user") user = knownToInit(option[1]);
        if (option[0] == "group") groups.assign(option.begin() + 1, option.end());
        if (option[0] == "seclabel") context = option[1];
    }
    const char* program = service[2].c_str();
    if (!writeAll("/proc/self/attr/current", kContextOfInit)) return refuse(service, "no domain");
    if (context.empty() && contextOfProgram(program) == kContextOfInit) {
        return refuse(service, "the policy has no domain for its program");
    }
    if (!context.empty() && !writeAll("/proc/self/attr/exec", context)) {
        return refuse(service, "its domain is none");
    }
    umask(077);
    std::vector<gid_t> others;
    for (size_t i = 1; i < groups.size(); ++i) others.push_back(knownToInit(groups[i]));
    if (!groups.empty() && setgid(knownToInit(groups[0])) != 0) return refuse(service, "its group");
    if (setgroups(others.size(), others.data()) != 0) return refuse(service, "its further groups");
    if (user != 0 && setuid(user) != 0) return refuse(service, "its user");
    std::vector<char*> arguments;
    for (size_t i = 2; i < service.size(); ++i) {
        arguments.push_back(const_cast<char*>(service[i].c_str()));
    }
    arguments.push_back(nullptr);
    execv(program, arguments.data());
    return refuse(service, strerror(errno));
}

}  // namespace

int main(int argc, char** argv) {
    const bool starts = argc == 3 && strcmp(argv[1], "start") == 0;
    if (!starts && (argc != 3 || strcmp(argv[1], "on") != 0)) {
        fputs("usage: rc on EVENT | rc start NAME\n", stderr);
        return 2;
    }
    Words head;
    const std::vector<Words> lines = sectionsOf(starts ? "service" : "on", argv[2], &head);
    if (starts) {
        if (head.size() >= 3) return startService(head, lines);
        fprintf(stderr, "init: no service %s\n", argv[2]);
        return kNotStarted;
    }
    for (const Words& line : lines) carryOut(line);
    return 0;
}
