// The security contexts that /file_contexts has for files, by their names. Of several lines that
// match, the last one counts.

#ifndef ZYL_LAB_SELINUX_LABELS_H
#define ZYL_LAB_SELINUX_LABELS_H

// Gives the file the context for its name; where no line has one, it stays as it is. False, with
// errno, where that failed.
bool restoreContext(const char* path);

#endif  // ZYL_LAB_SELINUX_LABELS_H
