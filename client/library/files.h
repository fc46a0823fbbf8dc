// Whole files; "-" is standard input or output.

#ifndef ZYL_CLIENT_LIBRARY_FILES_H
#define ZYL_CLIENT_LIBRARY_FILES_H

#include <string>
#include <vector>

#include "client/library/outcome.h"

using Bytes = std::vector<uint8_t>;

// More than tuning data and blocks may have: what is longer is refused, and so is what never ends.
constexpr size_t kMostFileBytes = size_t{16} << 20;

Outcome readFile(const std::string& name, Bytes* bytes);
// As text: a file with a NUL in it is none.
Outcome readTextFile(const std::string& name, std::string* text);
Outcome writeFile(const std::string& name, const void* bytes, size_t size);

// Replaces the file as one: after a crash or a power cut it is the old or the new one. Not for "-".
Outcome replaceFile(const std::string& name, const std::string& text);

inline bool isStandardStream(const std::string& name) {
    return name == "-";
}

#endif  // ZYL_CLIENT_LIBRARY_FILES_H
