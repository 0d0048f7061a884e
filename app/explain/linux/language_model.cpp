#include "app/explain/language_model.h"

namespace tarnwick {

std::unique_ptr<LanguageModel> systemLanguageModel() { return nullptr; }

int besideMainQueue(const std::function<int()>& mode) { return mode(); }

}  // namespace tarnwick
