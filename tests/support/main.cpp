// Runs the tests with the right to change the root directory: as root, or as root of a user
// namespace of its own.

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

// The one leak that is meant: both of the speaker's tuning codes keep their first blob allocated.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:setSpeaker<\n";
}

// The races that are meant, all of them on Maldor, where tuning data is remembered and saved
// without the service's lock so that nobody waits for a conversion:
//   names and listening-test values are written as plain bytes; of two writers one wins, and a
//   reader never goes past the field; saving reads the image while another client may be changing a
//   word of it; that client's own save follows and replaces the file again.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "race:zylSettingsStructMaldor::setName\n"
           "race:zylSettingsStructMaldor::setListeningTestValues\n"
           "race:zylSettingsStructMaldor::resetListeningTest\n"
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

// Replaces this process by itself, run as root of a new user namespace.
void becomeRoot(int argc, char** argv) {
    std::vector<const char*> command = {"unshare", "--map-root-user"};
    command.insert(command.end(), argv, argv + argc + 1);
    execvp(command[0], const_cast<char**>(command.data()));
}

}  // namespace

int main(int argc, char** argv) {
    if (chroot("/") != 0 && geteuid() != 0) becomeRoot(argc, argv);
    startSymbolizer();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
