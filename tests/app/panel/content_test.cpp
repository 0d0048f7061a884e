#include "tests/app/panel/panel_sample.h"

namespace {

Node built(const Shown& shown, const PanelState& state = {}, double age = 0) {
  return content(shown.view(), state, sampleTime + Seconds{age});
}

Shown withFindings(int main, int leftovers) {
  Shown shown{.snap = sampleSnapshot()};
  for (int i = 1; i <= main; ++i)
    shown.found.push_back(sampleFinding("m" + std::to_string(i), i % 2 == 0 ? Bucket::now : Bucket::always));
  for (int i = 1; i <= leftovers; ++i)
    shown.found.insert(shown.found.begin(), sampleFinding("l" + std::to_string(i), Bucket::leftovers));
  return shown;
}

// The titles of all buttons that have one, in reading order.
std::string titlesOf(const Node& node) {
  std::string titles;
  for (const Button& button : nodesOf<Button>(node))
    if (!button.title.empty()) titles += button.title + ". ";
  return titles;
}

// A panel with one card.
Shown withCard() { return {.snap = sampleSnapshot(), .found = {sampleFinding("a", Bucket::now)}}; }

// Symbol and text of every chip; one that warns has an exclamation mark.
std::string chipsOf(const Snapshot& snapshot) {
  std::string chips;
  for (const Box& box : nodesOf<Box>(built({.snap = snapshot})))
    chips += nodesOf<Symbol>(box.child[0])[0].name + " " + textsOf(box.child[0])[0] +
             (box.background == ColourRole::orange ? "! " : ". ");
  return chips;
}

TEST(PanelContent, SaysThatItChecksUntilThereIsASnapshotAndDoesNotJudgeAMachineThatWasNotSeen) {
  const Node checking = built({.busy = true});
  EXPECT_THAT(textsOf(checking), ElementsAre("Checking your Mac…", "Checking…"));
  EXPECT_THAT(nodesOf<Spinner>(checking), SizeIs(1));
  EXPECT_THAT(nodesOf<Box>(checking), IsEmpty());
  const char* why = "Its processes or its memory cannot be read.";
  const Node unseen = built({.note = Note{why, "triangle", NoteColor::orange, sampleTime}});
  EXPECT_THAT(textsOf(unseen), ElementsAre("This machine cannot be seen.", why, ""));
  EXPECT_THAT(nodesOf<Spinner>(unseen), IsEmpty());
}

TEST(PanelContent, ShowsTheVerdictWithItsCause) {
  EXPECT_EQ(nodesOf<Symbol>(built({.snap = sampleSnapshot()}))[0].name, "checkmark.circle.fill");
  EXPECT_EQ(nodesOf<Symbol>(built(withCard()))[0].name, "exclamationmark.circle.fill");
  EXPECT_EQ(textsOf(built(withCard()))[1], "The biggest cause: a.");
}

TEST(PanelContent, ChipsWarnFromTheirLimitsOn) {
  const std::tuple<std::int32_t, double, std::int64_t, const char*> cases[] = {
      {1, 0.125, 20 * gib, "memorychip Memory OK. cpu Processor 13%. internaldrive 20.0 GB free. "},
      {2, 0.8, 20 * gib - 1, "memorychip Memory tight! cpu Processor 80%. internaldrive 20.0 GB free! "},
      {3, 0.8001, 140 * gib, "memorychip Memory tight! cpu Processor 80%! internaldrive 140 GB free. "},
      {4, 1, -5, "memorychip Memory full! cpu Processor 100%! internaldrive 0 MB free! "},
      {-1, 0, 140 * gib, "memorychip Memory OK. cpu Processor 0%. internaldrive 140 GB free. "},
  };
  for (const auto& [pressure, busy, free, chips] : cases) {
    Snapshot snapshot = sampleSnapshot();
    snapshot.pressure = pressure;
    snapshot.cpuBusy = busy;
    snapshot.diskFree = free;
    EXPECT_EQ(chipsOf(snapshot), chips) << pressure;
  }
}

TEST(PanelContent, ChipsNameTheThreeBiggestOfTheirKind) {
  Shown shown{.snap = sampleSnapshot()};
  const auto tips = [&] {
    std::string all;
    for (const Stack& stack : nodesOf<Stack>(content(shown.view(), {}, sampleTime)))
      if (!stack.toolTip.empty()) all += stack.toolTip + "\n";
    return all;
  };
  EXPECT_EQ(tips(), "") << "nobody is known";
  shown.users.rows = {{.what = "Chrome", .bytes = 2048 * mib, .cpu = 0.5},
                      {.what = "sh × 64", .cpu = 8},
                      {.what = "node", .bytes = 100 * mib},
                      {.what = "Slack", .bytes = 900 * mib},
                      {.what = "make", .bytes = 200 * mib, .cpu = 1}};
  EXPECT_EQ(tips(),
            "Most of it: Chrome 2.0 GB, Slack 900 MB, make 200 MB\n"
            "Most of it: sh × 64 80% CPU, make 10% CPU, Chrome 5% CPU\n");
}

TEST(PanelContent, TheNoteIsTintedInItsOwnColour) {
  const Node node = built({.note = Note{"Done. Freed 1.5 GB.", "hourglass", NoteColor::green, sampleTime}});
  const Box box = nodesOf<Box>(node).at(0);
  const Symbol symbol = nodesOf<Symbol>(box.child[0])[0];
  EXPECT_EQ(std::tuple(box.background, symbol.colour, symbol.name),
            std::tuple(ColourRole::green, ColourRole::green, "hourglass"));
  EXPECT_THAT(textsOf(box.child[0]), ElementsAre("Done. Freed 1.5 GB."));
  EXPECT_EQ(nodesOf<Label>(box.child[0])[0].wrapWidth, 356);
  EXPECT_EQ(box.widest, 8 + 15 + 7 + 356 + 8);
}

TEST(PanelContent, AnEmptyListStillScrolls) {
  for (const Shown& shown : {Shown{}, Shown{.snap = sampleSnapshot()}})
    EXPECT_THAT(nodesOf<Scroll>(built(shown)), SizeIs(1));
}

TEST(PanelContent, FoldsBeginWhereTheyHaveSomethingToHide) {
  const std::tuple<int, int, PanelState, std::string> cases[] = {
      {3, 0, {}, "m1 m2 m3 "},
      {4, 0, {}, "More causes, 1; m1 m2 m3 "},
      {5, 0, {.showMore = true}, "More causes, 2; m1 m2 m3 m4 m5 "},
      {0, 1, {}, "Left running, 1 · 512 MB; "},
      {0, 2, {.showLeftovers = true}, "Left running, 2 · 1.0 GB; l2 l1 "},
      {4, 1, {.showLeftovers = true}, "More causes, 1; Left running, 1 · 512 MB; m1 m2 m3 l1 "},
  };
  for (const auto& [main, leftovers, state, foldsAndCards] : cases) {
    const Node node = built(withFindings(main, leftovers), state);
    std::string shown;
    for (const Fold& fold : nodesOf<Fold>(node)) {
      shown += fold.accessibleName + "; ";
      EXPECT_EQ(nodesOf<Symbol>(fold.row[0])[0].name, fold.open ? "chevron.down" : "chevron.right");
    }
    for (const Label& label : nodesOf<Label>(node))
      if (label.font == FontRole::cardTitle) shown += label.text.substr(9) + " ";
    EXPECT_EQ(shown, foldsAndCards);
  }
  Shown absurd = withFindings(0, 2);
  for (Finding& finding : absurd.found) finding.bytes = ~0ULL;
  EXPECT_EQ(nodesOf<Fold>(built(absurd))[0].accessibleName, "Left running, 2 · 17179869184 GB");
}

TEST(PanelContent, OnlyAWindowCapsItsList) {
  const auto cap = [](bool hasStatusItem, std::optional<double> height) {
    const PanelState state{.hasStatusItem = hasStatusItem, .visibleScreenHeight = height};
    return nodesOf<Scroll>(built(withFindings(1, 0), state)).at(0).heightCap;
  };
  EXPECT_EQ(cap(false, 800), std::nullopt);
  EXPECT_EQ(cap(true, 800), 540);
  EXPECT_EQ(cap(true, 200), 0);
  EXPECT_EQ(cap(true, std::nullopt), 540);
}

TEST(PanelContent, TheCardOffersItsMainRemedy) {
  const Action one{"One", {DockerStop{"1"}}};
  const Action two{"Two", {DockerStop{"2"}}};
  Shown shown = withCard();
  const Button stop = nodesOf<Button>(built(shown))[0];
  EXPECT_EQ(stop.toolTip, "kill -TERM 41");
  EXPECT_EQ(stop.action, (PanelAction{RunRemedy{shown.found[0].actions[0], shown.found[0]}}));
  EXPECT_TRUE(stop.enabled);
  shown.busy = true;
  EXPECT_FALSE(nodesOf<Button>(built(shown))[0].enabled);
  EXPECT_TRUE(nodesOf<Button>(built(shown))[1].enabled) << "details open at any time";
  shown.found[0].actions = {one, two};
  EXPECT_EQ(titlesOf(built(shown)), "One. Details. ");
  shown.found[0].steps = {{"Read this.", std::nullopt}, {"Do.", two}};
  EXPECT_EQ(titlesOf(built(shown)), "Two. Details. ");
  shown.found[0].steps.clear();
  shown.found[0].actions.clear();
  EXPECT_EQ(titlesOf(built(shown)), "Details. ");
}

TEST(PanelContent, DetailsOfferEveryOtherRemedyOnce) {
  Shown shown = withCard();
  Finding& finding = shown.found[0];
  finding.steps = {{"First.", Action{"Quit", {QuitApp{"x"}}}},
                   {"Second.", Action{"Another word for quit", {QuitApp{"x"}}}},
                   {"Third.", std::nullopt},
                   {"Fourth.", Action{"Stop c1", {DockerStop{"c1"}}}}};
  finding.actions = {
      {"Quit", {QuitApp{"x"}}}, {"Stop c2", {DockerStop{"c2"}}}, {"Stop c1", {DockerStop{"c1"}}}};
  EXPECT_THAT(textsOf(built(shown)), Not(Contains("Detail of a.")));
  EXPECT_EQ(nodesOf<Button>(built(shown))[1].action, PanelAction{OpenDetails{finding}});

  shown.openCard = "a";
  const Node node = built(shown);
  EXPECT_EQ(titlesOf(node), "Quit. Less. Stop c1. Stop c2. Stop c1. ");
  EXPECT_EQ(nodesOf<Button>(node)[1].action, PanelAction{CloseDetails{}});
  const std::vector<std::string> texts = textsOf(node);
  EXPECT_THAT(std::vector(texts.begin() + 7, texts.end() - 1),
              ElementsAre("Detail of a.", "1.", "First.", "2.", "Second.", "3.", "Third.", "4.", "Fourth."));
  finding.detail = "\x1B[2J\u202Ex";
  EXPECT_THAT(textsOf(built(shown)), Contains("␛[2J<U+202E>x")) << "it can be copied";
  shown.openCard = "b";
  EXPECT_EQ(titlesOf(built(shown)), "Quit. Details. ");
}

TEST(PanelContent, AGuessStandsBeforeTheDetailOfItsEvidence) {
  Shown shown = withCard();
  shown.openCard = "a";
  shown.found[0].evidence = "node server.mjs";
  shown.guesses = {{"node server.mjs --other", "Something else."}};
  EXPECT_THAT(textsOf(built(shown)), Not(Contains("Something else.")));

  shown.guesses["node server.mjs"] = "A web server.";
  const Node node = built(shown);
  EXPECT_THAT(textsOf(node), Contains("A web server."));
  EXPECT_THAT(textsOf(node), Not(Contains("node server.mjs"))) << "evidence is for the model, not the panel";
  const char* hint = "A guess by the on-device AI model, from the facts below. It can be wrong.";
  EXPECT_EQ(std::ranges::count(nodesOf<Stack>(node), hint, &Stack::toolTip), 1);
}

TEST(PanelContent, TheFooterTellsTheAgeOfTheCheck) {
  const auto footer = [](double age, bool busy = false) {
    return textsOf(built({.snap = sampleSnapshot(), .busy = busy}, {}, age)).back();
  };
  for (const double now : {-3.0, 9.9}) EXPECT_EQ(footer(now), "Updated just now") << now;
  EXPECT_EQ(footer(10), "Updated 10 seconds ago");
  EXPECT_EQ(footer(7200), "Updated 2 hours ago");
  EXPECT_EQ(footer(7200, true), "Checking…");
}

TEST(PanelContent, EveryControlHasANameAndAnIdOfItsOwn) {
  const Node node = built({.snap = sampleSnapshot(), .found = sampleFindings(), .openCard = "docker"},
                          {.showMore = true, .showLeftovers = true});
  std::set<std::string> ids;
  for (const Button& button : nodesOf<Button>(node)) {
    EXPECT_FALSE(button.accessibleName.empty()) << button.id;
    EXPECT_TRUE(ids.insert(button.id).second) << button.id;
  }
  EXPECT_THAT(ids, SizeIs(testing::Gt(10U)));
}

}  // namespace
