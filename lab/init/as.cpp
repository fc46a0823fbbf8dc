// as DOMAIN[:LEVEL] USER[:GROUP] COMMAND [ARGUMENT]...: runs the command in the domain, at the
// level s0 unless one is named, as the user and in the group alone; these by name or by number, the
// group like the user unless one is named. Applications come into being in this way.

#include <fcntl.h>
#include <grp.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "lab/init/users.h"

namespace {

bool enter(const std::string& domain) {
    const bool hasLevel = domain.find(':') != std::string::npos;
    const std::string context = "u:r:" + domain + (hasLevel ? "" : ":s0");
    const int fd = open("/proc/self/attr/current", O_WRONLY | O_CLOEXEC);
    return fd >= 0 && write(fd, context.data(), context.size()) > 0;
}

bool become(const std::string& who) {
    const size_t colon = who.find(':');
    const std::string user = who.substr(0, colon);
    const std::string group = colon == std::string::npos ? user : who.substr(colon + 1);
    const gid_t none[1] = {};
    return setgroups(0, none) == 0 && setgid(knownToInit(group)) == 0 &&
           setuid(knownToInit(user)) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        fputs("usage: as DOMAIN[:LEVEL] USER[:GROUP] COMMAND [ARGUMENT]...\n", stderr);
        return 2;
    }
    if (!become(argv[2])) {
        perror(argv[2]);
        return 126;
    }
    if (!enter(argv[1])) {
        perror(argv[1]);
        return 126;
    }
    execvp(argv[3], argv + 3);
    perror(argv[3]);
    return 127;
}
