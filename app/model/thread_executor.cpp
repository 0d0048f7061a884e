#include "app/model/thread_executor.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "records/checked.h"

namespace tarnwick {

ThreadExecutor::ThreadExecutor(std::function<void()> wakeMain) : wakeMain_(std::move(wakeMain)) {
  const MutexLock lock(mutex_);
  addWorker();
}

ThreadExecutor::~ThreadExecutor() {
  if (!isMainThread()) fault("the executor is destroyed off the main thread");
  std::vector<std::thread> workers;
  {
    const MutexLock lock(mutex_);
    workers.swap(workers_);
  }
  close();
  for (std::thread& worker : workers) worker.join();
}

void ThreadExecutor::close() {
  std::deque<std::function<void()>> dropped;
  {
    const MutexLock lock(mutex_);
    closing_ = true;
    dropped.swap(tasks_);
  }
  changed_.notifyAll();
}

bool ThreadExecutor::endWithin(double seconds) {
  constexpr std::chrono::milliseconds pause{5};
  const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  close();
  for (;;) {
    {
      const MutexLock lock(mutex_);
      if (running_ == 0) return true;
    }
    if (std::chrono::steady_clock::now() >= limit) return false;
    std::this_thread::sleep_for(pause);
  }
}

void ThreadExecutor::background(std::function<void()> task) {
  {
    const MutexLock lock(mutex_);
    if (closing_) return;
    tasks_.push_back(std::move(task));
    if (tasks_.size() > idle_) addWorker();
  }
  changed_.notifyOne();
}

void ThreadExecutor::addWorker() {
  try {
    workers_.emplace_back([this] { work(); });
  } catch (const std::system_error&) {
    // No thread to be had on a machine in trouble: the task waits for a worker that is there.
    if (workers_.empty()) fault("no thread can be started");
  }
}

void ThreadExecutor::work() {
  MutexLock lock(mutex_);
  while (true) {
    ++idle_;
    while (!closing_ && tasks_.empty()) changed_.wait(mutex_);
    --idle_;
    if (closing_) return;
    std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    ++running_;
    lock.unlock();
    task();
    task = nullptr;  // what it holds goes before the lock is taken again
    lock.lock();
    --running_;
  }
}

void ThreadExecutor::main(std::function<void()> task) {
  {
    const MutexLock lock(mutex_);
    if (closing_) return;
    mainTasks_.push_back(std::move(task));
  }
  wakeMain_();
}

bool ThreadExecutor::isMainThread() const { return std::this_thread::get_id() == mainThread_; }

void ThreadExecutor::drainMain() {
  if (!isMainThread()) fault("main-thread tasks are run off the main thread");
  std::deque<std::function<void()>> ready;
  {
    const MutexLock lock(mutex_);
    ready.swap(mainTasks_);
  }
  for (const auto& task : ready) task();
}

}  // namespace tarnwick
