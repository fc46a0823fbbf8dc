// What the DSP, the audio system and the conversion library did, in short, a word an event:
//
//     S185100        the cache has that size
//     C0             block 0 is configured
//     W1  R1         block 1 is written, or read, as a whole
//     w2.1=3         row 2 of block 1 is written with the value 3; r2.1 is read
//     w3-12.1=7,8    rows 3 to 12, which lie side by side, are written at once
//     a              new parameters are announced; a write that is announced says no more of it
//     s              the settings are saved; only where whoever writes the journal can see it
//     Speaker(1,48000,5,4)=-4
//                    a conversion, with its numbers and, if it failed, its result
//
// In front, x says that a request failed and ! that it was refused. Behind, ~ says that a write was
// not announced, and [SIZE@OFFSET] that it had another size or offset than its row. What has no
// short form stays as it is.
//
// Those who write stories may write them shorter: W012 is W0 W1 W2, C01 is C0 C1, w2.12=3 is w2.1=3
// w2.2=3, and z14-25 clears each of those rows in blocks 1 and 2.

#ifndef ZYL_LAB_CASES_STORY_H
#define ZYL_LAB_CASES_STORY_H

#include <string>
#include <vector>

// Of the lines of a journal.
std::string storyOf(const std::vector<std::string>& journal);

// A story with a word for each event.
std::string writtenOut(const std::string& story);

// How many requests of a story that is written out come before the first that failed; -1 where none
// did.
int failingRequest(const std::string& story);

// The story without what only some can see: that the settings are saved.
std::string withoutSaves(const std::string& story);

#endif  // ZYL_LAB_CASES_STORY_H
