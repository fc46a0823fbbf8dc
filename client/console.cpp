#include "client/console.h"

#include <unistd.h>

#include <chrono>
#include <cmath>

#include "client/library/files.h"
#include "client/library/parse.h"

namespace {

constexpr int kLineWidth = 60;

// One column a decibel, the neutral gain in the middle of what the service accepts.
constexpr int kLowestColumn = -16;
constexpr int kHighestColumn = 19;
constexpr char kBoosted[] = "\033[33m";
constexpr char kCut[] = "\033[36m";
constexpr char kPlain[] = "\033[0m";

std::string bar(double decibels, bool colour) {
    const int level = static_cast<int>(std::lround(decibels));
    std::string columns;
    for (int column = kLowestColumn; column <= kHighestColumn; ++column) {
        const bool filled = (column > 0 && column <= level) || (column < 0 && column >= level);
        columns += column == 0 ? '|' : filled ? '#' : '.';
    }
    if (!colour) return columns;
    return (level > 0 ? kBoosted : level < 0 ? kCut : "") + columns + kPlain;
}

bool hasTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

void wipeLine() {
    fprintf(stderr, "\r%*s\r", kLineWidth, "");
}

// The bands one below the other; with bars where the session shows them.
void printGains(const Session& session, const Value& gains) {
    for (size_t band = 0; band < gains.numbers.size(); ++band) {
        const double decibels = decibelsOf(gains.numbers[band]);
        printf("band %zu  %5.0f  %8s", band, gains.numbers[band], formatDecibels(decibels).c_str());
        if (!session.bands.empty()) {
            printf("  %8s", formatFrequency(session.bands[band]).c_str());
        }
        if (session.options.bars) printf("  %s", bar(decibels, session.options.colour).c_str());
        printf("\n");
    }
}

}  // namespace

void addToJson(Json& json, const Outcome& outcome) {
    json.name("error").open('{').name("status").number(outcome.status);
    json.name("what").text(outcome.what).name("why").text(outcome.why);
    if (!outcome.remedy.empty()) json.name("remedy").text(outcome.remedy);
    if (outcome.result != 0) json.name("result").number(outcome.result);
    if (!outcome.holds.empty()) {
        json.name("holds").open('[');
        for (const std::string& line : outcome.holds) json.text(line);
        json.close();
    }
    json.close();
}

void complain(const Options& options, const Outcome& outcome) {
    if (outcome.why.empty()) return;
    // What went well before stands in front, also where both streams are one.
    fflush(stdout);
    if (options.json) {
        Json json;
        json.open('{');
        addToJson(json, outcome);
        print(json.close(), stderr);
        return;
    }
    fprintf(stderr, "kwoctl: %s: %s%s%s\n", outcome.what.c_str(), outcome.why.c_str(),
            outcome.remedy.empty() ? "" : "; ", outcome.remedy.c_str());
    std::string holds;
    for (const std::string& line : outcome.holds) holds += (holds.empty() ? "" : "; ") + line;
    if (!holds.empty()) fprintf(stderr, "kwoctl: now: %s\n", holds.c_str());
}

void warn(const Options& options, const std::string& what, const std::string& why) {
    fflush(stdout);
    if (!options.json) {
        fprintf(stderr, "kwoctl: %s: %s\n", what.c_str(), why.c_str());
        return;
    }
    Json json;
    json.open('{').name("warning").open('{').name("what").text(what).name("why").text(why);
    print(json.close().close(), stderr);
}

void print(const Json& json, FILE* out) {
    fprintf(out, "%s\n", json.str().c_str());
    fflush(out);
}

void printValue(const Property& property, const Value& value) {
    const std::string text = isNone(property, value) ? "none" : formatValue(property, value);
    printf("%-14s %s%s\n", property.label.c_str(), property.part.c_str(), text.c_str());
}

void printState(const Session& session, const State& state) {
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, state);
        print(json.close());
        return;
    }
    for (const Reading& reading : state) printValue(*reading.property, reading.value);
}

void printOverview(const Session& session, const State& state,
                   const std::vector<std::string>& lost) {
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, state);
        if (!session.bands.empty()) {
            json.name("bands").open('[');
            for (double hertz : session.bands) json.number(hertz);
            json.close();
        }
        if (!lost.empty()) {
            json.name("lost").open('[');
            for (const std::string& line : lost) json.text(line);
            json.close();
        }
        print(json.close());
        return;
    }
    for (const Reading& reading : state) {
        if (reading.property->kind == Property::kGains) {
            printGains(session, reading.value);
        } else {
            printValue(*reading.property, reading.value);
        }
    }
    for (const std::string& line : lost) printf("lost           %s\n", line.c_str());
}

void printTransitions(const Session& session, const std::vector<Transition>& transitions) {
    if (session.options.json) {
        Json json;
        addToJson(json, transitions);
        print(json);
        return;
    }
    for (const Transition& transition : transitions) {
        printf("%-17s %s\n", transition.property->key.c_str(), describe(transition).c_str());
    }
}

void printAbout(const std::string& file, const std::string& line) {
    fprintf(isStandardStream(file) ? stderr : stdout, "%s\n", line.c_str());
}

void showProgress(size_t step, size_t steps, const std::string& what) {
    if (!hasTerminal()) return;
    if (what.empty()) {
        wipeLine();
        return;
    }
    fprintf(stderr, "\r%-*s", kLineWidth,
            format("[%zu/%zu] %s", step, steps, what.c_str()).c_str());
}

Patience::Patience(const Connection& connection) : mConnection(connection) {
    if (hasTerminal()) mThread = std::thread(&Patience::watch, this);
}

Patience::~Patience() {
    if (!mThread.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mEnded = true;
    }
    mEnd.notify_one();
    mThread.join();
}

void Patience::watch() {
    constexpr int kLong = 2;  // seconds
    uint32_t seen = mConnection.uses();
    int seconds = 0;
    std::unique_lock<std::mutex> lock(mMutex);
    while (!mEnd.wait_for(lock, std::chrono::seconds(1), [this] { return mEnded; })) {
        const uint32_t uses = mConnection.uses();
        seconds = uses == seen ? seconds + 1 : 0;
        seen = uses;
        if (seconds < kLong) continue;
        fprintf(stderr, "\r%-*s", kLineWidth,
                format("waiting for the service, %d s", seconds).c_str());
    }
    if (seconds >= kLong) wipeLine();
}
