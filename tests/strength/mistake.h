// Included in front of every source that mistakes were built into: the environment chooses which of
// them is made.

#ifndef ZYL_TESTS_STRENGTH_MISTAKE_H
#define ZYL_TESTS_STRENGTH_MISTAKE_H

#include <cstdlib>

inline bool isMistake(int number) {
    static const int chosen = [] {
        const char* text = getenv("ZYL_MISTAKE");
        return text == nullptr ? 0 : atoi(text);
    }();
    return chosen == number;
}

#endif  // ZYL_TESTS_STRENGTH_MISTAKE_H
