// Say which lock guards what, and clang checks it; other compilers see nothing of it. API 24 has no
// such macros of its own.

#ifndef ZYL_SETTINGS_THREAD_ANNOTATIONS_H
#define ZYL_SETTINGS_THREAD_ANNOTATIONS_H

#ifdef __clang__
#define ZYL_ANNOTATION(attribute) __attribute__((attribute))
#else
#define ZYL_ANNOTATION(attribute)
#endif

// For a type of locks, and for a type that holds one as long as it lives.
#define ZYL_CAPABILITY ZYL_ANNOTATION(capability("mutex"))
#define ZYL_SCOPED_CAPABILITY ZYL_ANNOTATION(scoped_lockable)
// For a variable, and for the object that a pointer points to.
#define ZYL_GUARDED_BY(lock) ZYL_ANNOTATION(guarded_by(lock))
#define ZYL_PT_GUARDED_BY(lock) ZYL_ANNOTATION(pt_guarded_by(lock))
// For a function whose caller holds the lock, or must not hold it.
#define ZYL_REQUIRES(lock) ZYL_ANNOTATION(requires_capability(lock))
#define ZYL_EXCLUDES(lock) ZYL_ANNOTATION(locks_excluded(lock))
#define ZYL_ACQUIRE(...) ZYL_ANNOTATION(acquire_capability(__VA_ARGS__))
#define ZYL_RELEASE() ZYL_ANNOTATION(release_capability())
// For a lock that is taken after the other one where both are held.
#define ZYL_ACQUIRED_AFTER(lock) ZYL_ANNOTATION(acquired_after(lock))
// For a function that goes past a lock on purpose; its comment says why.
#define ZYL_UNCHECKED ZYL_ANNOTATION(no_thread_safety_analysis)

#endif  // ZYL_SETTINGS_THREAD_ANNOTATIONS_H
