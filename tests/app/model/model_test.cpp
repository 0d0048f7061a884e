#include "tests/support/fake_model_services.h"
#include "tests/support/hand_executor.h"

namespace {

const Timestamp start = timestamp(1'700'000'000);
constexpr std::uint64_t mb = 1U << 20U;
constexpr const char* doneIcon = "checkmark.circle.fill";
constexpr const char* warningIcon = "exclamationmark.triangle.fill";

Finding card(const std::string& id, std::uint64_t bytes) {
  return {.id = id, .title = "Title of " + id, .bytes = bytes, .evidence = "facts about " + id};
}

Action action(decltype(Fix::kind) kind) { return {.label = "Do it", .fix = {std::move(kind)}}; }

const OpenTab page{"browser", "page"};

Action terminate(Pid pid) { return action(Signal{.pid = pid, .number = 15, .started = start}); }

struct ModelTest : testing::Test {
  // What the model held when it told of a change: the old values, one line a change.
  std::string seen() const {
    return std::to_string(model.snap().has_value()) + " " + std::to_string(model.found().size()) + " " +
           (model.note() ? model.note()->text : "-") + " " + (model.busy() ? "busy" : "idle");
  }

  HandExecutor executor;
  FakeServices services{executor};
  Model model{executor, services, services.pasteboard()};
};

TEST_F(ModelTest, ACheckPublishesInOrderAndTellsBeforeEachChange) {
  services.next.snapshot.procs[7] = {.pid = 7, .ppid = 1};
  services.next.snapshot.swapUsed = 5;
  services.next.found = {card("a", 1), card("b", 2)};
  std::vector<std::string> changes;
  const auto watch = model.onChange([&] { changes.push_back(seen()); });

  for (int i = 0; i < 2; ++i) model.refresh(true);
  for (const Action& refused : {action(page), terminate(9)}) model.run(refused, card("a", 1));
  EXPECT_THAT(executor.backgroundTasks, SizeIs(1)) << "a second check and all actions are refused";
  EXPECT_THAT(model.termed(), IsEmpty());
  EXPECT_THAT(services.calls, ElementsAre("reset"));
  executor.runBackground();
  EXPECT_TRUE(model.busy());
  EXPECT_FALSE(model.snap()) << "nothing is shown before the main thread's turn";
  executor.runMain();

  EXPECT_THAT(changes, ElementsAre("0 0 - idle", "0 0 - busy", "1 0 - busy", "1 2 - busy", "1 2 - busy"));
  EXPECT_FALSE(model.busy());
  EXPECT_EQ(model.found(), services.next.found);
  EXPECT_EQ(model.snap()->swapUsed, 5U);
  EXPECT_THAT(model.snap()->procs, IsEmpty());
  EXPECT_THAT(services.calls, ElementsAre("reset", "check", "free memory"));
}

TEST_F(ModelTest, AMachineThatWasNotSeenIsNotShownNotEvenAsItWas) {
  services.next.found = {card("a", 1)};
  model.refresh(false);
  executor.runAll();
  ASSERT_TRUE(model.snap());
  services.next.seen = false;
  model.refresh(false);
  executor.runAll();
  EXPECT_EQ(seen(), "0 0 Its processes or its memory cannot be read. idle");
  model.copyReport();
  EXPECT_EQ(services.copied, "");
}

TEST_F(ModelTest, ANoteDisappearsWithTheFirstCheckThatEndsAfterTwoMinutes) {
  for (const auto& [age, kept] : {std::pair{119.9, true}, {120.0, false}}) {
    services.time = start;
    model.run(action(page), card("a", 0));
    model.refresh(false);
    executor.runBackground();
    services.time = start + Seconds(age);
    executor.runMain();
    EXPECT_EQ(model.note().has_value(), kept) << age;
  }
}

TEST_F(ModelTest, ARemedyWaitsChecksAndTellsWhatItAchieved) {
  const char* closed = "Closed the duplicate tabs. To bring one back, press Cmd-Shift-T in the browser.";
  // The remedy, what is found afterwards, what the note says, and whether that is an error.
  const std::tuple<Action, std::vector<Finding>, const char*, bool> cases[] = {
      {terminate(9), {card("b", 900 * mb)}, "Done. Freed 300 MB.", false},
      {terminate(9), {card("a", 300 * mb)}, "Done, but it is still there. Refresh in a few seconds.", false},
      {action(DockerStop{"c"}), {card("b", 0), card("a", 100 * mb)}, "Done. Freed 200 MB.", false},
      {action(All{}), {card("a", 299 * mb), card("a", 0)}, "Done. Freed 1 MB.", false},
      {action(AskAutomation{"b"}), {}, "Allowed. The card below now shows tabs that you can close.", false},
      {action(CloseDuplicateTabs{"b"}), {card("a", 300 * mb)}, closed, false},
      {terminate(9), {}, "Not done: no.", true},
      {action(AskAutomation{"b"}), {card("a", 1)}, "Not allowed.", true}};
  for (const auto& [action, after, outcome, error] : cases) {
    services.calls.clear();
    services.next.found = after;
    services.error = error ? Text(outcome) : std::nullopt;
    services.time = start;
    model.run(action, card("a", 300 * mb));
    const char* text =
        std::holds_alternative<AskAutomation>(action.fix.kind) ? "Answer the macOS dialog…" : "Working…";
    EXPECT_EQ(model.note(), (Note{text, "hourglass", NoteColor::secondary, start}));
    EXPECT_TRUE(model.busy());
    services.time = start + Seconds(500);
    executor.runAll();
    const NoteColor colour = error ? NoteColor::orange : NoteColor::green;
    EXPECT_EQ(model.note(), (Note{outcome, error ? warningIcon : doneIcon, colour, services.time}));
    EXPECT_FALSE(model.busy());
    EXPECT_EQ(model.found(), after);
    EXPECT_THAT(services.calls,
                ElementsAre("apply: " + action.fix.command(), "reset", "check", "free memory"));
  }
}

TEST_F(ModelTest, WhatOnlyOpensIsDoneAtOnceWithoutACheck) {
  std::vector<std::string> changes;
  const auto watch = model.onChange([&] {
    changes.push_back(seen());
    services.calls.emplace_back("told");
  });
  model.run(action(OpenSettings{"pane"}), card("a", 1));
  EXPECT_EQ(model.note(), (Note{"System Settings is open.", doneIcon, NoteColor::green, start}));
  EXPECT_THAT(services.calls,
              ElementsAre("apply on main: open x-apple.systempreferences:pane", "told", "reset"));
  model.run(action(page), card("a", 1));
  EXPECT_EQ(model.note()->text, "The page is open in your browser.");
  services.error = "Not done: the browser did not open the page.";
  model.run(action(page), card("a", 1));
  EXPECT_EQ(model.note(), (Note{*services.error, warningIcon, NoteColor::orange, start}));
  EXPECT_THAT(executor.backgroundTasks, IsEmpty());
  EXPECT_THAT(changes, SizeIs(3)) << "nothing but the note changed";
}

TEST_F(ModelTest, ProcessesActedOnAreHandedToEveryLaterCheck) {
  services.error = "Not done: it is still remembered.";
  model.run(action(All{{terminate(5).fix, terminate(4).fix, action(DockerStop{"c"}).fix, terminate(5).fix}}),
            card("a", 1));
  EXPECT_THAT(model.termed(), UnorderedElementsAre(4, 5));
  executor.runAll();
  model.run(terminate(8), card("a", 1));
  executor.runAll();
  EXPECT_THAT(services.termedSeen, ElementsAre(UnorderedElementsAre(4, 5), UnorderedElementsAre(4, 5, 8)));
}

TEST_F(ModelTest, EvidenceIsAskedAboutOnceWhateverTheAnswer) {
  Finding silent = card("c", 1);
  silent.evidence = std::nullopt;
  model.guess(silent);
  services.executable = std::nullopt;
  model.guess(card("a", 1));
  EXPECT_THAT(model.asked(), IsEmpty()) << "who cannot ask may try again";

  services.executable = "/bin/tarnwick";
  std::vector<std::size_t> changes;
  const auto watch = model.onChange([&] { changes.push_back(model.guesses().size()); });
  for (const char* id : {"a", "a", "b", "b"}) model.guess(card(id, 1));
  EXPECT_THAT(executor.backgroundTasks, SizeIs(2));
  executor.runBackground();
  services.answer = "It runs.\n";
  executor.runBackground();
  executor.runAll();
  model.guess(card("a", 1));
  executor.runAll();

  EXPECT_THAT(services.calls,
              ElementsAre("/bin/tarnwick explains facts about a", "/bin/tarnwick explains facts about b"));
  EXPECT_THAT(model.guesses(), ElementsAre(Pair("facts about b", "It runs.\n")));
  EXPECT_THAT(model.asked(), UnorderedElementsAre("facts about a", "facts about b"));
  EXPECT_THAT(changes, ElementsAre(0U)) << "told once, before the answer is there";
}

TEST_F(ModelTest, TheReportIsCopiedAsShown) {
  model.copyReport();
  EXPECT_FALSE(model.note()) << "there is nothing to copy yet";
  services.answer = "It runs.";
  services.next.found = {card("a", 1)};
  model.refresh(false);
  model.guess(card("a", 1));
  executor.runAll();
  model.copyReport();
  EXPECT_EQ(services.copied, text(*model.snap(), model.found(), model.guesses()));
  EXPECT_EQ(model.note()->text, "Copied the report. Paste it into a message to share it.");
  services.next.found.front().title = "\r\x1B[2J\u009B\u202E\u2066\u200EWhatever";
  model.refresh(false);
  executor.runAll();
  model.copyReport();
  EXPECT_THAT(services.copied, HasSubstr("  ␍␛[2J<U+009B><U+202E><U+2066>\u200EWhatever\n"));
}

TEST_F(ModelTest, ObserversMayComeAndGoWhileTheyAreTold) {
  int late = 0;
  int gone = 0;
  std::vector<Model::Subscription> watches;
  Model::Subscription leaver = model.onChange([&] { ++gone; });
  watches.push_back(model.onChange([&] {
    leaver.reset();
    if (watches.size() == 1) watches.push_back(model.onChange([&] { ++late; }));
  }));
  for (const char* id : {"a", "b", "c"}) model.setOpenCard(id);
  EXPECT_EQ(gone, 1);
  EXPECT_EQ(late, 2);
  EXPECT_EQ(model.openCard(), "c");
}

TEST_F(ModelTest, ResultsForAModelThatIsGoneAreDropped) {
  std::optional<Model> other(std::in_place, executor, services, services.pasteboard());
  other->refresh(false);
  other->guess(card("a", 1));
  executor.runBackground();
  other.reset();
  executor.runAll();
  EXPECT_THAT(services.calls, ElementsAre("check", "/bin/tarnwick explains facts about a"));
}

TEST_F(ModelTest, OffTheMainThreadEverythingIsAFault) {
  executor.background([&] { model.refresh(false); });
  executor.background([&] { static_cast<void>(model.snap()); });
  EXPECT_DEATH(executor.runBackground(), "off the main thread");
  executor.backgroundTasks.pop_front();
  EXPECT_DEATH(executor.runBackground(), "off the main thread");
}

}  // namespace
