// Runs everything on the thread that calls, one task after the other: for modes without a window, where
// nothing else has to go on meanwhile.
#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "app/model/executor.h"

namespace tarnwick {

class SameThreadExecutor final : public Executor {
 public:
  void background(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
  void main(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
  bool isMainThread() const override { return true; }

  // Runs what was handed in, and what that hands in.
  void run() {
    while (!tasks_.empty()) {
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
  }

 private:
  std::deque<std::function<void()>> tasks_;
};

}  // namespace tarnwick
