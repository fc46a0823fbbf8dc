// A lock that threads get in the order in which they asked for it. Beside clients that call without
// a pause, a call that comes now and then still gets its turn.

#ifndef ZYL_SETTINGS_FAIR_LOCK_H
#define ZYL_SETTINGS_FAIR_LOCK_H

#include <atomic>
#include <mutex>

#include "settings/thread_annotations.h"

// Not recursive. Any thread.
class ZYL_CAPABILITY FairLock {
  public:
    // Where nobody else wants it, these are an instruction on an atomic each, and no call.
    void lock() ZYL_ACQUIRE() {
        if (!change(kFree, kHeld)) lockInTurn();
    }
    void unlock() ZYL_RELEASE() {
        if (!change(kHeld, kFree)) handOver();
    }

  private:
    enum State { kFree, kHeld, kAwaited };
    struct Waiter;

    bool change(State from, State to) {
        return mState.compare_exchange_strong(from, to, std::memory_order_acq_rel);
    }
    void lockInTurn();
    void handOver();

    std::atomic<State> mState{kFree};
    std::mutex mMutex;  // guards those who wait; held for moments only
    Waiter* mFirst = nullptr;
    Waiter* mLast = nullptr;
};

// Holds a lock for as long as it lives.
class ZYL_SCOPED_CAPABILITY ScopedLock {
  public:
    explicit ScopedLock(FairLock& lock) ZYL_ACQUIRE(lock) : mLock(lock) { mLock.lock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;
    ~ScopedLock() ZYL_RELEASE() { mLock.unlock(); }

  private:
    FairLock& mLock;
};

#endif  // ZYL_SETTINGS_FAIR_LOCK_H
