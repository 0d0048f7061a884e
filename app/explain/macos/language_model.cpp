// The system's language model speaks only Swift. Its side is a small library beside the program, built where
// the SDK has the framework and loaded when a guess is asked for, so that no other mode pays for it. Where
// the library is missing there is no model.
#include "app/explain/language_model.h"

#include <dispatch/dispatch.h>
#include <dlfcn.h>

#include <array>
#include <cstdlib>
#include <thread>

#include "records/utf8.h"

namespace tarnwick {
namespace {

// The two functions that language_model.swift exports. Both are safe to call on a system without the
// framework: then nothing is available.
using AvailableFunction = bool();
// On success the text is handed over and must be freed. Blocks until the model has answered.
using AnswerFunction = bool(const char* instructions, const char* prompt, char** does, bool* sure);

class SwiftLanguageModel : public LanguageModel {
 public:
  SwiftLanguageModel(AvailableFunction* available, AnswerFunction* answer)
      : available_(available), answer_(answer) {}

  bool available() override { return available_(); }

  std::optional<Guess> answer(const std::string& instructions, const std::string& prompt) override {
    char* does = nullptr;
    bool sure = false;
    const bool answered = answer_(instructions.c_str(), prompt.c_str(), &does, &sure);
    const std::unique_ptr<char, decltype(&std::free)> owned(does, &std::free);
    if (!answered || does == nullptr) return std::nullopt;
    return Guess{.does = repairUtf8(does), .sure = sure};
  }

 private:
  AvailableFunction* available_;
  AnswerFunction* answer_;
};

// Beside the program as it is built, in the application, and where it is installed. The library stays loaded.
void* modelLibrary() {
  constexpr std::array<const char*, 3> places{
      "@executable_path/libtarnwick_language_model.dylib",
      "@executable_path/../Frameworks/libtarnwick_language_model.dylib",
      "@executable_path/../lib/tarnwick/libtarnwick_language_model.dylib"};
  for (const char* place : places) {
    if (void* library = ::dlopen(place, RTLD_NOW | RTLD_LOCAL)) return library;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<LanguageModel> systemLanguageModel() {
  void* library = modelLibrary();
  if (library == nullptr) return nullptr;
  auto* available =
      reinterpret_cast<AvailableFunction*>(::dlsym(library, "tarnwick_language_model_available"));
  auto* answer = reinterpret_cast<AnswerFunction*>(::dlsym(library, "tarnwick_language_model_answer"));
  if (available == nullptr || answer == nullptr) return nullptr;
  return std::make_unique<SwiftLanguageModel>(available, answer);
}

int besideMainQueue(const std::function<int()>& mode) {
  std::thread([mode] { std::exit(mode()); }).detach();
  ::dispatch_main();
}

}  // namespace tarnwick
