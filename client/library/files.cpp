#include "client/library/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

// The standard streams stay open; they are flushed as others are closed.
File open(const std::string& name, const char* mode, FILE* standard) {
    if (isStandardStream(name)) return File(standard, fflush);
    return File(fopen(name.c_str(), mode), fclose);
}

Outcome fileFailure(const std::string& name, int error) {
    return refusal(isStandardStream(name) ? "standard input or output" : name, strerror(error));
}

}  // namespace

Outcome readFile(const std::string& name, Bytes* bytes) {
    const File file = open(name, "re", stdin);
    if (file == nullptr) return fileFailure(name, errno);
    bytes->clear();
    uint8_t piece[4096];
    while (const size_t size = fread(piece, 1, sizeof(piece), file.get())) {
        bytes->insert(bytes->end(), piece, piece + size);
        if (bytes->size() > kMostFileBytes) return refusal(name, "is larger than 16 MiB");
    }
    return ferror(file.get()) != 0 ? fileFailure(name, errno) : done();
}

Outcome readTextFile(const std::string& name, std::string* text) {
    Bytes bytes;
    Outcome read = readFile(name, &bytes);
    if (!read.ok()) return read;
    text->assign(bytes.begin(), bytes.end());
    return text->find('\0') == std::string::npos ? done() : refusal(name, "is not text");
}

Outcome writeFile(const std::string& name, const void* bytes, size_t size) {
    File file = open(name, "we", stdout);
    if (file == nullptr) return fileFailure(name, errno);
    if (fwrite(bytes, 1, size, file.get()) != size) return fileFailure(name, errno);
    const auto close = file.get_deleter();
    return close(file.release()) != 0 ? fileFailure(name, errno) : done();
}

Outcome replaceFile(const std::string& name, const std::string& text) {
    const std::string temporary = name + ".tmp";
    File file(fopen(temporary.c_str(), "we"), fclose);
    if (file == nullptr) return fileFailure(temporary, errno);
    const bool written = fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
                         fflush(file.get()) == 0 && fdatasync(fileno(file.get())) == 0;
    if (written && rename(temporary.c_str(), name.c_str()) == 0) return done();
    const int error = errno;
    unlink(temporary.c_str());
    return fileFailure(name, error);
}
