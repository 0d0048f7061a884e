// Where work runs: on the main thread, which owns the model and the panel, or beside it. Tests hand in an
// executor that they drive by hand.
#pragma once

#include <functional>

namespace tarnwick {

class Executor {
 public:
  virtual ~Executor() = default;

  // Runs the task on some other thread, soon. Never blocks; several tasks may run side by side. Any thread.
  virtual void background(std::function<void()> task) = 0;

  // Runs the task on the main thread in a later turn of its loop, in the order handed in. Any thread.
  virtual void main(std::function<void()> task) = 0;

  virtual bool isMainThread() const = 0;
};

}  // namespace tarnwick
