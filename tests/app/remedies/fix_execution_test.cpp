#include "tests/support/fake_fix_targets.h"

namespace tarnwick {
namespace {

using Message = std::optional<std::string>;

const Message done;
const std::string replaced = "Not done: the process is gone, belongs to another user, or was replaced.";
const std::string stillRuns = "Not done: Docker did not stop the container.";

Fix term(Pid pid) { return {Signal{pid, 15, timestamp(100)}}; }

TEST(FixExecution, EachRemedyReachesItsTargetAndSaysWhatWentWrong) {
  const std::vector<std::tuple<Fix, std::string, Message>> cases{
      {{QuitApp{"com.docker.docker"}}, "quit com.docker.docker", done},
      {{DockerStop{"c1"}}, "POST /containers/c1/stop within 15 s", stillRuns},
      {{SimShutdown{"U-1"}}, "simctl shutdown U-1 within 120 s", "Not done: Xcode is not installed."},
      {{OpenSettings{"p"}}, "settings p", "Not done: System Settings did not open."},
      {{AskAutomation{"a"}},
       "automation a",
       "Not allowed. You can change this later in Privacy & Security > Automation."},
      {{CloseDuplicateTabs{"a"}}, "duplicates a", "Not done: the browser did not answer."},
      {{OpenTab{"a", "u"}}, "tab a u", "Not done: the browser did not open the page."},
  };
  for (const auto& [fix, asked, failure] : cases) {
    FakeFixTargets fake;
    EXPECT_EQ(apply(fix, fake.targets()), done) << asked;
    fake.works = false;
    fake.engineStatus = 0;
    fake.toolStatus = std::nullopt;
    EXPECT_EQ(apply(fix, fake.targets()), failure) << asked;
    EXPECT_THAT(fake.asked, ElementsAre(asked, asked));
  }
}

TEST(FixExecution, AContainerHasStoppedOnlyWhereTheEngineSaysSo) {
  const std::pair<int, Message> cases[] = {
      {200, done},      {204, done},      {299, done},      {304, done},  // it had stopped before
      {300, stillRuns}, {404, stillRuns}, {409, stillRuns}, {500, stillRuns}, {199, stillRuns}};
  for (const auto& [status, message] : cases) {
    FakeFixTargets fake;
    fake.engineStatus = status;
    EXPECT_EQ(apply({DockerStop{"c1"}}, fake.targets()), message) << status;
  }
}

TEST(FixExecution, ASimulatorHasShutDownOnlyWhereTheToolSaysSo) {
  FakeFixTargets fake;
  for (const int status : {1, 149, -1}) {
    fake.toolStatus = status;
    EXPECT_EQ(apply({SimShutdown{"U"}}, fake.targets()), "Not done: the simulator did not shut down.");
  }
  ToolPlaces none{ToolCandidates{}};
  const Docker docker(fake, {});
  EXPECT_EQ(apply({SimShutdown{"U"}}, {fake, docker, fake, fake, none}), "Not done: Xcode is not installed.");
  EXPECT_THAT(fake.asked, SizeIs(3));
}

TEST(FixExecution, SignalSentences) {
  FakeFixTargets fake;
  fake.signalOutcomes = {{SignalOutcome::Kind::sent, {}},
                         {SignalOutcome::Kind::refused, {}},
                         {SignalOutcome::Kind::failed, "Operation not permitted"}};
  EXPECT_EQ(apply({Signal{2, 9, timestamp(7)}}, fake.targets()), done);
  EXPECT_EQ(apply(term(41), fake.targets()), replaced);
  EXPECT_EQ(apply(term(41), fake.targets()), "Operation not permitted");
  for (const Pid pid : {1, 0, -1, -41, std::numeric_limits<Pid>::min()})
    EXPECT_EQ(apply(term(pid), fake.targets()), replaced) << pid;
  EXPECT_THAT(fake.asked, ElementsAre("signal 2 9 7", "signal 41 15 100", "signal 41 15 100"))
      << "pids below two reach nobody";
}

TEST(FixExecution, SeveralAreTriedInOrderWhateverFails) {
  FakeFixTargets fake;
  fake.works = false;
  fake.engineStatus = 409;
  fake.signalOutcomes = {{SignalOutcome::Kind::refused, {}}, {SignalOutcome::Kind::sent, {}}};
  EXPECT_EQ(apply({All{{term(41), term(40)}}}, fake.targets()), replaced);
  EXPECT_EQ(
      apply({All{{{DockerStop{"c1"}}, {QuitApp{"a"}}, {All{{{OpenSettings{"p"}}, term(1)}}}, term(42)}}},
            fake.targets()),
      stillRuns + "\nNot done: System Settings did not open.\n" + replaced);
  EXPECT_THAT(fake.asked,
              ElementsAre("signal 41 15 100", "signal 40 15 100", "POST /containers/c1/stop within 15 s",
                          "quit a", "settings p", "signal 42 15 100"));
  EXPECT_EQ(apply({All{}}, fake.targets()), done);
}

}  // namespace
}  // namespace tarnwick
