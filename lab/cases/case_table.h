// Tables of calls and what comes of them, one a line:
//
//     CALL | REPLY | STORY
//
// CALL is a code, by its name or number, and its arguments: numbers; "text" for tuning data of that
// text and a NUL, 'text' without one; where data may stand, N for so many zeros and #N for data
// that is announced and never comes; a path for a descriptor of that file. In texts, \0 and \n are
// a NUL and a line end. "start" in place of a code is a service that starts anew.
//
// REPLY is what the reply holds, its result first, by its name; "empty" for a reply of nothing; or
// how binder says that there is none. Numbers that are the same N times are V*N.
//
// STORY is what the call led to, an event a word: see story.h. Where a request has failed in it, it
// is because the one that plays the table makes it fail.

#ifndef ZYL_LAB_CASES_CASE_TABLE_H
#define ZYL_LAB_CASES_CASE_TABLE_H

#include <binder/Parcel.h>

#include <cstdint>
#include <string>
#include <vector>

struct Case {
    std::string call;
    std::string reply;  // written out
    std::string story;  // written out
    // How many requests of the call succeed before the one that is to fail; none is where negative.
    int failing = -1;
};

struct Table {
    std::string name;        // of the file, without its directory and ending
    std::string generation;  // from the line "# generation: NAME"
    std::vector<Case> cases;
};

// No cases where the file cannot be read.
Table readTable(const std::string& path);

// The parts of a call, and the bytes of one that is a text.
std::vector<std::string> wordsOf(const std::string& call);
std::string bytesOfText(const std::string& word);

// Fills a parcel with the call and returns its code.
uint32_t fillCall(const std::string& call, android::Parcel* data);

// The words of REPLY for what a call came to.
std::string replyText(uint32_t code, android::status_t status, const android::Parcel& reply);

#endif  // ZYL_LAB_CASES_CASE_TABLE_H
