#include "app/explain/explain.h"

#include <utf8cpp/utf8.h>

#include <array>
#include <iterator>

#include "records/one_line.h"
#include "records/text.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

constexpr const char* whatIsAsked =
    "You explain to a developer what a process on their Mac does. Use only the evidence.\n"
    "Do not mention sizes, ports, process IDs, ages, project names, or branch names.";

// Capital letters whose small letters lie at one fixed distance.
struct Capitals {
  char32_t first;
  char32_t last;
  char32_t toSmall;
};

constexpr std::array<Capitals, 7> capitals{{
    {U'A', U'Z', 0x20},
    {U'À', U'Ö', 0x20},
    {U'Ø', U'Þ', 0x20},
    {U'Α', U'Ρ', 0x20},  // Greek, up to the gap at U+03A2
    {U'Σ', U'Ϋ', 0x20},
    {U'Ѐ', U'Џ', 0x50},
    {U'А', U'Я', 0x20},  // Cyrillic
}};

char32_t lowered(char32_t character) {
  for (const Capitals& range : capitals) {
    if (character >= range.first && character <= range.last) return character + range.toSmall;
  }
  return character;
}

std::string withSmallFirst(std::string_view text) {
  if (text.empty()) return {};
  auto rest = text.begin();
  const char32_t first = utf8::next(rest, text.end());
  std::string result;
  utf8::append(lowered(first), std::back_inserter(result));
  return result.append(rest, text.end());
}

}  // namespace

std::string explainPrompt(std::string_view evidence) {
  return "Evidence:\n" + firstCharacters(repairUtf8(evidence), promptCharacters);
}

std::string sentence(const Guess& guess) {
  return std::string("It ") + (guess.sure ? "" : "probably ") +
         withSmallFirst(trimmed(oneLine(repairUtf8(guess.does)), " .")) + ".";
}

std::optional<std::string> explain(std::string_view evidence, LanguageModel* model) {
  if (model == nullptr || !model->available()) return std::nullopt;
  const std::optional<Guess> guess = model->answer(whatIsAsked, explainPrompt(evidence));
  if (!guess) return std::nullopt;
  return sentence(*guess);
}

Guesses askAboutEvidence(const std::vector<Finding>& findings,
                         const std::function<std::optional<std::string>(const std::string&)>& explain) {
  Guesses guesses;
  for (const Finding& finding : findings) {
    if (!finding.evidence) continue;
    if (std::optional<std::string> answer = explain(*finding.evidence)) {
      guesses[*finding.evidence] = std::move(*answer);
    } else {
      guesses.erase(*finding.evidence);
    }
  }
  return guesses;
}

}  // namespace tarnwick
