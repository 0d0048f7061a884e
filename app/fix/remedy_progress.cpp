#include "app/fix/remedy_progress.h"

#include <utility>

namespace tarnwick {

void RemedyProgress::begin(std::vector<std::string> commands) {
  const MutexLock lock(mutex_);
  steps_.clear();
  for (std::string& command : commands) steps_.push_back({std::move(command)});
  at_ = 0;
}

bool RemedyProgress::next() {
  const MutexLock lock(mutex_);
  if (over_) return false;
  steps_.at(at_).state = State::begun;
  return true;
}

void RemedyProgress::ended(bool done) {
  const MutexLock lock(mutex_);
  steps_.at(at_++).state = done ? State::done : State::failed;
}

void RemedyProgress::told() {
  const MutexLock lock(mutex_);
  steps_.clear();
}

std::string RemedyProgress::those(std::string_view opening, State state) const {
  std::string text;
  for (const Step& step : steps_)
    if (step.state == state) text.append(text.empty() ? opening : "; ").append(step.command);
  return text.empty() ? text : text + ".";
}

std::string RemedyProgress::lastWords() {
  const MutexLock lock(mutex_);
  over_ = true;
  return those(" Done: ", State::done) + those(" Begun: ", State::begun) + those(" Failed: ", State::failed) +
         those(" Not done: ", State::waiting);
}

}  // namespace tarnwick
