// The one table of words, and what is made of it.

#include "app/cli/documents.h"

#include <regex>

#include "app/cli/help.h"
#include "app/demo/demo.h"
#include "tests/support/testing.h"

namespace {

// How often `part` stands in `text` with no letter, digit or dash right behind it.
int timesWhole(std::string_view text, std::string_view part) {
  int times = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
    const std::size_t end = at + part.size();
    if (end == text.size() || (std::isalnum(static_cast<unsigned char>(text[end])) == 0 && text[end] != '-'))
      ++times;
  }
  return times;
}

// The text without line breaks, and blanks that stand for them.
std::string onOneLine(const std::string& text) { return std::regex_replace(text, std::regex("\\s+"), " "); }

// The description as a manual page has it: hyphens marked.
std::string inManual(const Option& option) {
  std::string text = std::regex_replace(fullDescription(option), std::regex("-"), "\\-");
  text.front() = static_cast<char>(std::toupper(text.front()));
  return text;
}

TEST(Documents, SayEveryOptionOnceWithItsDescription) {
  const std::string manual = manualPage("2026-11-21");
  const std::string bash = bashCompletion();
  for (const Option& option : options()) {
    const std::string word(option.word);
    const std::string shortForm(option.shortForm);
    const std::string value = valueName(option);
    EXPECT_THAT(onOneLine(helpText()),
                HasSubstr(word + (value.empty() ? " " : " " + value + " ") + fullDescription(option)));
    EXPECT_THAT(onOneLine(manual), HasSubstr(" " + inManual(option) + ". ")) << word;
    const std::string bold = "\\fB" + std::regex_replace(word, std::regex("-"), "\\-") + "\\fR";
    EXPECT_EQ(timesWhole(manual, "\n" + bold) + timesWhole(manual, ", " + bold), 1) << word;
    EXPECT_GE(timesWhole(bash.substr(bash.rfind("compgen")), word), 1) << word;
    EXPECT_THAT(zshCompletion(),
                HasSubstr(shortForm.empty() ? "'" + word + "[" : "{" + shortForm + "," + word + "}"));
    EXPECT_EQ(timesWhole(fishCompletion(), " -l " + word.substr(2)), 1) << word;
    if (!shortForm.empty()) {
      EXPECT_THAT(manual, HasSubstr("\n\\fB\\" + shortForm + "\\fR, "));
      EXPECT_THAT(helpText(), HasSubstr("\n  " + shortForm + ", " + word));
      EXPECT_GE(timesWhole(bash, shortForm), 1);
      EXPECT_EQ(timesWhole(fishCompletion(), " -s " + shortForm.substr(1)), 1);
    }
  }
}

TEST(Documents, OfferTheValuesThatTheProgramTakesAndEscapeWhatAShellWouldRead) {
  const Self self{.home = "/home/ada"};
  for (const std::string_view name : optionOf("--scenario")->choices)
    EXPECT_TRUE(demoSnapshot(Timestamp{}, std::string(name), self)) << name;
  EXPECT_EQ(choicesOf(*optionOf("--scenario")), "memory, calm or developer");
  EXPECT_THAT(bashCompletion(), HasSubstr("--scenario) COMPREPLY=($(compgen -W 'memory calm developer' -- "));
  // The one description with an apostrophe ends no quotes.
  EXPECT_THAT(zshCompletion(), AllOf(HasSubstr(": memory, calm or developer]:name:(memory calm developer)'"),
                                     HasSubstr(": add the on-device language model'\\''s guesses ")));
  EXPECT_THAT(fishCompletion(), AllOf(HasSubstr(" -l scenario -x -a 'memory calm developer' "),
                                      HasSubstr(": add the on-device language model\\'s guesses ")));
}

TEST(Documents, KeepToTheirMargin) {
  std::istringstream lines(helpText() + manualPage("2026-11-21"));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
  EXPECT_THAT(helpText(),
              HasSubstr("\n      --exercise         with the application: open and close the panel on a\n"
                        "                         timed script\n"));
}

}  // namespace
