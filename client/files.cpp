#include "client/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

bool isStandard(const std::string& name) {
    return name == "-";
}

// The standard streams stay open; they are flushed as others are closed.
File open(const std::string& name, const char* mode, FILE* standard) {
    if (isStandard(name)) return File(standard, fflush);
    return File(fopen(name.c_str(), mode), fclose);
}

ExitStatus reportFile(const std::string& name, int error) {
    return reportRefusal(isStandard(name) ? "standard input or output" : name, strerror(error));
}

}  // namespace

ExitStatus readFile(const std::string& name, Bytes* bytes) {
    const File file = open(name, "re", stdin);
    if (file == nullptr) return reportFile(name, errno);
    bytes->clear();
    uint8_t piece[4096];
    while (const size_t size = fread(piece, 1, sizeof(piece), file.get())) {
        bytes->insert(bytes->end(), piece, piece + size);
    }
    return ferror(file.get()) != 0 ? reportFile(name, errno) : kDone;
}

ExitStatus writeFile(const std::string& name, const void* bytes, size_t size) {
    File file = open(name, "we", stdout);
    if (file == nullptr) return reportFile(name, errno);
    if (fwrite(bytes, 1, size, file.get()) != size) return reportFile(name, errno);
    const auto close = file.get_deleter();
    return close(file.release()) != 0 ? reportFile(name, errno) : kDone;
}

void printAbout(const std::string& file, const std::string& line) {
    fprintf(isStandard(file) ? stderr : stdout, "%s\n", line.c_str());
}
