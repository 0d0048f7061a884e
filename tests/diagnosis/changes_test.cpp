#include "diagnosis/changes.h"

#include "tests/support/testing.h"

namespace {

const Action stop{"Stop it", {Signal{.pid = 41, .number = 15, .started = timestamp(1)}}};

// "shop 0.3": a cause and its share of the machine; commas part several.
std::vector<Finding> causes(const std::string& text) {
  std::vector<Finding> all;
  std::istringstream words(text);
  for (std::string id, share; words >> id >> share;)
    all.push_back({.id = id,
                   .title = "Title of " + id,
                   .actions = {stop},
                   .metric = share,
                   .impact = std::stod(share)});
  return all;
}

Result result(const std::string& headline, const std::string& text) {
  return {.verdict = {.headline = headline, .cause = "The biggest cause: a."}, .findings = causes(text)};
}

// One line a change: sign, text, command.
std::string told(const std::vector<Change>& all) {
  std::string lines;
  for (const Change& change : all) {
    lines += "!+^-"[static_cast<std::size_t>(change.kind)];
    lines.append(change.text).append(change.remedy ? " " + change.remedy->id() : "").append("\n");
  }
  return lines;
}

TEST(Changes, AreAnotherHeadlineAndCausesThatComeGoOrGrowByATenth) {
  const std::string came = "+Title of a (0.3) kill -TERM 41\n";
  const std::tuple<const char*, std::optional<Result>, Result, std::string> cases[] = {
      {"the first check", {}, result("Fine.", "a 0.3"), "!Fine. The biggest cause: a.\n" + came},
      {"nothing", result("Fine.", "a 0.3"), result("Fine.", "a 0.3"), ""},
      {"nothing there at all", result("Fine.", ""), result("Fine.", ""), ""},
      {"another order", result("Fine.", "a 0.3 b 0.3"), result("Fine.", "b 0.3 a 0.3"), ""},
      {"headline", result("Fine.", ""), result("Slow.", ""), "!Slow. The biggest cause: a.\n"},
      {"came", result("Fine.", ""), result("Fine.", "a 0.3"), came},
      {"went", result("Fine.", "a 0.3"), result("Fine.", ""), "-Title of a\n"},
      {"grew by exactly a tenth", result("Fine.", "a 0.2"), result("Fine.", "a 0.3"), "^" + came.substr(1)},
      {"grew by less", result("Fine.", "a 0.201"), result("Fine.", "a 0.3"), ""},
      {"shrank", result("Fine.", "a 0.9"), result("Fine.", "a 0.1"), ""},
      {"one for another", result("Fine.", "b 0.3"), result("Slow.", "a 0.3"),
       "!Slow. The biggest cause: a.\n" + came + "-Title of b\n"}};
  for (const auto& [what, before, after, expected] : cases)
    EXPECT_EQ(told(changes(before, after)), expected) << what;

  Result other = result("Fine.", "");
  other.verdict.cause = "The biggest cause: b.";
  EXPECT_EQ(told(changes(result("Fine.", ""), other)), "") << "which cause is the biggest is no verdict";

  other.findings = causes("a 0.3");
  other.findings[0].actions.clear();
  EXPECT_EQ(told(changes(result("Fine.", ""), other)), "+Title of a (0.3)\n");
  other.findings[0].steps = {{"Look.", std::nullopt}, {"Stop.", stop}};
  EXPECT_EQ(told(changes(result("Fine.", ""), other)), came)
      << "the remedy of a step where a card has no other";
}

// Slow growth adds up to a line; what goes up and down is told once.
TEST(Changes, CountFromTheSizeThatWasLastTold) {
  std::optional<Result> before;
  std::string lines;
  for (const char* share : {"0.30", "0.36", "0.39", "0.40", "0.45", "0.10", "0.45", "0.50", "0.60"}) {
    const Result after = result("Fine.", std::string("a ") + share);
    for (const Change& change : changes(before, after))
      if (change.kind != Change::Kind::verdict) lines.append(change.text).append("\n");
    before = asLastTold(before, after);
  }
  EXPECT_EQ(lines, "Title of a (0.30)\nTitle of a (0.40)\nTitle of a (0.50)\nTitle of a (0.60)\n");
}

}  // namespace
