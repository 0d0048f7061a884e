// What a remedy from the terminal is offered and asked as, and what is said of one that was cut short.
#include "app/fix/offers.h"
#include "app/fix/remedy_progress.h"
#include "tests/support/testing.h"

namespace {

const Fix stopAll{All{{{Signal{41, 15, {}}}, {DockerStop{"c1"}}}}};

TEST(Offers, BearNumbersInTheOrderOfTheReport) {
  const std::vector<Finding> found{{.title = "A",
                                    .actions = {{"Stop all 2", stopAll}},
                                    .steps = {{"Look."}, {"Quit.", Action{"Quit", {QuitApp{"a"}}}}},
                                    .subject = "shop"},
                                   {.title = "B",
                                    .actions = {{"Open", {OpenSettings{"s"}}},
                                                {"Ask", {AskAutomation{"b"}}},
                                                {"Page", {OpenTab{"b", "p"}}},
                                                {"Close", {CloseDuplicateTabs{"b"}}}},
                                    .subject = "it"}};
  const std::pair<Desktop, std::string> cases[] = {
      {Desktop::there,
       "Quit (shop): Cmd-Q a|Stop all 2 of shop: kill -TERM 41; docker stop c1|Open (it): open x-apple.systempreferences:s|Ask (it): ask macOS to let Tarnwick read the tab addresses of b|Page (it): open p in b|Close (it): close the duplicate tabs in b, keep the first copy|"},
      {Desktop::absent,
       "Quit (shop): Cmd-Q a|Stop all 2 of shop: kill -TERM 41; docker stop c1|Close (it): close the duplicate tabs in b, keep the first copy|"}};
  for (const auto& [desktop, expected] : cases) {
    const NumberedReport report = numbered(reportLines({}, found, {}), desktop);
    std::string offers;
    for (const Offer& offer : report.offers) offers += described(offer) + "|";
    EXPECT_EQ(offers, expected);
    const std::string text = laidOut(report.lines, {});
    EXPECT_THAT(
        text,
        HasSubstr(
            "    1. Look.\n    2. Quit.  (1) [Quit]  Cmd-Q a\n    (2) [Stop all 2]  kill -TERM 41; docker stop c1\n"));
    EXPECT_THAT(text, HasSubstr(desktop == Desktop::there ? "    (3) [Open]  open" : "    [Open]  open"));
  }
}

TEST(Offers, AreNamedByAWholeNumber) {
  EXPECT_EQ(numberOf("12") + numberOf("01"), 13U);
  for (const char* none : {"", "0", "-1", "+1", "1 2", "1x", "x1", "99999999999999999999"})
    EXPECT_EQ(numberOf(none), 0U) << none;
}

TEST(RemedyProgress, SaysWhatTheUserDoesNotKnowYetAndThenDoesNoMore) {
  RemedyProgress progress;
  EXPECT_EQ(progress.lastWords(), "");
  const std::pair<int, std::string> cases[] = {{0, " Not done: a; b; c."},
                                               {1, " Begun: a. Not done: b; c."},
                                               {2, " Done: a. Not done: b; c."},
                                               {3, " Done: a. Begun: b. Not done: c."},
                                               {4, " Done: a. Failed: b. Not done: c."},
                                               {6, " Done: a; c. Failed: b."},
                                               {7, ""}};
  for (const auto& [moments, words] : cases) {
    RemedyProgress remedy;
    remedy.begin({"a", "b", "c"});
    for (int moment = 0; moment < moments; ++moment) {
      if (moment == 6) {
        remedy.told();
      } else if (moment % 2 == 0) {
        EXPECT_TRUE(remedy.next());
      } else {
        remedy.ended(moment != 3);
      }
    }
    EXPECT_EQ(remedy.lastWords(), words) << moments;
    remedy.begin({"d"});
    EXPECT_FALSE(remedy.next());
  }
}

}  // namespace
