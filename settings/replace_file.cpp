#include "settings/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <utility>

#include "driver/descriptor.h"

namespace {

constexpr mode_t kNewFileMode = 0666;
// The kernel follows as many.
constexpr int kMostLinks = 40;

// A path on the stack, because setters save with every call.
struct Path {
    char text[PATH_MAX];

    // False when it is too long.
    bool assign(const char* path, const char* suffix) {
        const int length = snprintf(text, sizeof(text), "%s%s", path, suffix);
        return length >= 0 && length < static_cast<int>(sizeof(text));
    }

    // Cuts off the name behind the last slash; returns where it began, or null without a slash.
    char* cutName() {
        char* const slash = strrchr(text, '/');
        if (slash == nullptr) return nullptr;
        slash[1] = '\0';
        return slash + 1;
    }
};

// Replaces the path of a symbolic link by that of its target.
bool followLink(Path& path) {
    Path target;
    const ssize_t length = readlink(path.text, target.text, sizeof(target.text) - 1);
    if (length <= 0) return false;
    target.text[length] = '\0';
    if (target.text[0] == '/') return path.assign(target.text, "");
    char* const name = path.cutName();
    if (name == nullptr) return false;
    const auto room = static_cast<size_t>(path.text + sizeof(path.text) - name);
    return snprintf(name, room, "%s", target.text) < static_cast<int>(room);
}

// Opens the file to be replaced, for writing, without changing it, and makes `path` the one at the
// end of all symbolic links. The result is not open, with ENOENT, when there is no file yet.
Descriptor openTarget(Path& path) {
    for (int links = 0; links < kMostLinks; ++links) {
        Descriptor file = openFile(path.text, O_WRONLY | O_NOFOLLOW);
        if (file.isOpen() || errno != ELOOP) return file;
        if (!followLink(path)) break;
    }
    errno = ELOOP;
    return Descriptor();
}

// A temporary file that an earlier process has left is removed.
Descriptor makeTemporary(const Path& path, mode_t mode) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL;
    Descriptor file = openFile(path.text, kFlags, mode);
    if (file.isOpen() || errno != EEXIST || unlink(path.text) != 0) return file;
    return openFile(path.text, kFlags, mode);
}

// Whether a rename failed because the directory does not allow it, and not because of the disk.
bool isRefused(int error) {
    return error == EISDIR || error == EPERM || error == EACCES || error == EROFS || error == EBUSY;
}

ReplaceResult writeInPlace(const Path& path, Descriptor target, const void* bytes, size_t size) {
    if (!target.isOpen()) target = openFile(path.text, O_WRONLY | O_CREAT, kNewFileMode);
    if (!target.isOpen()) return ReplaceResult::kNotOpened;
    const bool written = writeFully(target, bytes, size) &&
                         ftruncate(target.get(), static_cast<off_t>(size)) == 0 &&
                         fdatasync(target.get()) == 0;
    return written ? ReplaceResult::kReplaced : ReplaceResult::kNotWritten;
}

// Without this, a power cut may still take the new name back although the contents are on the disk.
// Leaves the directory of `path` in it.
bool syncDirectoryOf(Path& path) {
    if (path.cutName() == nullptr) return false;
    const Descriptor directory = openFile(path.text, O_RDONLY | O_DIRECTORY);
    return directory.isOpen() && fsync(directory.get()) == 0;
}

}  // namespace

ReplaceResult replaceFile(const char* path, const void* bytes, size_t size, DirectorySync sync) {
    Path target;
    if (!target.assign(path, "")) return ReplaceResult::kNotOpened;
    Descriptor old = openTarget(target);
    if (!old.isOpen() && errno != ENOENT) return ReplaceResult::kNotOpened;
    struct stat about = {};
    if (old.isOpen() && (fstat(old.get(), &about) != 0 || !S_ISREG(about.st_mode))) {
        return ReplaceResult::kNotOpened;
    }
    Path temporary;
    if (!temporary.assign(target.text, ".tmp")) return ReplaceResult::kNotOpened;
    {
        const Descriptor file = makeTemporary(temporary, kNewFileMode);
        if (!file.isOpen()) return writeInPlace(target, std::move(old), bytes, size);
        const bool written = (!old.isOpen() || fchmod(file.get(), about.st_mode & 07777) == 0) &&
                             writeFully(file, bytes, size) && fdatasync(file.get()) == 0;
        if (!written) {
            unlink(temporary.text);
            return ReplaceResult::kNotWritten;
        }
    }
    if (rename(temporary.text, target.text) != 0) {
        const bool refused = isRefused(errno);
        unlink(temporary.text);
        return refused ? writeInPlace(target, std::move(old), bytes, size)
                       : ReplaceResult::kNotWritten;
    }
    if (sync == DirectorySync::kWithTheNext) return ReplaceResult::kReplaced;
    return syncDirectoryOf(temporary) ? ReplaceResult::kReplaced : ReplaceResult::kNotWritten;
}
