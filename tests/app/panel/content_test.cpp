#include "tests/app/panel/panel_sample.h"

namespace tarnwick::panel {
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
std::vector<std::string> titlesOf(const Node& node) {
  std::vector<std::string> titles;
  for (const Button& button : nodesOf<Button>(node)) {
    if (!button.title.empty()) titles.push_back(button.title);
  }
  return titles;
}

// Symbol and text of every chip; one that warns has an exclamation mark.
std::string chipsOf(const Snapshot& snapshot) {
  std::string chips;
  for (const Box& box : nodesOf<Box>(built({.snap = snapshot})))
    chips += nodesOf<Symbol>(box.child[0])[0].name + " " + textsOf(box.child[0])[0] +
             (box.background == ColourRole::orange ? "! " : ". ");
  return chips;
}

TEST(PanelContent, SaysThatItChecksUntilThereIsASnapshot) {
  const Node node = built({.busy = true});
  EXPECT_THAT(textsOf(node), ElementsAre("Checking your Mac…", "Checking…"));
  EXPECT_THAT(nodesOf<Spinner>(node), SizeIs(1));
  EXPECT_THAT(nodesOf<Box>(node), IsEmpty());
}

TEST(PanelContent, ShowsTheVerdictWithItsCause) {
  const Node fine = built({.snap = sampleSnapshot()});
  EXPECT_EQ(nodesOf<Symbol>(fine)[0].name, "checkmark.circle.fill");
  const Node node = built({.snap = sampleSnapshot(), .found = {sampleFinding("docker", Bucket::always)}});
  EXPECT_EQ(nodesOf<Symbol>(node)[0].name, "exclamationmark.circle.fill");
  EXPECT_EQ(textsOf(node)[1], "The biggest cause: docker.");
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

TEST(PanelContent, TheNoteIsTintedInItsOwnColour) {
  const Node node = built({.note = Note{"Done. Freed 1.5 GB.", "hourglass", NoteColor::green, sampleTime}});
  const Box box = nodesOf<Box>(node).at(0);
  const Symbol symbol = nodesOf<Symbol>(box.child[0])[0];
  EXPECT_EQ(std::tuple(box.background, symbol.colour, symbol.name),
            std::tuple(ColourRole::green, ColourRole::green, "hourglass"));
  EXPECT_THAT(textsOf(box.child[0]), ElementsAre("Done. Freed 1.5 GB."));
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
}

TEST(PanelContent, OnlyAWindowCapsItsList) {
  const std::pair<PanelState, std::optional<double>> cases[] = {
      {{.hasStatusItem = false, .visibleScreenHeight = 800}, std::nullopt},
      {{.hasStatusItem = true, .visibleScreenHeight = 800}, 540},
      {{.hasStatusItem = true, .visibleScreenHeight = 200}, 0},
      {{.hasStatusItem = true, .visibleScreenHeight = std::nullopt}, 540}};
  for (const auto& [state, cap] : cases) {
    EXPECT_EQ(nodesOf<Scroll>(built(withFindings(1, 0), state)).at(0).heightCap, cap);
  }
}

TEST(PanelContent, TheCardOffersItsMainRemedy) {
  const Action one{"One", {DockerStop{"1"}}};
  const Action two{"Two", {DockerStop{"2"}}};
  const std::tuple<std::vector<Step>, std::vector<Action>, std::vector<std::string>> cases[] = {
      {{}, {}, {"Details"}},
      {{}, {one, two}, {"One", "Details"}},
      {{{"Read this.", std::nullopt}, {"Do.", two}}, {one}, {"Two", "Details"}}};
  for (const auto& [steps, actions, buttons] : cases) {
    Shown shown{.snap = sampleSnapshot(), .found = {sampleFinding("a", Bucket::now)}};
    shown.found[0].steps = steps;
    shown.found[0].actions = actions;
    EXPECT_EQ(titlesOf(built(shown)), buttons);
  }
  Shown shown{.snap = sampleSnapshot(), .found = {sampleFinding("a", Bucket::now)}};
  const Button stop = nodesOf<Button>(built(shown))[0];
  EXPECT_EQ(stop.toolTip, "kill -TERM 41");
  EXPECT_EQ(stop.action, (PanelAction{RunRemedy{shown.found[0].actions[0], shown.found[0]}}));
  EXPECT_TRUE(stop.enabled);
  shown.busy = true;
  EXPECT_FALSE(nodesOf<Button>(built(shown))[0].enabled);
  EXPECT_TRUE(nodesOf<Button>(built(shown))[1].enabled) << "details open at any time";
}

TEST(PanelContent, DetailsOfferEveryOtherRemedyOnce) {
  Shown shown{.snap = sampleSnapshot(), .found = {sampleFinding("a", Bucket::now)}};
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
  EXPECT_THAT(titlesOf(node), ElementsAre("Quit", "Less", "Stop c1", "Stop c2", "Stop c1"));
  EXPECT_EQ(nodesOf<Button>(node)[1].action, PanelAction{CloseDetails{}});
  const std::vector<std::string> texts = textsOf(node);
  EXPECT_THAT(std::vector(texts.begin() + 7, texts.end() - 1),
              ElementsAre("Detail of a.", "1.", "First.", "2.", "Second.", "3.", "Third.", "4.", "Fourth."));
  shown.openCard = "b";
  EXPECT_THAT(titlesOf(built(shown)), ElementsAre("Quit", "Details"));
}

TEST(PanelContent, AGuessStandsBeforeTheDetailOfItsEvidence) {
  Shown shown{.snap = sampleSnapshot(), .found = {sampleFinding("a", Bucket::now)}, .openCard = "a"};
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
  const std::tuple<double, bool, const char*> cases[] = {{-3, false, "Updated just now"},
                                                         {9.9, false, "Updated just now"},
                                                         {10, false, "Updated 10 seconds ago"},
                                                         {7200, false, "Updated 2 hours ago"},
                                                         {7200, true, "Checking…"}};
  for (const auto& [age, busy, text] : cases) {
    const Node node = built({.snap = sampleSnapshot(), .busy = busy}, {}, age);
    EXPECT_EQ(textsOf(node).back(), text) << age;
  }
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
}  // namespace tarnwick::panel
