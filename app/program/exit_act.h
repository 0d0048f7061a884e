// What is done when the program ends by exit() while this object lives, as a toolkit ends it whose display is
// gone: nothing on the stack is taken apart then. One at a time; main thread.
#pragma once

#include <functional>
#include <utility>

namespace tarnwick {

class ExitAct {
 public:
  explicit ExitAct(std::function<void()> act) { last().act = std::move(act); }
  ~ExitAct() { last().act = nullptr; }
  ExitAct(const ExitAct&) = delete;
  ExitAct& operator=(const ExitAct&) = delete;

 private:
  struct Last {
    std::function<void()> act;
    ~Last() {
      if (act) act();
    }
  };
  static Last& last() {
    static Last one;
    return one;
  }
};

}  // namespace tarnwick
