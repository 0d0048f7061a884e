// Words with which a class says what its locks guard. Clang's thread-safety analysis reads them and reports
// every access that they forbid; to any other compiler they are nothing.
#pragma once

#if defined(__clang__)
#define TARNWICK_THREAD_ANNOTATION(word) __attribute__((word))
#else
#define TARNWICK_THREAD_ANNOTATION(word)
#endif

// On a class: its objects can be held by a thread, or hold one for as long as they live.
#define TARNWICK_CAPABILITY(name) TARNWICK_THREAD_ANNOTATION(capability(name))
#define TARNWICK_SCOPED_CAPABILITY TARNWICK_THREAD_ANNOTATION(scoped_lockable)

// On a field: it may only be touched by a thread that holds this.
#define TARNWICK_GUARDED_BY(lock) TARNWICK_THREAD_ANNOTATION(guarded_by(lock))

// On a function: what its caller must hold, must not hold, and what it takes and gives back itself.
#define TARNWICK_REQUIRES(...) TARNWICK_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define TARNWICK_EXCLUDES(...) TARNWICK_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define TARNWICK_ACQUIRE(...) TARNWICK_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define TARNWICK_RELEASE(...) TARNWICK_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
