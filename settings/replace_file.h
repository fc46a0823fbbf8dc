// Saves a file so that a reader finds the old contents or the new, whatever happens in between.

#ifndef ZYL_SETTINGS_REPLACE_FILE_H
#define ZYL_SETTINGS_REPLACE_FILE_H

#include <climits>
#include <cstddef>

#include "driver/descriptor.h"

// A path that begins at the directory of a save.
struct SavePath {
    // False when it is too long.
    bool assign(const char* path, const char* suffix) { return append(text, path, suffix); }

    // Puts both where `end` is, which points into the text.
    bool append(char* end, const char* first, const char* second);

    // Where the name behind the last slash begins.
    char* name();

    char text[PATH_MAX];
};

// The service's directory, kept open so that a save does not look for it each time. One thread at a
// time.
class SaveDirectory {
  public:
    SaveDirectory() { reopen(); }

    // Whether it is open, and still the one by its path.
    bool isCurrent() const;

    // Opens the one that is by its path now. False when there is none.
    bool reopen();

    // -1 when it could not be opened.
    int get() const { return mDescriptor.get(); }

    // The same for a sync, for which it has to be readable; -1 when it is not.
    int forSync() const { return mReadable ? get() : -1; }

    // Has what was renamed in it outlast a power cut.
    void sync() const;

    // Of the save that is under way. They are not on its stack, as the stacks of all threads that
    // have ever saved would stay larger by them.
    SavePath target;
    SavePath temporary;

  private:
    Descriptor mDescriptor;
    bool mReadable = false;
    dev_t mDevice = 0;
    ino_t mInode = 0;
};

// When the directory, and with it the file's new name, has to be on the disk: when the call
// returns, or later, when the caller has it synced.
enum class DirectorySync { kNow, kLater };

enum class ReplaceResult {
    kReplaced,   // and on the disk, with DirectorySync::kNow: a power cut from now on loses nothing
    kSynced,     // the same, and so is whatever else was renamed in the directory
    kNotOpened,  // the file cannot be opened for writing, or not be made; it is untouched
    kNotWritten  // the new contents may not last: the old file is untouched, or, where only the
                 // directory could not be synced, the new one is in place
};

// Makes `size` bytes the contents of the file of that name in the directory. Any thread, but one at
// a time for a SaveDirectory, and for a name.
//
// A file that cannot be opened for writing, or that is no regular file, stays as it is, even where
// its directory would allow to replace it. A symbolic link stays, and its target is saved. A file
// keeps its mode.
//
// The file is replaced through a temporary one beside it, "NAME.tmp". Where that cannot be made, or
// not be put in place to last, because of the directory (its rights, a directory of that name, no
// inode left), the file is written in place. That is not atomic, but it saves what it can.
ReplaceResult replaceFile(SaveDirectory& directory, const char* name, const void* bytes,
                          size_t size, DirectorySync sync = DirectorySync::kNow);

#endif  // ZYL_SETTINGS_REPLACE_FILE_H
