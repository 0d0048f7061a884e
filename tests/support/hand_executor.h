// An executor that runs nothing by itself: the test lets the background and the main thread take turns.
#pragma once

#include <deque>

#include "app/model/executor.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct HandExecutor : Executor {
  void background(std::function<void()> task) override { backgroundTasks.push_back(std::move(task)); }
  void main(std::function<void()> task) override { mainTasks.push_back(std::move(task)); }
  bool isMainThread() const override { return onMain_; }

  // Runs the oldest background task; while it runs, this is not the main thread.
  void runBackground() {
    onMain_ = false;
    runFirst(backgroundTasks);
    onMain_ = true;
  }

  void runMain() { runFirst(mainTasks); }

  // Both, until nothing is left.
  void runAll() {
    while (!backgroundTasks.empty() || !mainTasks.empty()) {
      if (!backgroundTasks.empty()) runBackground();
      while (!mainTasks.empty()) runMain();
    }
  }

  std::deque<std::function<void()>> backgroundTasks;
  std::deque<std::function<void()>> mainTasks;

 private:
  static void runFirst(std::deque<std::function<void()>>& tasks) {
    const std::function<void()> task = std::move(tasks.at(0));
    tasks.pop_front();
    task();
  }

  bool onMain_ = true;
};

}  // namespace tarnwick
