// Carries out a plan: all of it, or none.

#ifndef ZYL_CLIENT_LIBRARY_APPLY_H
#define ZYL_CLIENT_LIBRARY_APPLY_H

#include <functional>
#include <string>
#include <vector>

#include "client/library/plan.h"

// Is told what a property was before it is changed for the first time, and that before the change
// is sent. When it fails, nothing more is sent and what was sent is taken back.
using Recorder = std::function<Outcome(const Property& property, const Value& previous)>;
// Is told which step comes next, "[2/5]" and what it sets.
using Progress = std::function<void(size_t step, size_t steps, const std::string& what)>;

class Application {
  public:
    // The arguments outlive the application. For `patience` seconds it waits for a service that
    // went away in the middle.
    Application(Connection& connection, double patience)
        : mConnection(connection), mPatience(patience) {}

    void setRecorder(const Recorder& recorder) { mRecorder = recorder; }
    void setProgress(const Progress& progress) { mProgress = progress; }

    // Sends the steps in order and reads each back. When the service restarts in the middle, it is
    // looked up again and the steps begin anew. When one is refused or is not kept, what was sent
    // is taken back. The outcome of a failure says what each property of the steps holds now.
    Outcome run(const std::vector<Step>& steps);

    // After a call that did not reach the service: whether it is worth another attempt.
    bool retry(const Outcome& outcome);

    // What the properties were before the run, in the order in which they were first set, and what
    // they were set to.
    std::vector<Transition> transitions() const;

    // Whether a run that failed left everything as it was.
    bool tookBack() const { return mTookBack; }

  private:
    enum Refusals { kStop, kGoOn };
    Outcome sendAll(const std::vector<Step>& steps, Refusals refusals);
    Outcome send(const Step& step);
    Outcome record(const Property& property);
    bool takeBack();
    void describeWhatHolds(Outcome* outcome);
    void giveUp(Outcome* outcome) const;

    Connection& mConnection;
    const double mPatience;
    bool mTookBack = false;
    Recorder mRecorder;
    Progress mProgress;
    std::vector<Change> mPrevious;
    std::vector<Change> mSent;  // the last value of each
};

// Reads the present state, plans, and applies. `planned` may look at the steps before they are
// sent, and refuse them.
using StepCheck = std::function<Outcome(const std::vector<Step>& steps)>;
Outcome planAndApply(Connection& connection, const std::vector<Change>& wanted, Equal equal,
                     const StepCheck& planned, Application* application);

#endif  // ZYL_CLIENT_LIBRARY_APPLY_H
