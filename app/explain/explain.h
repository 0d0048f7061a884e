// From the facts about one process to one sentence saying what it does, by asking the on-device language
// model. No state is kept between calls. A model that is missing, not available or fails gives no sentence
// and no message.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/explain/language_model.h"
#include "diagnosis/report.h"
#include "records/finding.h"

namespace tarnwick {

// So much of the evidence the model is shown, in characters.
inline constexpr std::size_t promptCharacters = 3000;

// What the model is asked. The bytes may be any: they come from the command line.
std::string explainPrompt(std::string_view evidence);

// "It serves the local web app." or "It probably …". The first character turns to lower case when it is
// Latin (without the extended blocks), Greek or Cyrillic; any other stays.
std::string sentence(const Guess& guess);

// `model` is null on a system that has none; then the answer is absent at once. Otherwise waits for it.
std::optional<std::string> explain(std::string_view evidence, LanguageModel* model);

// Asks about the evidence of every finding that has some, one after another in the order of the findings.
// Evidence that comes twice is asked twice, and the last answer counts, an absent one too.
Guesses askAboutEvidence(const std::vector<Finding>& findings,
                         const std::function<std::optional<std::string>(const std::string&)>& explain);

}  // namespace tarnwick
