// Runs background tasks on threads of its own and hands main-thread tasks to whoever runs the main loop.
// Made and destroyed on the main thread, which is the thread that makes it.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "app/model/executor.h"

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

  // A task never waits for another one: there are as many threads as tasks ever ran at the same time, unless
  // the machine refuses one.
  void background(std::function<void()> task) override;
  void main(std::function<void()> task) override;
  bool isMainThread() const override;

  // Runs the tasks that wait for the main thread; those that they hand in wait for the next call.
  void drainMain();

 private:
  void addWorker();
  void work();

  const std::thread::id mainThread_ = std::this_thread::get_id();
  const std::function<void()> wakeMain_;
  std::mutex mutex_;  // guards what follows, but for the threads themselves
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::deque<std::function<void()>> mainTasks_;
  std::size_t idle_ = 0;  // workers that wait for a task
  bool closing_ = false;
  std::vector<std::thread> workers_;  // only grows until the end
};

}  // namespace tarnwick
