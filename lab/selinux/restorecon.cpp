// restorecon PATH...: gives the files, and all that is in directories, the security contexts that
// /file_contexts has for their names. Of several lines that match, the last one counts.

#include <ftw.h>
#include <regex.h>
#include <sys/xattr.h>

#include <cstdio>
#include <fstream>
#include <list>
#include <string>

namespace {

struct Rule {
    regex_t name;
    std::string context;
};

std::list<Rule> gRules;

bool readRules(const char* path) {
    std::ifstream file(path);
    std::string name;
    std::string context;
    while (file >> name >> context) {
        gRules.push_front({{}, context});
        const std::string whole = "^(" + name + ")$";
        if (regcomp(&gRules.front().name, whole.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
            return false;
        }
    }
    return file.eof() && !gRules.empty();
}

int label(const char* path, const struct stat*, int, FTW*) {
    for (const Rule& rule : gRules) {
        if (regexec(&rule.name, path, 0, nullptr, 0) != 0) continue;
        const std::string& context = rule.context;
        if (lsetxattr(path, "security.selinux", context.c_str(), context.size() + 1, 0) != 0) {
            perror(path);
            return 1;
        }
        break;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kDescriptors = 16;
    if (!readRules("/file_contexts")) {
        fputs("restorecon: /file_contexts cannot be read\n", stderr);
        return 1;
    }
    int result = 0;
    for (int i = 1; i < argc; ++i) {
        if (nftw(argv[i], label, kDescriptors, FTW_PHYS) != 0) result = 1;
    }
    return result;
}
