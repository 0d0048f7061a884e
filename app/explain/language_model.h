// The operating system's on-device language model, as this program asks it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// The model's structured answer.
struct Guess {
  std::string does;   // what the process does: a verb phrase in the present tense; UTF-8
  bool sure = false;  // the evidence clearly shows it
};

class LanguageModel {
 public:
  virtual ~LanguageModel() = default;

  // False for whatever reason: too old a system, not ready, switched off. Answers at once.
  virtual bool available() = 0;

  // Asks in a session of its own and waits for the answer; absent when the request fails.
  virtual std::optional<Guess> answer(const std::string& instructions, const std::string& prompt) = 0;
};

// The model of the system that this program runs on; null where there is none.
std::unique_ptr<LanguageModel> systemLanguageModel();

// Runs a mode that may ask the model, and gives its exit status. Where the model's framework may have work
// for the main thread, that serves the system's queue of it, the mode runs beside it, and the process ends
// with the mode's status. Main thread; what `mode` uses must not lie on its stack.
int besideMainQueue(const std::function<int()>& mode);

}  // namespace tarnwick
