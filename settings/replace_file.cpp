#include "settings/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "driver/data_directory.h"

namespace {

constexpr mode_t kNewFileMode = 0666;
// The kernel follows as many.
constexpr int kMostLinks = 40;

// Replaces the path of a symbolic link by that of its target, which is first in `target`.
bool followLink(int directory, SavePath& path, SavePath& target) {
    const ssize_t length = readlinkat(directory, path.text, target.text, sizeof(target.text) - 1);
    if (length <= 0) return false;
    target.text[length] = '\0';
    if (target.text[0] == '/') return path.assign(target.text, "");
    return path.append(path.name(), target.text, "");
}

// Opens the file to be replaced, for writing, without changing it, and makes `path` the one at the
// end of all symbolic links, by way of `link`. The result is not open, with ENOENT, when there is
// no file yet.
Descriptor openTarget(int directory, SavePath& path, SavePath& link) {
    for (int links = 0; links <= kMostLinks; ++links) {
        Descriptor file = openFile(path.text, O_WRONLY | O_NOFOLLOW, 0, directory);
        if (file.isOpen() || errno != ELOOP) return file;
        if (!followLink(directory, path, link)) break;
    }
    errno = ELOOP;
    return Descriptor();
}

// A temporary file that an earlier process has left is removed.
Descriptor makeTemporary(int directory, const SavePath& path, mode_t mode) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL;
    Descriptor file = openFile(path.text, kFlags, mode, directory);
    if (file.isOpen() || errno != EEXIST || unlinkat(directory, path.text, 0) != 0) return file;
    return openFile(path.text, kFlags, mode, directory);
}

// A new file has the mode that it is made with, but for what the umask takes, and that leaves the
// owner's rights alone.
bool keepMode(const Descriptor& file, mode_t mode) {
    return (mode & ~mode_t{S_IRWXU}) == 0 || fchmod(file.get(), mode) == 0;
}

// Whether a rename failed because the directory does not allow it, and not because of the disk.
bool isRefused(int error) {
    return error == EISDIR || error == EPERM || error == EACCES || error == EROFS || error == EBUSY;
}

// Opens the directory of `path`, one behind a link. Leaves its own path in `scratch`.
Descriptor openDirectoryOf(int directory, const SavePath& path, SavePath& scratch) {
    scratch.assign(path.text, "");
    *scratch.name() = '\0';
    return openFile(scratch.text, O_RDONLY | O_DIRECTORY, 0, directory);
}

// `parent` is where the file lies, for a sync; without one, a file that is made here may not last.
ReplaceResult writeInPlace(int directory, const SavePath& path, Descriptor target,
                           const void* bytes, size_t size, int parent) {
    const bool made = !target.isOpen();
    if (made) target = openFile(path.text, O_WRONLY | O_CREAT, kNewFileMode, directory);
    if (!target.isOpen()) return ReplaceResult::kNotOpened;
    const bool written = writeFully(target, bytes, size) &&
                         ftruncate(target.get(), static_cast<off_t>(size)) == 0 &&
                         fdatasync(target.get()) == 0 && (!made || fsync(parent) == 0);
    return written ? ReplaceResult::kReplaced : ReplaceResult::kNotWritten;
}

}  // namespace

bool SavePath::append(char* end, const char* first, const char* second) {
    const size_t firstLength = strlen(first);
    const size_t secondSize = strlen(second) + 1;
    if (firstLength + secondSize > static_cast<size_t>(text + sizeof(text) - end)) return false;
    // The NUL is the second one's. NOLINTNEXTLINE(bugprone-not-null-terminated-result)
    memcpy(end, first, firstLength);
    memcpy(end + firstLength, second, secondSize);
    return true;
}

char* SavePath::name() {
    char* const slash = strrchr(text, '/');
    return slash == nullptr ? text : slash + 1;
}

// One that is not readable is opened each time, as that may have been mended.
bool SaveDirectory::isCurrent() const {
    struct stat about = {};
    return mReadable && stat(ZYL_DATA_DIRECTORY, &about) == 0 && about.st_dev == mDevice &&
           about.st_ino == mInode;
}

bool SaveDirectory::reopen() {
    mDescriptor = openFile(ZYL_DATA_DIRECTORY, O_RDONLY | O_DIRECTORY);
    mReadable = mDescriptor.isOpen();
    if (!mReadable && errno == EACCES) {
        // One in which files can be reached all the same, but which cannot be synced.
        mDescriptor = openFile(ZYL_DATA_DIRECTORY, O_PATH | O_DIRECTORY);
    }
    struct stat about = {};
    if (!mDescriptor.isOpen() || fstat(mDescriptor.get(), &about) != 0) return false;
    mDevice = about.st_dev;
    mInode = about.st_ino;
    return true;
}

void SaveDirectory::sync() const {
    fsync(forSync());
}

ReplaceResult replaceFile(SaveDirectory& save, const char* name, const void* bytes, size_t size,
                          DirectorySync sync) {
    if (!save.isCurrent() && !save.reopen()) return ReplaceResult::kNotOpened;
    const int directory = save.get();
    SavePath& target = save.target;
    SavePath& temporary = save.temporary;
    if (!target.assign(name, "")) return ReplaceResult::kNotOpened;
    Descriptor old = openTarget(directory, target, temporary);
    if (!old.isOpen() && errno != ENOENT) return ReplaceResult::kNotOpened;
    struct stat about = {};
    if (old.isOpen() && (fstat(old.get(), &about) != 0 || !S_ISREG(about.st_mode))) {
        return ReplaceResult::kNotOpened;
    }
    const bool elsewhere = target.name() != target.text;
    Descriptor other;
    if (elsewhere) other = openDirectoryOf(directory, target, temporary);
    const int parent = elsewhere ? other.get() : save.forSync();
    if (!temporary.assign(target.text, ".tmp")) return ReplaceResult::kNotOpened;
    const auto inPlace = [&] {
        return writeInPlace(directory, target, std::move(old), bytes, size, parent);
    };
    // Without a sync, a power cut may take the new name back although the contents are on the disk.
    if (parent < 0) return inPlace();
    {
        const mode_t mode = old.isOpen() ? about.st_mode & 07777 : kNewFileMode;
        const Descriptor file = makeTemporary(directory, temporary, mode);
        if (!file.isOpen()) return inPlace();
        const bool written = (!old.isOpen() || keepMode(file, mode)) &&
                             writeFully(file, bytes, size) && fdatasync(file.get()) == 0;
        if (!written) {
            unlinkat(directory, temporary.text, 0);
            return ReplaceResult::kNotWritten;
        }
    }
    if (renameat(directory, temporary.text, directory, target.text) != 0) {
        const bool refused = isRefused(errno);
        unlinkat(directory, temporary.text, 0);
        return refused ? inPlace() : ReplaceResult::kNotWritten;
    }
    if (sync == DirectorySync::kLater && !elsewhere) return ReplaceResult::kReplaced;
    if (fsync(parent) != 0) return ReplaceResult::kNotWritten;
    return elsewhere ? ReplaceResult::kReplaced : ReplaceResult::kSynced;
}
