// Runs the tests with the right to change the root directory: as root, or as root of a user
// namespace of its own.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

// Both of the speaker's tuning codes leave their first blob behind, as clients have come to rely
// on.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:Bn_zyl_kwo_service::onSetSpeakerZylcsTuning\n"
           "leak:Bn_zyl_kwo_service::onSetSecondSpeakerZylcsTuning\n";
}

namespace {

void writeText(const char* path, const std::string& text) {
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0 || write(fd, text.data(), text.size()) < 0) perror(path);
    close(fd);
}

// The process may have threads already; a forked child has only one, as a new namespace demands.
int runInUserNamespace(char** argv) {
    const std::string uid = std::to_string(geteuid());
    const std::string gid = std::to_string(getegid());
    const pid_t child = fork();
    if (child == 0) {
        if (unshare(CLONE_NEWUSER) == 0) {
            writeText("/proc/self/setgroups", "deny");
            writeText("/proc/self/uid_map", "0 " + uid + " 1");
            writeText("/proc/self/gid_map", "0 " + gid + " 1");
            if (chroot("/") == 0) execv("/proc/self/exe", argv);
        }
        perror("cannot change the root directory");
        _exit(125);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return 125;
    return WEXITSTATUS(status);
}

}  // namespace

int main(int argc, char** argv) {
    if (chroot("/") != 0) return runInUserNamespace(argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
