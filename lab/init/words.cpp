#include "lab/init/words.h"

#include <glob.h>

#include <fstream>
#include <sstream>

std::vector<Words> linesOf(const std::vector<const char*>& patterns) {
    std::vector<Words> lines;
    glob_t files = {};
    for (const char* pattern : patterns) {
        glob(pattern, files.gl_pathc != 0 ? GLOB_APPEND : 0, nullptr, &files);
    }
    for (size_t i = 0; i < files.gl_pathc; ++i) {
        std::ifstream file(files.gl_pathv[i]);
        for (std::string line; std::getline(file, line);) {
            std::istringstream text(line.substr(0, line.find('#')));
            Words words;
            for (std::string word; text >> word;) words.push_back(word);
            if (!words.empty()) lines.push_back(words);
        }
    }
    globfree(&files);
    return lines;
}
