// The files of init and ueventd, word by word.

#ifndef ZYL_LAB_INIT_WORDS_H
#define ZYL_LAB_INIT_WORDS_H

#include <string>
#include <vector>

using Words = std::vector<std::string>;

// The lines of the files that the patterns (see glob) name, in that order, without comments and
// empty lines.
std::vector<Words> linesOf(const std::vector<const char*>& patterns);

#endif  // ZYL_LAB_INIT_WORDS_H
