// How far a remedy has come, so that a program that is told to end in the middle can still say what it has
// done. The steps are taken on one thread, the last words are asked for on another.
#pragma once

#include <string>
#include <vector>

#include "system/mutex.h"

namespace tarnwick {

class RemedyProgress {
 public:
  // A remedy is about to do these, in this order.
  void begin(std::vector<std::string> commands) TARNWICK_EXCLUDES(mutex_);

  // May the next one be done? Not after the last words.
  bool next() TARNWICK_EXCLUDES(mutex_);

  // It was done, or it was not.
  void ended(bool done) TARNWICK_EXCLUDES(mutex_);

  // The user has been told how it went.
  void told() TARNWICK_EXCLUDES(mutex_);

  // What the user does not know yet, as a sentence or more; empty when there is nothing. From now on nothing
  // more is done.
  std::string lastWords() TARNWICK_EXCLUDES(mutex_);

 private:
  enum class State { waiting, begun, done, failed };
  struct Step {
    std::string command;
    State state = State::waiting;
  };

  std::string those(std::string_view opening, State state) const TARNWICK_REQUIRES(mutex_);

  Mutex mutex_;
  std::vector<Step> steps_ TARNWICK_GUARDED_BY(mutex_);
  std::size_t at_ TARNWICK_GUARDED_BY(mutex_) = 0;  // the step that comes next, or is being done
  bool over_ TARNWICK_GUARDED_BY(mutex_) = false;
};

}  // namespace tarnwick
