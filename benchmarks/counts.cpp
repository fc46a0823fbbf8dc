// zyl_counts CALLS CODE WORD...: one call to the service's object, time and again, on a phone of
// fixtures, for a tool that counts what a call runs.

#include <cstdio>
#include <cstdlib>

#include "tests/support/phone.h"

namespace {

// Whether all of them came through, and none had anything to log.
bool make(int calls, uint32_t code, const Words& words) {
    Phone phone;
    const android::sp<zyl_kwo_service> service = phone.start("torvane");
    // Or gains are refused.
    service->setGEQEnable(1);
    for (int i = 0; i < calls; ++i) {
        const Answer answer = transact(*service, code, words);
        if (answer.status != android::NO_ERROR || answer.words.at(0) != 0) return false;
    }
    return Phone::log().empty();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: zyl_counts CALLS CODE WORD...\n");
        return 2;
    }
    Words words;
    for (int i = 3; i < argc; ++i) words.push_back(atoi(argv[i]));
    const bool made = make(atoi(argv[1]), static_cast<uint32_t>(atoi(argv[2])), words);
    if (!made) fprintf(stderr, "zyl_counts: the calls failed\n");
    // Of the phone's own checks as well.
    return made && !testing::UnitTest::GetInstance()->Failed() ? 0 : 1;
}
