#include "tests/app/panel/panel_sample.h"
#include "tests/support/fake_model_services.h"
#include "tests/support/hand_executor.h"

namespace {

struct FakeWindow : PanelWindow {
  bool isVisible() const override { return visible; }
  void open() override { visible = true; }
  void close() override { visible = false; }
  void show(const Node& content, bool animated) override {
    shown.push_back(content);
    moved.push_back(animated);
  }
  void setText(const std::string& id, const std::string& text) override { texts.push_back(id + ": " + text); }
  void callAfter(double seconds, std::function<void()> task) override {
    wait = seconds, later = std::move(task);
  }
  void openMenu(const std::vector<MenuItem>& items) override { menuItems = items; }
  std::optional<double> visibleScreenHeight() const override { return 900; }
  void quit() override { hasQuit = true; }

  bool visible = false;
  bool hasQuit = false;
  double wait = 0;              // of the last call
  std::function<void()> later;  // what waits
  std::vector<std::string> texts;
  std::vector<Node> shown;
  std::vector<bool> moved;
  std::vector<MenuItem> menuItems;
};

struct PanelControllerTest : testing::Test {
  void openWithFindings() {
    services.next = {sampleSnapshot(), sampleFindings()};
    services.answer = "A guess.";
    controller.toggle();
    executor.runAll();
    services.calls.clear();
    window.shown.clear();
    window.moved.clear();
  }
  void perform(const PanelAction& action) {
    controller.perform(action);
    executor.runAll();
  }

  HandExecutor executor;
  FakeServices services{executor};
  Model model{executor, services, services.pasteboard()};
  FakeWindow window;
  FakeSettings settings;
  PanelController controller{model, executor, window, settings, [this] { return services.time; }};
};

TEST_F(PanelControllerTest, OpeningChecksUnlessTheLastCheckIsFresh) {
  services.next.snapshot = sampleSnapshot();
  controller.toggle();
  EXPECT_TRUE(window.visible);
  EXPECT_TRUE(model.busy());
  EXPECT_THAT(window.shown, SizeIs(1));
  executor.runAll();
  EXPECT_THAT(services.calls, Contains("check"));
  for (const auto& [age, checks] : {std::pair{9.9, false}, {10.0, true}}) {
    controller.toggle();
    EXPECT_FALSE(window.visible);
    services.calls.clear();
    services.time = sampleTime + Seconds{age};
    controller.toggle();
    executor.runAll();
    EXPECT_EQ(!services.calls.empty(), checks) << age;
  }
}

TEST_F(PanelControllerTest, TheAgeOfTheCheckGrowsWhileThePanelIsOpen) {
  openWithFindings();
  const std::tuple<double, const char*, double> turns[] = {{9.99, "age: Updated just now", 0.05},
                                                           {10, "age: Updated 10 seconds ago", 1},
                                                           {58.5, "age: Updated 58 seconds ago", 0.5},
                                                           {60, "age: Updated 1 minute ago", 60},
                                                           {7'230, "age: Updated 2 hours ago", 30}};
  EXPECT_EQ(window.wait, 10);
  for (const auto& [seconds, text, wait] : turns) {
    services.time = sampleTime + Seconds{seconds};
    std::exchange(window.later, {})();
    EXPECT_EQ(window.texts.back(), text);
    EXPECT_NEAR(window.wait, wait, 1e-6) << text;
  }
  EXPECT_THAT(window.shown, IsEmpty()) << "what is marked stays marked";
  controller.toggle();
  std::exchange(window.later, {})();
  EXPECT_THAT(window.texts, SizeIs(5));
  EXPECT_FALSE(window.later) << "a closed panel costs nothing";
}

TEST_F(PanelControllerTest, ANoteIsAnnouncedOnce) {
  openWithFindings();
  const auto announced = [&] {
    std::vector<std::string> names;
    for (const Box& box : nodesOf<Box>(window.shown.back()))
      if (box.spoken.announced) names.push_back(box.spoken.name);
    return names;
  };
  perform(RunRemedy{model.found()[2].actions[0], model.found()[2]});
  EXPECT_THAT(announced(), SizeIs(1));
  perform(ToggleMore{});
  EXPECT_THAT(announced(), IsEmpty());
}

TEST_F(PanelControllerTest, ACopyFromOutsideIsOfAFreshReportAndIsSeen) {
  services.next.snapshot = sampleSnapshot();
  controller.copyFreshReport();
  EXPECT_TRUE(window.visible);
  EXPECT_EQ(services.copied, "") << "nothing is known yet";
  executor.runAll();
  EXPECT_THAT(services.copied, HasSubstr("16.0 GB memory"));
  controller.close();
  for (const auto& [age, checks] : {std::pair{9.9, 0}, {10.0, 1}}) {
    services.copied.clear();
    services.calls.clear();
    services.time = sampleTime + Seconds{age};
    controller.copyFreshReport();
    EXPECT_EQ(services.copied.empty(), checks == 1) << age;
    executor.runAll();
    EXPECT_THAT(services.copied, HasSubstr("16.0 GB memory"));
    EXPECT_EQ(std::ranges::count(services.calls, "check"), checks);
  }
  services.copied.clear();
  controller.perform(CheckAgain{});
  executor.runAll();
  EXPECT_EQ(services.copied, "") << "once is enough";
}

TEST_F(PanelControllerTest, ManyChangesOfOneTurnAreDrawnOnce) {
  openWithFindings();
  model.setOpenCard("docker");
  model.copyReport();
  model.setOpenCard(std::nullopt);
  EXPECT_THAT(window.shown, IsEmpty()) << "a change is told before it takes effect";
  executor.runAll();
  EXPECT_THAT(window.shown, SizeIs(1));
  model.setOpenCard("docker");
  executor.runAll();
  EXPECT_THAT(window.shown, SizeIs(2)) << "the next turn draws again";

  controller.close();
  model.setOpenCard(std::nullopt);
  executor.runAll();
  EXPECT_THAT(window.shown, SizeIs(2)) << "a closed panel is not drawn";
}

TEST_F(PanelControllerTest, FoldsAndDetailsMoveTheEdgeOnce) {
  openWithFindings();
  const auto folds = [&] { return nodesOf<Fold>(window.shown.back()); };
  controller.perform(ToggleMore{});
  EXPECT_TRUE(folds()[0].open);
  controller.perform(ToggleMore{});
  EXPECT_FALSE(folds()[0].open);
  EXPECT_THAT(window.moved, ElementsAre(true, true));

  const Finding withEvidence = model.found()[2];
  controller.perform(OpenDetails{withEvidence});
  EXPECT_EQ(model.openCard(), withEvidence.id);
  executor.runMain();
  EXPECT_TRUE(window.moved.back());
  executor.runAll();
  EXPECT_FALSE(window.moved.back()) << "the guess that comes later does not move it again";
  EXPECT_THAT(services.calls, ElementsAre("/bin/tarnwick explains " + *withEvidence.evidence));
  EXPECT_THAT(textsOf(window.shown.back()), Contains("A guess."));
  controller.perform(CloseDetails{});
  EXPECT_FALSE(model.openCard().has_value());
  executor.runAll();
  EXPECT_TRUE(window.moved.back());
  EXPECT_THAT(services.calls, SizeIs(1));
}

TEST_F(PanelControllerTest, ControlsReachTheModel) {
  openWithFindings();
  const Finding disk = model.found()[3];
  perform(RunRemedy{disk.actions[0], disk});
  EXPECT_THAT(textsOf(window.shown.back()),
              Contains("Done, but it is still there. Refresh in a few seconds."));
  perform(CheckAgain{});
  EXPECT_THAT(services.calls, ElementsAre("apply: kill -TERM 41", "reset", "check", "free memory", "reset",
                                          "check", "free memory"));
  controller.perform(CopyReport{});
  EXPECT_THAT(services.copied, StartsWith("16.0 GB memory"));
  controller.perform(Quit{});
  EXPECT_TRUE(window.hasQuit);
}

TEST_F(PanelControllerTest, TheMenuFlipsWhatOutlivesTheRun) {
  openWithFindings();
  controller.perform(ToggleLoginItem{});
  EXPECT_TRUE(settings.login);
  perform(TogglePrTitles{});
  EXPECT_TRUE(settings.titles);
  EXPECT_THAT(services.calls, ElementsAre("reset", "check", "free memory"))
      << "the titles are looked up at once";
  controller.perform(OpenMenu{});
  EXPECT_EQ(window.menuItems, menu(true, true));

  services.calls.clear();
  controller.perform(TogglePrTitles{});
  EXPECT_FALSE(settings.titles);
  settings.writable = false;
  perform(TogglePrTitles{});
  EXPECT_THAT(services.calls, IsEmpty()) << "nothing became true";
}

TEST_F(PanelControllerTest, OpensTheFirstCardThatHasEvidence) {
  controller.openFirstCard();
  EXPECT_FALSE(model.openCard().has_value());
  openWithFindings();
  controller.openFirstCard();
  EXPECT_EQ(model.openCard(), "pid:15");
  services.next.found = {sampleFinding("a", Bucket::now), sampleFinding("b", Bucket::now)};
  perform(CheckAgain{});
  controller.openFirstCard();
  EXPECT_EQ(model.openCard(), "a");
}

TEST_F(PanelControllerTest, ADrawingThatWaitsIsDroppedWithItsPanel) {
  PanelController(model, executor, window, settings, [this] { return services.time; }).toggle();
  window.shown.clear();
  while (!executor.mainTasks.empty()) executor.runMain();
  EXPECT_THAT(window.shown, SizeIs(1)) << "only the panel that lives draws";
}

}  // namespace
