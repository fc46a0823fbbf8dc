#include "settings/fair_lock.h"

#include <condition_variable>

// Lies on the stack of the thread that waits.
struct FairLock::Waiter {
    std::condition_variable turn;
    bool granted = false;
    Waiter* next = nullptr;
};

// It is free only while nobody waits, so that whoever takes it at once passes by nobody.
void FairLock::lockInTurn() {
    std::unique_lock<std::mutex> guard(mMutex);
    // From here on its holder looks for those who wait, unless it let go in between.
    if (mState.exchange(kAwaited, std::memory_order_acq_rel) == kFree) {
        mState.store(kHeld, std::memory_order_relaxed);
        return;
    }
    Waiter self;
    (mFirst == nullptr ? mFirst : mLast->next) = &self;
    mLast = &self;
    self.turn.wait(guard, [&self] { return self.granted; });
}

void FairLock::handOver() {
    const std::lock_guard<std::mutex> guard(mMutex);
    Waiter* const next = mFirst;
    // The lock is handed over and never free in between. The waiter may be gone as soon as mMutex
    // is released, so it is notified before.
    mFirst = next->next;
    if (mFirst == nullptr) mState.store(kHeld, std::memory_order_relaxed);
    next->granted = true;
    next->turn.notify_one();
}
