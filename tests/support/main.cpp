// Runs the tests with the right to change the root directory: as root, or as root of a user
// namespace of its own.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

// The one leak that is meant: both of the speaker's tuning codes keep their first blob allocated.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:Bn_zyl_kwo_service::onSetSpeakerZylcsTuning\n"
           "leak:Bn_zyl_kwo_service::onSetSecondSpeakerZylcsTuning\n";
}

// The races that are meant, all of them on Maldor, where tuning data is remembered and saved
// without the service's lock so that nobody waits for a conversion:
//   names and listening-test values are written as plain bytes; of two writers one wins, and a
//   reader never goes past the field; saving reads the image while another client may be changing a
//   word of it; that client's own save follows and replaces the file again.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "race:zylSettingsStructMaldor::setIdentifier\n"
           "race:zylSettingsStructMaldor::setListeningTestValues\n"
           "race:zylSettingsStruct::SaveStruct\n";
}

// Starts the sanitizer's symbolizer, which its lists of exceptions need, while it can be found:
// before the root directory changes. Not there without a sanitizer.
extern "C" void __sanitizer_symbolize_pc(void* pc, const char* format, char* out, size_t size)
        __attribute__((weak));

namespace {

void startSymbolizer() {
    char text[256];
    if (__sanitizer_symbolize_pc == nullptr) return;
    __sanitizer_symbolize_pc(reinterpret_cast<void*>(&startSymbolizer), "%f", text, sizeof(text));
}

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
    startSymbolizer();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
