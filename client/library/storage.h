// Where a client keeps what is its own: history, presets, the trial that runs. A directory of the
// user's, $KWOCTL_DIR or /data/local/tmp/kwoctl.UID, that is made when it is first needed.

#ifndef ZYL_CLIENT_LIBRARY_STORAGE_H
#define ZYL_CLIENT_LIBRARY_STORAGE_H

#include <string>
#include <vector>

#include "client/library/outcome.h"

// With a slash at its end.
std::string storageDirectory();
// "presets/" or "", within it. Fails when it cannot be made or is not writable.
Outcome makeStorage(const std::string& part);

// The names of the files in a directory, sorted; none when it cannot be read.
std::vector<std::string> namesIn(const std::string& directory);

// "2026-11-21T23:15:02Z", and the same for people: "2026-11-21 23:15:02".
std::string timeText(int64_t seconds);
std::string readableTime(int64_t seconds);
// Seconds since 1970, of now or of a file.
int64_t now();
int64_t timeOfFile(const std::string& name);

// A lock between processes, as a file that stays. It ends with its holder, however that ends.
class FileLock {
  public:
    enum Wait { kWait, kTry };

    FileLock() = default;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    // False when it cannot be had: another holds it, or the file cannot be made.
    bool take(const std::string& file, Wait wait);

  private:
    int mFd = -1;
};

#endif  // ZYL_CLIENT_LIBRARY_STORAGE_H
