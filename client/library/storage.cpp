#include "client/library/storage.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

#include "client/library/parse.h"

namespace {

std::string formatTime(int64_t seconds, const char* form) {
    const time_t time = static_cast<time_t>(seconds);
    tm parts = {};
    gmtime_r(&time, &parts);
    char text[32] = {};
    strftime(text, sizeof(text), form, &parts);
    return text;
}

}  // namespace

std::string storageDirectory() {
    const char* const given = getenv("KWOCTL_DIR");
    if (given != nullptr && given[0] != '\0') return std::string(given) + "/";
    return format("/data/local/tmp/kwoctl.%u/", getuid());
}

Outcome makeStorage(const std::string& part) {
    const std::string directory = storageDirectory() + part;
    for (size_t slash = 1; (slash = directory.find('/', slash)) != std::string::npos; ++slash) {
        const std::string parent = directory.substr(0, slash);
        // Those above are for all users; they are mostly there already.
        const mode_t mode = parent.size() + 1 < storageDirectory().size() ? 0771 : 0700;
        if (mkdir(parent.c_str(), mode) != 0 && errno != EEXIST) {
            return refusal(parent, strerror(errno), "set KWOCTL_DIR to a directory of yours");
        }
    }
    if (access(directory.c_str(), W_OK | X_OK) == 0) return done();
    return refusal(directory, strerror(errno), "set KWOCTL_DIR to a directory of yours");
}

std::vector<std::string> namesIn(const std::string& directory) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    if (entries == nullptr) return names;
    while (const dirent* entry = readdir(entries.get())) {
        if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string timeText(int64_t seconds) {
    return formatTime(seconds, "%Y-%m-%dT%H:%M:%SZ");
}

std::string readableTime(int64_t seconds) {
    return formatTime(seconds, "%Y-%m-%d %H:%M:%S");
}

int64_t now() {
    return static_cast<int64_t>(::time(nullptr));
}

int64_t timeOfFile(const std::string& name) {
    struct stat status = {};
    return stat(name.c_str(), &status) == 0 ? static_cast<int64_t>(status.st_mtime) : 0;
}

FileLock::~FileLock() {
    if (mFd >= 0) close(mFd);
}

bool FileLock::take(const std::string& file, Wait wait) {
    mFd = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (mFd < 0) return false;
    while (flock(mFd, wait == kTry ? LOCK_EX | LOCK_NB : LOCK_EX) != 0) {
        if (errno != EINTR) return false;
    }
    return true;
}
