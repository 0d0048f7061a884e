#include "app/explain/explain.h"

#include "app/explain/explain_child.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "tests/support/testing.h"

namespace {

struct FakeModel : LanguageModel {
  bool available() override { return isAvailable; }
  std::optional<Guess> answer(const std::string& given, const std::string& question) override {
    instructions = given;
    prompt = question;
    return guess;
  }

  bool isAvailable = true;
  std::optional<Guess> guess = Guess{"Runs the build.", true};
  std::string instructions;
  std::string prompt;
};

TEST(Explain, SentencesAreMadeFromAnswersAndPromptsFromThreeThousandCharactersOfTheEvidence) {
  for (const auto& [does, expected] :
       {std::pair{"Serves the local web app", "It serves the local web app."},
        {". .Copies v1.2 to S3. Then ends...", "It copies v1.2 to S3. Then ends."},
        {"×ÖØÞ", "It ×ÖØÞ."},
        {"Ёлка", "It ёлка."},
        {"\xFFRuns", "It \uFFFDRuns."}})
    EXPECT_EQ(sentence({does, true}), expected);
  EXPECT_EQ(sentence({"Serves the local web app", false}), "It probably serves the local web app.");
  EXPECT_EQ(sentence({" ... ", false}), "It probably .");
  const std::string most(2999, 'a');
  EXPECT_EQ(explainPrompt(most + "😀b"), "Evidence:\n" + most + "😀");
  EXPECT_EQ(explainPrompt(most + "\xFF\xFF"), "Evidence:\n" + most + "\uFFFD");
}

TEST(Explain, AnAnswerNeedsAModelThatIsAvailableAndAnswers) {
  FakeModel model;
  model.isAvailable = false;
  EXPECT_EQ(explain("x", nullptr), std::nullopt);
  EXPECT_EQ(explain("x", &model), std::nullopt);
  EXPECT_EQ(model.prompt, "") << "a model that is not available is not asked";
  model.isAvailable = true;
  EXPECT_EQ(explain("node x.js", &model), "It runs the build.");
  EXPECT_EQ(model.prompt, "Evidence:\nnode x.js");
  EXPECT_EQ(model.instructions,
            "You explain to a developer what a process on their Mac does. Use only the evidence.\n"
            "Do not mention sizes, ports, process IDs, ages, project names, or branch names.");
  model.guess = std::nullopt;
  EXPECT_EQ(explain("x", &model), std::nullopt);
}

TEST(Explain, EveryEvidenceIsAskedAboutInOrderAndTheLastAnswerCounts) {
  std::vector<Finding> findings(6);
  for (const auto& [at, evidence] : {std::pair{0, "b"}, {2, "a"}, {3, "c"}, {4, "b"}, {5, "a"}})
    findings[static_cast<std::size_t>(at)].evidence = evidence;
  std::vector<std::string> asked;
  const Guesses guesses =
      askAboutEvidence(findings, [&](const std::string& evidence) -> std::optional<std::string> {
        asked.push_back(evidence);
        if (asked.size() == 3 || asked.size() == 4) return std::nullopt;
        return evidence + std::to_string(asked.size());
      });
  EXPECT_THAT(asked, ElementsAre("b", "a", "c", "b", "a"));
  EXPECT_THAT(guesses, ElementsAre(Pair("a", "a5")));
}

TEST(Explain, TheChildIsAskedForOneExplanation) {
  const TempFolder folder;
  PosixToolRunner tools;
  const std::string program = folder.script("me", "printf '%s|' \"$@\"; exit 1");
  EXPECT_EQ(explainByChild(tools, program, "two\nlines"), "--explain|two\nlines|");
  EXPECT_EQ(explainByChild(tools, folder.at("missing"), "x"), "");
}

}  // namespace
