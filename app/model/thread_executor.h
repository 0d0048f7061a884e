// Runs background tasks on threads of its own and hands main-thread tasks to whoever runs the main loop.
// Made and destroyed on the main thread, which is the thread that makes it.
#pragma once

#include <deque>
#include <functional>
#include <thread>
#include <vector>

#include "app/model/executor.h"
#include "system/mutex.h"

namespace tarnwick {

class ThreadExecutor : public Executor {
 public:
  // `wakeMain` is called from any thread whenever a task waits for the main thread. It must make the main
  // loop call `drainMain` soon, and must not block.
  explicit ThreadExecutor(std::function<void()> wakeMain);

  // Drops the tasks that have not begun and waits for those that run.
  ~ThreadExecutor() override;
  ThreadExecutor(const ThreadExecutor&) = delete;
  ThreadExecutor& operator=(const ThreadExecutor&) = delete;

  // The end has come: takes no more tasks, and waits for those that run, but for no longer than so many
  // seconds. False when one still runs: then nothing may be destroyed that it uses, this executor included.
  // Main thread.
  bool endWithin(double seconds);

  // A task never waits for another one: there are as many threads as tasks ever ran at the same time, unless
  // the machine refuses one.
  void background(std::function<void()> task) override;
  void main(std::function<void()> task) override;
  bool isMainThread() const override;

  // Runs the tasks that wait for the main thread; those that they hand in wait for the next call.
  void drainMain();

 private:
  void close() TARNWICK_EXCLUDES(mutex_);
  void addWorker() TARNWICK_REQUIRES(mutex_);
  void work() TARNWICK_EXCLUDES(mutex_);

  const std::thread::id mainThread_ = std::this_thread::get_id();
  const std::function<void()> wakeMain_;
  Mutex mutex_;
  Condition changed_;
  std::deque<std::function<void()>> tasks_ TARNWICK_GUARDED_BY(mutex_);
  std::deque<std::function<void()>> mainTasks_ TARNWICK_GUARDED_BY(mutex_);
  std::size_t idle_ TARNWICK_GUARDED_BY(mutex_) = 0;     // workers that wait for a task
  std::size_t running_ TARNWICK_GUARDED_BY(mutex_) = 0;  // tasks
  bool closing_ TARNWICK_GUARDED_BY(mutex_) = false;
  std::vector<std::thread> workers_ TARNWICK_GUARDED_BY(mutex_);  // only grows until the end
};

}  // namespace tarnwick
