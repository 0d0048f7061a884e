// The standard library's mutex and condition in the form that the thread-safety analysis understands.
#pragma once

#include <condition_variable>
#include <mutex>

#include "system/thread_annotations.h"

namespace tarnwick {

class TARNWICK_CAPABILITY("mutex") Mutex {
 public:
  void lock() TARNWICK_ACQUIRE() { mutex_.lock(); }
  void unlock() TARNWICK_RELEASE() { mutex_.unlock(); }

 private:
  friend class Condition;
  std::mutex mutex_;
};

// Holds a mutex for as long as it lives, but for the time between unlock() and lock().
class TARNWICK_SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) TARNWICK_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~MutexLock() TARNWICK_RELEASE() {
    if (held_) mutex_.unlock();
  }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void unlock() TARNWICK_RELEASE() {
    held_ = false;
    mutex_.unlock();
  }
  void lock() TARNWICK_ACQUIRE() {
    mutex_.lock();
    held_ = true;
  }

 private:
  Mutex& mutex_;
  bool held_ = true;
};

class Condition {
 public:
  // Lets go of the mutex until somebody notifies, or for no reason: what was waited for is looked at anew.
  void wait(Mutex& mutex) TARNWICK_REQUIRES(mutex) {
    std::unique_lock lock(mutex.mutex_, std::adopt_lock);
    changed_.wait(lock);
    lock.release();  // it is the caller's
  }

  void notifyOne() { changed_.notify_one(); }
  void notifyAll() { changed_.notify_all(); }

 private:
  std::condition_variable changed_;
};

}  // namespace tarnwick
