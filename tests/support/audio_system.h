// The audio system, answering from a table.

#ifndef ZYL_TESTS_SUPPORT_AUDIO_SYSTEM_H
#define ZYL_TESTS_SUPPORT_AUDIO_SYSTEM_H

#include <map>
#include <string>

// What each key is answered with; a key that is not here gets an empty answer. Not to be changed
// while the service is asking.
std::map<std::string, std::string>& audioReplies();

#endif  // ZYL_TESTS_SUPPORT_AUDIO_SYSTEM_H
