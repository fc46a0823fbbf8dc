#include "client/library/recorded.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

std::string lockFile() {
    return storageDirectory() + "trial.lock";
}

// Adds what a property was to an entry and saves it; the first time, that makes the entry.
Outcome saveBefore(HistoryEntry* entry, const Property& property, const Value& previous) {
    entry->addBefore(property, previous);
    return entry->number == 0 ? addToHistory(entry) : updateBefore(*entry);
}

void takeAfter(const std::vector<Transition>& transitions, HistoryEntry* entry) {
    for (const Transition& transition : transitions) {
        bool known = false;
        for (Change& change : entry->after) {
            if (change.property != transition.property) continue;
            change.value = transition.after;
            known = true;
        }
        if (!known) entry->after.push_back({transition.property, transition.after});
    }
}

// What was only switched for a moment did not change.
void removeUnchanged(HistoryEntry* entry) {
    std::vector<Change> changed;
    for (const Change& before : entry->before) {
        for (const Change& after : entry->after) {
            if (after.property == before.property && after.value != before.value) {
                changed.push_back(before);
            }
        }
    }
    entry->before = changed;
}

Outcome goBackTo(Connection& connection, const std::vector<Change>& before, double patience,
                 std::vector<Transition>* transitions) {
    Application application(connection, patience);
    Outcome outcome = planAndApply(connection, before, Equal::kSkip, nullptr, &application);
    if (transitions != nullptr) *transitions = application.transitions();
    return outcome;
}

}  // namespace

Outcome changeRecorded(Connection& connection, const ChangeRequest& request,
                       std::vector<Transition>* transitions) {
    HistoryEntry entry;
    entry.command = request.command;
    entry.time = now();
    const bool recording = makeStorage("").ok();
    Application application(connection, request.patience);
    application.setProgress(request.progress);
    application.setRecorder([&](const Property& property, const Value& previous) {
        return recording ? saveBefore(&entry, property, previous) : done();
    });
    Outcome outcome =
            planAndApply(connection, request.wanted, request.equal, request.check, &application);
    *transitions = application.transitions();
    if (entry.number == 0) return outcome;
    takeAfter(*transitions, &entry);
    const bool nothing = outcome.ok() ? transitions->empty() : application.tookBack();
    if (nothing) {
        removeFromHistory(entry.number);
        return outcome;
    }
    if (outcome.ok()) {
        entry.state = HistoryEntry::kComplete;
        removeUnchanged(&entry);
    }
    Outcome saved = updateHistory(entry);
    return outcome.ok() ? saved : outcome;
}

Outcome undo(Connection& connection, size_t count, const ChangeRequest& request,
             std::vector<int>* numbers, std::vector<Transition>* transitions) {
    const auto entries = lastUndoable(loadHistory(), count);
    if (entries.empty()) return refusal("undo", "there is nothing to undo");
    Application application(connection, request.patience);
    application.setProgress(request.progress);
    Outcome outcome =
            planAndApply(connection, undoing(entries), Equal::kSkip, request.check, &application);
    *transitions = application.transitions();
    if (!outcome.ok()) return outcome;
    for (HistoryEntry entry : entries) {
        entry.state = HistoryEntry::kUndone;
        Outcome saved = updateHistory(entry);
        if (!saved.ok()) return saved;
        numbers->push_back(entry.number);
    }
    return done();
}

Outcome Trial::begin(const std::string& command) {
    Outcome made = makeStorage("");
    if (!made.ok()) return made;
    if (!mLock.take(lockFile(), FileLock::kTry)) {
        return refusal("try", "another trial runs", "kwoctl keep or kwoctl undo ends it");
    }
    mEntry.command = command;
    mEntry.time = now();
    mEntry.state = HistoryEntry::kOnTrial;
    Outcome added = addToHistory(&mEntry);
    return added.ok() ? startGuard() : added;
}

// A process of its own that no signal of this terminal reaches. It is born by a child that ends at
// once, so that nobody has to wait for it.
Outcome Trial::startGuard() {
    const pid_t child = fork();
    if (child < 0) return refusal("try", strerror(errno));
    if (child == 0) {
        setsid();
        if (fork() != 0) _exit(0);
        const int null = open("/dev/null", O_RDWR);
        for (int stream = 0; stream <= 2; ++stream) dup2(null, stream);
        if (chdir("/") == 0) execl("/proc/self/exe", "kwoctl", kGuardCommand, nullptr);
        _exit(1);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return done();
}

Outcome Trial::apply(const ChangeRequest& request) {
    Application application(mConnection, request.patience);
    application.setProgress(request.progress);
    application.setRecorder([this](const Property& property, const Value& previous) {
        return saveBefore(&mEntry, property, previous);
    });
    Outcome outcome =
            planAndApply(mConnection, request.wanted, request.equal, request.check, &application);
    takeAfter(application.transitions(), &mEntry);
    return outcome;
}

HistoryEntry::State Trial::state() const {
    for (const HistoryEntry& entry : loadHistory()) {
        if (entry.number == mEntry.number) return entry.state;
    }
    // Somebody removed the history; what to go back to is known here, too.
    return HistoryEntry::kBack;
}

Outcome Trial::keep() {
    mEntry.state = HistoryEntry::kComplete;
    removeUnchanged(&mEntry);
    return mEntry.before.empty() ? removeFromHistory(mEntry.number) : updateHistory(mEntry);
}

Outcome Trial::goBack(double patience, bool* kept) {
    changeState(mEntry.number, HistoryEntry::kOnTrial, HistoryEntry::kBack);
    *kept = state() == HistoryEntry::kKeep;
    if (*kept) return keep();
    Outcome outcome = goBackTo(mConnection, mEntry.before, patience, nullptr);
    if (!outcome.ok()) return outcome;
    mEntry.state = HistoryEntry::kUndone;
    return mEntry.before.empty() ? removeFromHistory(mEntry.number) : updateHistory(mEntry);
}

HistoryEntry currentTrial() {
    for (const HistoryEntry& entry : loadHistory()) {
        if (entry.state >= HistoryEntry::kOnTrial) return entry;
    }
    return HistoryEntry();
}

Outcome recoverTrial(Connection& connection, FileLock::Wait wait, double patience,
                     HistoryEntry* ended) {
    FileLock lock;
    if (currentTrial().number == 0 || !lock.take(lockFile(), wait)) return done();
    HistoryEntry trial = currentTrial();
    if (trial.number == 0) return done();
    *ended = trial;
    if (trial.state == HistoryEntry::kKeep) {
        trial.state = HistoryEntry::kComplete;
        return updateHistory(trial);
    }
    if (!connection.connected()) {
        Outcome connected = connection.connect(patience);
        if (!connected.ok()) return connected;
    }
    Outcome back = goBackTo(connection, trial.before, patience, nullptr);
    if (!back.ok()) return back;
    trial.state = HistoryEntry::kUndone;
    return updateHistory(trial);
}

Outcome endTrial(HistoryEntry::State how) {
    const HistoryEntry trial = currentTrial();
    if (trial.number == 0 || !changeState(trial.number, HistoryEntry::kOnTrial, how)) {
        return refusal("keep", "no trial runs");
    }
    FileLock lock;
    lock.take(lockFile(), FileLock::kWait);
    return currentTrial().number == 0
                   ? done()
                   : refusal("try", "the trial ended without going back", "see kwoctl history");
}
