// What the client's library decides by itself: which steps a change takes, how states and snapshots
// are read, what a history takes back.

#include <binder/Binder.h>
#include <sys/mman.h>
#include <unistd.h>

#include "client/library/history.h"
#include "client/library/parse.h"
#include "client/library/shared_region.h"
#include "client/library/snapshot.h"
#include "tests/support/phone.h"

namespace {

// Plans

// "stereo 1; geq on" as a state or as changes.
std::vector<Change> changes(const std::string& text) {
    std::vector<Change> changes;
    for (const std::string& item : splitWords(text, ";")) {
        std::vector<std::string> words = splitWords(item);
        const Property& row = property(words[0]);
        words.erase(words.begin());
        // All gains alike are written once.
        if (words.size() == 1) words.resize(row.count, words[0]);
        Value value;
        EXPECT_TRUE(parseValue(row, words, &value).ok()) << item;
        changes.push_back({&row, value});
    }
    return changes;
}

State state(const std::string& text) {
    State state;
    for (const Change& change : changes(text)) state.push_back({change.property, change.value});
    return state;
}

std::string describeAll(const std::vector<Step>& steps) {
    std::string text;
    for (const Step& step : steps) {
        std::string one = describe(step);
        if (step.property->key == "gains") one = "gains";
        text += (text.empty() ? "" : "; ") + one;
    }
    return text;
}

TEST(Plan, OrdersWhatDependsOnOneAnother) {
    const struct {
        const char* present;
        const char* wanted;
        const char* steps;
    } kRows[] = {
            {"effect on; stereo 1", "stereo 2", "stereo 2"},
            {"effect on; stereo 1", "stereo 1", ""},
            {"effect off; gains 4096", "effect on", "effect on"},
            {"effect on; geq on; gains 4096", "effect off; geq on", "effect off"},
            {"effect on; geq off; gains 4096", "geq on; effect on; stereo 2", "stereo 2; geq on"},
            {"effect on; geq on; gains 4096", "gains 725", "gains"},
            {"effect on; geq on; gains 4096", "geq off; gains 725", "gains; geq off"},
            {"effect on; geq off; gains 4096", "gains 725; geq on", "geq on; gains"},
            {"effect on; geq off; gains 4096", "gains 725", "geq on; gains; geq off"},
            // With the effect off the equaliser is not known.
            {"effect off; gains 4096", "gains 725",
             "effect on; geq on; gains; geq as before; effect off"},
            {"effect off; gains 4096", "gains 4096; geq on; effect off",
             "effect on; geq on; effect off"},
            {"effect off; gains 4096", "geq off; gains 725; effect on",
             "effect on; geq on; gains; geq off"},
            {"effect on; geq on; gains 4096", "gains.3 725; gains.1 4096", "gains.3 725"},
            {"effect on; geq on; gains 4096", "gains.3 800; gains 725", "gains; gains.3 800"},
            {"effect on; geq on; gains 4096; stereo 1", "effect off; gains 725; stereo 3",
             "stereo 3; gains; effect off"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.steps,
                  describeAll(planSteps(state(row.present), changes(row.wanted), Equal::kSkip)))
                << row.present << " -> " << row.wanted;
    }
    EXPECT_EQ("stereo 1; geq on",
              describeAll(planSteps(state("effect on; geq on; stereo 1"),
                                    changes("geq on; stereo 1"), Equal::kSend)));
}

TEST(Plan, ThatSetsWhatIsNotNamedCanBeRefused) {
    const struct {
        const char* present;
        const char* wanted;
        const char* what;
    } kRows[] = {
            {"effect off; gains 4096", "geq on", "geq"},
            {"effect on; geq off; gains 4096", "gains 725", "gains"},
            {"effect off; gains 4096", "geq on; effect on", ""},
            {"effect on; geq on; gains 4096", "gains 725; stereo 2", ""},
    };
    for (const auto& row : kRows) {
        const auto wanted = changes(row.wanted);
        const auto steps = planSteps(state(row.present), wanted, Equal::kSkip);
        EXPECT_EQ(row.what, checkNamed(steps, wanted).what) << row.wanted;
    }
}

// States and snapshots

// Stands before a service, and counts the calls that it refuses.
class Counter : public android::BBinder {
  public:
    explicit Counter(const android::sp<zyl_kwo_service>& service) : mService(service) {}
    int refused = 0;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override {
        const auto& service = static_cast<const android::sp<android::IBinder>&>(mService);
        const android::status_t status = service->transact(code, data, reply, flags);
        reply->setDataPosition(0);
        if (status != android::NO_ERROR || reply->readInt32() == kZylKwoNotAvailable) ++refused;
        return status;
    }

  private:
    const android::sp<zyl_kwo_service> mService;
};

TEST(State, IsReadWithoutAskingForWhatTheDeviceCannotHave) {
    const struct {
        const char* generation;
        size_t readings;
        int refused;  // by which the generation is known
    } kRows[] = {{"torvane", 15, 0}, {"maldor", 20, 1}, {"none", 8, 2}};
    for (const auto& row : kRows) {
        Phone phone;
        const android::sp<Counter> counter = new Counter(phone.start(row.generation));
        Connection connection(Izyl_kwo_service::asInterface(counter));
        State state;
        EXPECT_TRUE(readState(connection, everything, &state).ok()) << row.generation;
        EXPECT_EQ(row.generation, state.at(0).value.text);
        EXPECT_EQ(row.readings, state.size()) << row.generation;
        EXPECT_EQ(row.refused, counter->refused) << row.generation;
    }
}

TEST(Snapshot, SaysInWhichLineItIsWrong) {
    const struct {
        const char* text;
        const char* what;
    } kRows[] = {
            {"stereo 2\n\n# x\ngeq maybe\n", "f:4"},
            {"stereo 2\nstereo 3", "f:2"},
            {"mask.speaker 2\n", "f:1"},
            {"gains 4096\n", "f:1"},
            {"gains.1 4096\ngains.1 4096", "f:2"},
            {"# stereo 2\n", "f"},
            {"", "f"},
            {"generation torvane\n", "f"},
    };
    for (const auto& row : kRows) {
        Snapshot snapshot;
        const Outcome outcome = parseSnapshot("f", row.text, &snapshot);
        EXPECT_EQ(kRefused, outcome.status) << row.text;
        EXPECT_EQ(row.what, outcome.what) << row.text;
    }
}

TEST(Snapshot, HoldsWhatCanBeSetAndIsTold) {
    Snapshot snapshot;
    const State taken = state("effect off; stereo 3; geq on; gains 725; levels 7");
    ASSERT_TRUE(parseSnapshot("f", formatSnapshot(taken), &snapshot).ok());
    const auto transitions = compareStates(taken, stateOf(snapshot));
    // While the effect is off nobody knows what the equaliser is.
    ASSERT_EQ(1U, transitions.size());
    EXPECT_EQ("geq", transitions[0].property->key);
    EXPECT_EQ("on -> (not known)", describe(transitions[0]));
}

// History

HistoryEntry entry(int number, HistoryEntry::State state, const char* before, const char* after) {
    HistoryEntry entry;
    entry.number = number;
    entry.time = 1795302902;
    entry.command = "set something with=words";
    entry.state = state;
    entry.before = changes(before);
    entry.after = changes(after);
    return entry;
}

std::string describeChanges(const std::vector<Change>& changes) {
    std::string text;
    for (const Change& change : changes) {
        text += change.property->key + " " + formatValue(*change.property, change.value) + "; ";
    }
    return text;
}

TEST(History, IsReadBackAsItWasWritten) {
    const History history = {
            entry(7, HistoryEntry::kUndone, "stereo 1; gains.3 4096", "stereo 2; gains.3 725"),
            entry(8, HistoryEntry::kOnTrial, "levels 5", ""),
    };
    const History read = parseHistory(formatHistory(history) + "newer thing\nbefore nonsense 3\n");
    ASSERT_EQ(2U, read.size());
    for (size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(history[i].number, read[i].number);
        EXPECT_EQ(history[i].time, read[i].time);
        EXPECT_EQ(history[i].command, read[i].command);
        EXPECT_EQ(history[i].state, read[i].state);
        EXPECT_EQ(describeChanges(history[i].before), describeChanges(read[i].before));
        EXPECT_EQ(describeChanges(history[i].after), describeChanges(read[i].after));
    }
}

TEST(History, GoesBackToWhatWasBeforeTheOldest) {
    const History history = {
            entry(1, HistoryEntry::kComplete, "stereo 1", "stereo 2"),
            entry(2, HistoryEntry::kUndone, "stereo 2", "stereo 3"),
            entry(3, HistoryEntry::kComplete, "stereo 2; geq off", "stereo 3; geq on"),
            entry(4, HistoryEntry::kIncomplete, "route lineout", ""),
    };
    const struct {
        size_t count;
        const char* back;
    } kRows[] = {
            {1, "route lineout; "},
            {2, "stereo 2; geq off; route lineout; "},
            {3, "stereo 1; geq off; route lineout; "},
            {9, "stereo 1; geq off; route lineout; "},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.back, describeChanges(undoing(lastUndoable(history, row.count))))
                << row.count;
    }
    const History bands = {entry(1, HistoryEntry::kComplete, "gains 725", "gains 800"),
                           entry(2, HistoryEntry::kComplete, "gains.3 800", "gains.3 900")};
    EXPECT_EQ(1U, undoing(lastUndoable(bands, 2)).size());
}

// Shared memory

TEST(SharedMemory, CanBeMadeInEitherWay) {
    constexpr size_t kLength = 65536;
    for (auto* create : {createMemoryFile, createAshmem}) {
        const int fd = create(kLength);
        ASSERT_GE(fd, 0);
        void* const bytes = mmap(nullptr, kLength, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        ASSERT_NE(MAP_FAILED, bytes);
        static_cast<char*>(bytes)[kLength - 1] = 'x';
        munmap(bytes, kLength);
        close(fd);
    }
}

}  // namespace
