// zyl_play TABLE...: makes the calls of the tables and says of each, "ok" or "not ok", whether its
// reply and what it led to are as the table says. See case_table.h.
//
// zyl_play -: tells the story of the journal's lines on standard input.

#include <binder/IServiceManager.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "lab/cases/case_table.h"
#include "lab/cases/protocol.h"
#include "lab/cases/story.h"
#include "lab/dsp/control.h"

using android::IBinder;
using android::sp;

namespace {

std::vector<std::string> linesOf(std::istream& in) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// What came since the last look.
std::string newStory() {
    static std::streamoff seen = 0;
    std::ifstream journal("/run/journal");
    journal.seekg(seen);
    const std::vector<std::string> lines = linesOf(journal);
    for (const std::string& line : lines) seen += static_cast<std::streamoff>(line.size() + 1);
    return storyOf(lines);
}

sp<IBinder> findService() {
    sp<IBinder> service;
    while ((service = android::defaultServiceManager()->checkService(
                    android::String16(kServiceName))) == nullptr) {
        usleep(10000);
    }
    return service;
}

std::string replyTo(const std::string& call, sp<IBinder>* service) {
    if (call == "start") {
        if (system("stop zyl_kwo_service; start zyl_kwo_service") != 0) return "it does not start";
        *service = findService();
        return "";
    }
    android::Parcel data;
    android::Parcel reply;
    const uint32_t code = fillCall(call, &data);
    const android::status_t status = (*service)->transact(code, data, &reply);
    return replyText(code, status, reply);
}

bool play(const Table& table) {
    bool good = !table.cases.empty();
    sp<IBinder> service = findService();
    newStory();
    for (const Case& row : table.cases) {
        if (row.failing >= 0) askDsp("fail " + std::to_string(row.failing) + " 1");
        const std::string reply = replyTo(row.call, &service);
        if (row.failing >= 0) askDsp("reset");
        const std::string expected = row.reply + " | " + withoutSaves(row.story);
        const std::string got = reply + " | " + newStory();
        const char* verdict = got == expected ? "ok" : "not ok";
        printf("%s %s: %s", verdict, table.name.c_str(), row.call.c_str());
        printf(row.failing < 0 ? "\n" : ", request %d failing\n", row.failing);
        if (got == expected) continue;
        printf("expected: %s\ngot:      %s\n", expected.c_str(), got.c_str());
        good = false;
    }
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        fprintf(stderr, "usage: zyl_play TABLE... or zyl_play -\n");
        return 2;
    }
    if (argv[1] == std::string("-")) {
        printf("%s\n", storyOf(linesOf(std::cin)).c_str());
        return 0;
    }
    bool good = true;
    for (int i = 1; i < argc; ++i) good = play(readTable(argv[i])) && good;
    return good ? 0 : 1;
}
