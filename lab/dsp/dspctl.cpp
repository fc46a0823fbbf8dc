// dspctl: makes the DSP fail or dawdle, and shows what it holds.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "lab/dsp/control.h"
#include "lab/dsp/quorin_device.h"

namespace {

int usage() {
    fprintf(stderr,
            "usage: dspctl fail SKIP COUNT   let SKIP requests pass, then fail COUNT\n"
            "       dspctl slow MS           make every request take MS milliseconds\n"
            "       dspctl block N           write block N, 0 to 2, to standard output\n"
            "       dspctl reset             no failures, no delay\n");
    return 2;
}

// Whether they are all numbers; none is longer than fits.
bool areNumbers(char** words, int count) {
    for (int i = 0; i < count; ++i) {
        const size_t length = strlen(words[i]);
        if (length < 1 || length > 9 || strspn(words[i], "0123456789") != length) return false;
    }
    return true;
}

int numbersOf(const std::string& verb) {
    return verb == "fail" ? 2 : verb == "slow" || verb == "block" ? 1 : verb == "reset" ? 0 : -1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || numbersOf(argv[1]) != argc - 2 || !areNumbers(argv + 2, argc - 2)) {
        return usage();
    }
    if (strcmp(argv[1], "block") == 0 && strtoul(argv[2], nullptr, 10) >= quorin::kBlockCount) {
        return usage();
    }
    std::string line = argv[1];
    for (int i = 2; i < argc; ++i) line += std::string(" ") + argv[i];
    const std::string answer = askDsp(line);
    const size_t okLength = strlen(kDspAnswerOk);
    if (answer.compare(0, okLength, kDspAnswerOk) != 0) {
        fprintf(stderr, "dspctl: %s\n", answer.c_str());
        return 1;
    }
    const size_t size = answer.size() - okLength;
    return fwrite(answer.data() + okLength, 1, size, stdout) == size ? 0 : 1;
}
