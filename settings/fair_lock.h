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
    void lock() ZYL_ACQUIRE();
    void unlock() ZYL_RELEASE();

  private:
    enum State { kFree, kHeld, kAwaited };
    struct Waiter;

    bool change(State from, State to);

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
