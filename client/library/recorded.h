// Changes that go into the history, and trials, which go back unless they are kept.

#ifndef ZYL_CLIENT_LIBRARY_RECORDED_H
#define ZYL_CLIENT_LIBRARY_RECORDED_H

#include "client/library/apply.h"
#include "client/library/history.h"
#include "client/library/storage.h"

struct ChangeRequest {
    std::string command;  // for the history, as a person would write it
    std::vector<Change> wanted;
    Equal equal;
    StepCheck check;
    Progress progress;
    double patience;  // seconds to wait for a service that went away
};

// Applies and records. A user who has no place for a history has none; the change is made all the
// same.
Outcome changeRecorded(Connection& connection, const ChangeRequest& request,
                       std::vector<Transition>* transitions);

// Takes the last changes back, newest first.
Outcome undo(Connection& connection, size_t count, const ChangeRequest& request,
             std::vector<int>* numbers, std::vector<Transition>* transitions);

// One trial at a time: it holds a lock as long as its process lives. A guard, which is this program
// once more, waits for that lock, and goes back when the trial ended without saying how.
class Trial {
  public:
    explicit Trial(Connection& connection) : mConnection(connection) {}

    // Puts the trial on disk and starts the guard. Nothing is changed yet.
    Outcome begin(const std::string& command);
    // May be asked for several times, one state after the other.
    Outcome apply(const ChangeRequest& request);
    // kOnTrial, or what another process wants: kKeep or kBack.
    HistoryEntry::State state() const;
    Outcome keep();
    // kDone also when another process was faster and wants it kept: `kept` says so.
    Outcome goBack(double patience, bool* kept);

    // What is different from before the trial.
    std::vector<Transition> transitions() const { return mEntry.transitions(); }

  private:
    Outcome startGuard();

    Connection& mConnection;
    HistoryEntry mEntry;
    FileLock mLock;
};

// The trial that runs, or that was left behind; a number of 0 when there is none.
HistoryEntry currentTrial();

// Waits for the lock if told so, and ends a trial that nobody runs any more: as its record says.
// `ended` has its number, or 0.
Outcome recoverTrial(Connection& connection, FileLock::Wait wait, double patience,
                     HistoryEntry* ended);

// Asks the trial that runs to end so, by kKeep or kBack, and waits until it has.
Outcome endTrial(HistoryEntry::State how);

// The command by which this program is its own guard.
constexpr char kGuardCommand[] = "guard-trial";

#endif  // ZYL_CLIENT_LIBRARY_RECORDED_H
