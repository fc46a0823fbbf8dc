// Where properties are kept: a file each, in a directory that does not outlive the boot.

#ifndef ZYL_LAB_PROPERTIES_STORE_H
#define ZYL_LAB_PROPERTIES_STORE_H

#include <string>

inline bool isPropertyKey(const std::string& key) {
    return !key.empty() && key[0] != '.' && key.find('/') == std::string::npos;
}

inline std::string propertyFile(const std::string& key) {
    return "/run/properties/" + key;
}

#endif  // ZYL_LAB_PROPERTIES_STORE_H
