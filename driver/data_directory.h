// The directory in which the service keeps its files, as a macro that literals are made with.

#ifndef ZYL_DRIVER_DATA_DIRECTORY_H
#define ZYL_DRIVER_DATA_DIRECTORY_H

#define ZYL_DATA_DIRECTORY "/data/misc/zyl/"

// The same place in the spelling of two paths that stand in log lines; that spelling is fixed, see
// docs/operating.md.
#define ZYL_LOGGED_DATA_DIRECTORY "//data//misc//zyl//"

// Whether `doubled` is `path` with each slash twice.
constexpr bool isWithSlashesDoubled(const char* doubled, const char* path) {
    while (*path != '\0') {
        if (*doubled++ != *path) return false;
        if (*path++ == '/' && *doubled++ != '/') return false;
    }
    return *doubled == '\0';
}
static_assert(isWithSlashesDoubled(ZYL_LOGGED_DATA_DIRECTORY, ZYL_DATA_DIRECTORY), "one directory");

#endif  // ZYL_DRIVER_DATA_DIRECTORY_H
