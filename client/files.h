// Whole files; "-" is standard input or output.

#ifndef ZYL_CLIENT_FILES_H
#define ZYL_CLIENT_FILES_H

#include <string>
#include <vector>

#include "client/errors.h"

using Bytes = std::vector<uint8_t>;

// Both complain themselves.
ExitStatus readFile(const std::string& name, Bytes* bytes);
ExitStatus writeFile(const std::string& name, const void* bytes, size_t size);

// A line about what was done: on standard error when standard output carries a file's contents.
void printAbout(const std::string& file, const std::string& line);

#endif  // ZYL_CLIENT_FILES_H
