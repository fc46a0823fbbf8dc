// How long a call takes, one client, one call after the other.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "benchmarks/bench.h"
#include "interface/Izyl_kwo_service.h"

using android::IBinder;
using android::Parcel;
using android::sp;

namespace {

constexpr char kJournal[] = "/run/journal";
constexpr size_t kRegionLength = 70000;

struct Call {
    const char* name;
    uint32_t code;
    std::vector<int32_t> words;
    int repetitions;  // a round
};

// None of them changes anything but what it sets already: that is how the floor has it as well.
const std::vector<int32_t> kNeutralGains(kGEQBandCount, 4096);
const Call kCalls[] = {
        {"getStereoMode", Izyl_kwo_service::GET_STEREO_MODE, {}, 600},
        {"getGEQGain", Izyl_kwo_service::GET_GEQ_GAIN, {kBenchBand}, 600},
        {"getGEQGainAll", Izyl_kwo_service::GET_GEQ_GAIN_ALL, {}, 600},
        {"getDbLevels", Izyl_kwo_service::GET_DB_LEVELS, {}, 600},
        {"setStereoMode", Izyl_kwo_service::SET_STEREO_MODE, {2}, 50},
        {"setGEQGain", Izyl_kwo_service::SET_GEQ_GAIN, {kBenchBand, 4096}, 50},
        {"setGEQGainAll", Izyl_kwo_service::SET_GEQ_GAIN_ALL, kNeutralGains, 50},
        {"setEnabled", Izyl_kwo_service::SET_ENABLED, {1}, 25},
        {"setTuning", Izyl_kwo_service::SET_TUNING, {0, 1}, 25},
        {"setReloadFlag", Izyl_kwo_service::SET_RELOAD_FLAG, {0}, 25},
        {"fetchCacheBlock", Izyl_kwo_service::FETCH_CACHE_BLOCK, {kBenchBlock}, 25},
        {"pushCacheBlock", Izyl_kwo_service::PUSH_CACHE_BLOCK, {kBenchBlock}, 25},
};

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
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (truncate(kJournal, 0) != 0) giveUp("no journal");
    return std::regex_replace(text, std::regex("crc=\\S*"), "crc");
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
    if (replies[kService] != replies[kFloor]) giveUp("%s: the replies differ", made.name);
    if (journals[kService] != journals[kFloor]) {
        giveUp("%s: the service does\n%sthe floor does\n%s", made.name, journals[kService].c_str(),
               journals[kFloor].c_str());
    }
}

void measure(Caller& caller, const Call& made, int repetitions, bool floorFirst) {
    std::vector<double> taken[kTargetCount];
    for (int i = 0; i < kTargetCount * repetitions; ++i) {
        const auto target = static_cast<Target>((i + floorFirst) % kTargetCount);
        Parcel reply;
        taken[target].push_back(caller.make(target, made, &reply));
    }
    for (int percent : {50, 99}) {
        const std::string figure = std::string(made.name) + ".p" + std::to_string(percent);
        sample(figure.c_str(), quantile(taken[kService], percent / 100.),
               quantile(taken[kFloor], percent / 100.));
    }
}

}  // namespace

void prepareCalls() {
    Caller caller;
    Parcel reply;
    caller.make(kService, {"", Izyl_kwo_service::SET_GEQ_ENABLE, {1}, 0}, &reply);
    caller.share();
    for (const Call& made : kCalls) compare(caller, made);
}

void measureCalls(const Effort& effort) {
    Caller caller;
    for (int round = 0; round < effort.rounds; ++round) {
        for (const Call& made : kCalls) {
            measure(caller, made, std::max(3, made.repetitions * effort.percent / 100),
                    round % 2 != 0);
        }
        // It would fill the phone's memory.
        if (truncate(kJournal, 0) != 0) giveUp("no journal");
    }
}
