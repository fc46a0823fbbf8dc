// restorecon PATH...: gives the files, and all that is in directories, the security contexts that
// /file_contexts has for their names.

#include <ftw.h>

#include <cstdio>

#include "lab/selinux/labels.h"

namespace {

int label(const char* path, const struct stat*, int, FTW*) {
    if (restoreContext(path)) return 0;
    perror(path);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kDescriptors = 16;
    int result = 0;
    for (int i = 1; i < argc; ++i) {
        if (nftw(argv[i], label, kDescriptors, FTW_PHYS) != 0) result = 1;
    }
    return result;
}
