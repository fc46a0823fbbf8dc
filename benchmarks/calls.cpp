// How long a call takes, one client, one call after the other.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "benchmarks/bench.h"
#include "interface/Izyl_kwo_service.h"

using android::IBinder;
using android::Parcel;
using android::sp;

namespace {

constexpr char kJournal[] = "/run/journal";
constexpr size_t kRegionLength = 70000;
constexpr int32_t kLineout = 1;

const std::vector<int32_t> kNeutralGains(kGEQBandCount, 4096);
const Call kSetStereoMode = {"setStereoMode", Izyl_kwo_service::SET_STEREO_MODE, {2}, 16};

// Tuning data in a parcel: a length and as many bytes; then the work area's.
constexpr int kTuningWords = 1024;
std::vector<int32_t> accessoryTuning() {
    std::vector<int32_t> words = {kLineout, 4 * kTuningWords};
    words.resize(words.size() + kTuningWords, 0x2D2D2D2D);
    words.push_back(4 * kTuningWords);
    words.resize(words.size() + kTuningWords);
    return words;
}

class Caller {
  public:
    Caller() {
        for (int i = 0; i < kTargetCount; ++i) mTargets[i] = find(static_cast<Target>(i));
    }

    double make(Target target, const Call& made, Parcel* reply) {
        Parcel data;
        writeCall(&data, made.words);
        return call(*mTargets[target], made.code, data, reply);
    }

    // One region of memory for both.
    void share() {
        const int region = memfd_create("region", MFD_CLOEXEC);
        if (region < 0 || ftruncate(region, kRegionLength) != 0) giveUp("no region");
        for (const sp<IBinder>& target : mTargets) {
            Parcel data;
            Parcel reply;
            writeCall(&data, {});
            data.writeDupFileDescriptor(region);
            data.writeInt32(kRegionLength);
            call(*target, Izyl_kwo_service::SET_FILE_DESCRIPTOR, data, &reply);
            if (reply.readInt32() != 0) giveUp("the region was refused");
        }
        close(region);
    }

  private:
    sp<IBinder> mTargets[kTargetCount];
};

// Its own effect is in there; only what is in a whole block may differ, as the floor lays no
// settings over it.
std::string takeJournal() {
    std::ifstream file(kJournal);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (truncate(kJournal, 0) != 0) giveUp("no journal");
    for (size_t at = 0; (at = text.find("crc=", at)) != std::string::npos; ++at) {
        text.erase(at, text.find_first_of(" \n", at) - at);
    }
    return text;
}

// Both reply the same, and the DSP and the audio system hear the same.
void compare(Caller& caller, const Call& made) {
    std::string replies[kTargetCount];
    std::string journals[kTargetCount];
    for (int i = 0; i < kTargetCount; ++i) {
        Parcel reply;
        takeJournal();
        caller.make(static_cast<Target>(i), made, &reply);
        journals[i] = takeJournal();
        replies[i].assign(reinterpret_cast<const char*>(reply.data()), reply.dataSize());
    }
    if (replies[kService] != replies[kFloor]) giveUp("%s: the replies differ", made.name.c_str());
    if (journals[kService] != journals[kFloor]) {
        giveUp("%s: the service does\n%sthe floor does\n%s", made.name.c_str(),
               journals[kService].c_str(), journals[kFloor].c_str());
    }
}

void measure(Caller& caller, const Call& made, int repetitions, bool floorFirst,
             const pid_t* processes) {
    std::vector<double> taken[kTargetCount];
    double own[kTargetCount];
    for (int i = 0; i < kTargetCount; ++i) own[i] = ownTime(processes[i]);
    for (int i = 0; i < kTargetCount * repetitions; ++i) {
        const auto target = static_cast<Target>((i + floorFirst) % kTargetCount);
        Parcel reply;
        taken[target].push_back(caller.make(target, made, &reply));
    }
    for (int percent : {50, 99}) {
        const std::string figure = made.name + ".p" + std::to_string(percent);
        sample(figure, quantile(taken[kService], percent / 100.),
               quantile(taken[kFloor], percent / 100.));
    }
    for (int i = 0; i < kTargetCount; ++i) own[i] = (ownTime(processes[i]) - own[i]) / repetitions;
    sample(made.name + ".own", own[kService], own[kFloor]);
}

// A float travels as its bits.
int32_t bitsOf(float value) {
    int32_t bits = 0;
    memcpy(&bits, &value, sizeof(bits));
    return bits;
}

}  // namespace

std::vector<Call> torvaneCalls() {
    return {
            {"getStereoMode", Izyl_kwo_service::GET_STEREO_MODE, {}, 1000},
            {"getGEQGain", Izyl_kwo_service::GET_GEQ_GAIN, {kBenchBand}, 1000},
            {"getGEQGainAll", Izyl_kwo_service::GET_GEQ_GAIN_ALL, {}, 1000},
            {"getDbLevels", Izyl_kwo_service::GET_DB_LEVELS, {}, 1000},
            kSetStereoMode,
            {"setGEQGain", Izyl_kwo_service::SET_GEQ_GAIN, {kBenchBand, 4096}, 16},
            {"setGEQGainAll", Izyl_kwo_service::SET_GEQ_GAIN_ALL, kNeutralGains, 16},
            {"setEnabled", Izyl_kwo_service::SET_ENABLED, {1}, 6},
            {"setTuning", Izyl_kwo_service::SET_TUNING, {0, 1}, 6},
            {"setReloadFlag", Izyl_kwo_service::SET_RELOAD_FLAG, {0}, 6},
            {"fetchCacheBlock", Izyl_kwo_service::FETCH_CACHE_BLOCK, {kBenchBlock}, 6},
            {"pushCacheBlock", Izyl_kwo_service::PUSH_CACHE_BLOCK, {kBenchBlock}, 6},
    };
}

// The test comes first: from then on tuning data has it applied again.
std::vector<Call> maldorCalls() {
    std::vector<int32_t> test;
    for (float value : kBenchTest) test.push_back(bitsOf(value));
    return {
            {"setListeningTestResult", Izyl_kwo_service::SET_LISTENING_TEST_RESULT, test, 6},
            {"setAccessoryZylcsTuning", Izyl_kwo_service::SET_ACCESSORY_ZYLCS_TUNING,
             accessoryTuning(), 6},
    };
}

std::vector<Call> forcedCalls() {
    return {{"setReloadFlag.forced", Izyl_kwo_service::SET_RELOAD_FLAG, {1}, 6}};
}

void reloadService() {
    Caller caller;
    Parcel reply;
    caller.make(kService, {"", Izyl_kwo_service::SET_RELOAD_FLAG, {0}, 0}, &reply);
}

void prepareCalls(const std::vector<Call>& calls) {
    Caller caller;
    Parcel reply;
    caller.make(kService, {"", Izyl_kwo_service::SET_GEQ_ENABLE, {1}, 0}, &reply);
    caller.share();
    for (const Call& made : calls) compare(caller, made);
}

void measureCalls(const Effort& effort, const std::vector<Call>& calls,
                  const pid_t processes[kTargetCount]) {
    Caller caller;
    for (int round = 0; round < effort.rounds; ++round) {
        progress(calls.front().name.c_str(), round, effort.rounds);
        for (const Call& made : calls) {
            measure(caller, made, std::max(3, made.repetitions * effort.percent / 100),
                    round % 2 != 0, processes);
        }
        // It would fill the phone's memory.
        if (truncate(kJournal, 0) != 0) giveUp("no journal");
    }
}

void measureWrites(const Effort& effort) {
    Caller caller;
    Parcel reply;
    for (int round = 0; round < effort.rounds; ++round) {
        progress("writes", round, effort.rounds);
        for (int writes : {1, 10, 100}) {
            double taken[kTargetCount];
            for (int i = 0; i < kTargetCount; ++i) {
                const auto target = static_cast<Target>((i + round) % kTargetCount);
                const auto from = Clock::now();
                for (int n = 0; n < writes; ++n) caller.make(target, kSetStereoMode, &reply);
                taken[target] = microsecondsSince(from) / writes;
            }
            sample("writes." + std::to_string(writes), taken[kService], taken[kFloor]);
        }
        if (truncate(kJournal, 0) != 0) giveUp("no journal");
    }
}
