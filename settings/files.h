// Looking for files, and replacing one so that a reader finds the old contents or the new, whatever
// happens in between.

#ifndef ZYL_SETTINGS_FILES_H
#define ZYL_SETTINGS_FILES_H

#include <cstddef>

// Whether the file can be opened for reading now; one that is there but cannot be is as good as
// missing.
bool canBeRead(const char* path);

enum class ReplaceResult {
    kReplaced,   // and on the disk: a power cut from now on loses nothing
    kNotOpened,  // no file can be put there; the old one is untouched
    kNotWritten  // the new contents may not last: the old file is untouched, or, where only the
                 // directory could not be synced, the new one is in place
};

// Replaces the file at `path` by `size` bytes, through a temporary file beside it. The bytes are
// read while no other replacement is under way, so concurrent calls for the same live image end
// with its latest state on disk. Any thread.
ReplaceResult replaceFile(const char* path, const void* bytes, size_t size);

#endif  // ZYL_SETTINGS_FILES_H
