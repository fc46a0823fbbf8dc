#include "settings/fair_lock.h"

#include <condition_variable>

// Lies on the stack of the thread that waits.
struct FairLock::Waiter {
    std::condition_variable turn;
    bool granted = false;
    Waiter* next = nullptr;
};

void FairLock::lock() {
    std::unique_lock<std::mutex> guard(mMutex);
    if (!mHeld) {
        mHeld = true;
        return;
    }
    Waiter self;
    (mFirst == nullptr ? mFirst : mLast->next) = &self;
    mLast = &self;
    self.turn.wait(guard, [&self] { return self.granted; });
}

void FairLock::unlock() {
    const std::lock_guard<std::mutex> guard(mMutex);
    Waiter* const next = mFirst;
    if (next == nullptr) {
        mHeld = false;
        return;
    }
    // The lock is handed over and never free in between. The waiter may be gone as soon as mMutex
    // is released, so it is notified before.
    mFirst = next->next;
    next->granted = true;
    next->turn.notify_one();
}
