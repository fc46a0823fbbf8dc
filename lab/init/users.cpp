#include "lab/init/users.h"

#include <cctype>
#include <cstdlib>
#include <fstream>

uid_t knownByName(const std::string& word) {
    std::ifstream users("/etc/users");
    std::string name;
    uid_t number = 0;
    while (users >> name >> number) {
        if (name == word) return number;
    }
    return kNobodyKnown;
}

uid_t knownToInit(const std::string& word) {
    if (isalpha(static_cast<unsigned char>(word[0])) != 0) return knownByName(word);
    char* end = nullptr;
    const unsigned long number = strtoul(word.c_str(), &end, 0);
    return word.empty() || *end != '\0' ? kNobodyKnown : static_cast<uid_t>(number);
}
