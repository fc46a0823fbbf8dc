// Whom init and ueventd of API 24 know: /etc/users, by name, the same names for users and groups.

#ifndef ZYL_LAB_INIT_USERS_H
#define ZYL_LAB_INIT_USERS_H

#include <sys/types.h>

#include <string>

// Neither a user nor a group.
constexpr uid_t kNobodyKnown = static_cast<uid_t>(-1);

// As ueventd reads a user or a group: by name alone. kNobodyKnown for any other word.
uid_t knownByName(const std::string& word);

// As init does: a word that begins with a letter is a name, any other a number.
uid_t knownToInit(const std::string& word);

#endif  // ZYL_LAB_INIT_USERS_H
