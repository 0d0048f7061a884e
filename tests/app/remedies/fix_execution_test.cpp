#include "tests/support/fake_fix_targets.h"

namespace {

const Text done;
const std::string replaced = "Not done: the process is gone, belongs to another user, or was replaced.";
const std::string stillRuns = "Not done: Docker did not stop the container.";

Fix term(Pid pid) { return {Signal{pid, 15, timestamp(100)}}; }

TEST(FixExecution, EachRemedyReachesItsTargetAndSaysWhatWentWrong) {
  const std::vector<std::tuple<Fix, std::string, Text>> cases{
      {{QuitApp{"com.docker.docker"}}, "quit com.docker.docker", done},
      {{DockerStop{"c1"}}, "POST /containers/c1/stop within 15 s", stillRuns},
      {{SimShutdown{"U-1"}}, "simctl shutdown U-1 within 120 s", "Not done: Xcode is not installed."},
      {{OpenSettings{"p"}}, "settings p", "Not done: System Settings did not open."},
      {{AskAutomation{"a"}},
       "automation a",
       "Not allowed. You can change this later in Privacy & Security > Automation."},
      {{CloseDuplicateTabs{"a"}}, "duplicates a", "Not done: the browser did not answer."},
      {{OpenTab{"a", "u"}}, "tab a u", "Not done: the browser did not open the page."}};
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

TEST(FixExecution, WhatHasStoppedIsForTheEngineAndTheToolToSay) {
  FakeFixTargets fake;
  const auto answered = [&](int status) {
    fake.engineStatus = status;
    return apply({DockerStop{"c1"}}, fake.targets());
  };
  for (const int stopped : {200, 299, 304}) EXPECT_EQ(answered(stopped), done) << stopped;
  for (const int status : {300, 404, 199}) EXPECT_EQ(answered(status), stillRuns) << status;
  for (const int status : {1, 149, -1}) {
    fake.toolStatus = status;
    EXPECT_EQ(apply({SimShutdown{"U"}}, fake.targets()), "Not done: the simulator did not shut down.");
  }
  fake.asked.clear();
  ToolPlaces none{ToolCandidates{}};
  EXPECT_EQ(apply({SimShutdown{"U"}}, {fake, Docker(fake, {}), fake, fake, none}),
            "Not done: Xcode is not installed.");
  EXPECT_THAT(fake.asked, IsEmpty());
}

TEST(FixExecution, SeveralAreTriedInOrderWhateverFailsAndPidsBelowTwoReachNobody) {
  FakeFixTargets fake;
  using Kind = SignalOutcome::Kind;
  fake.works = false;
  fake.engineStatus = 409;
  fake.signalOutcomes = {{Kind::refused}, {Kind::sent}, {Kind::failed, "Operation not permitted"}};
  EXPECT_EQ(apply({All{{term(41), {Signal{40, 9, timestamp(7)}}}}}, fake.targets()), replaced);
  EXPECT_EQ(
      apply({All{{{DockerStop{"c1"}}, {QuitApp{"a"}}, {All{{{OpenSettings{"p"}}, term(1)}}}, term(42)}}},
            fake.targets()),
      stillRuns + "\nNot done: System Settings did not open.\n" + replaced + "\nOperation not permitted");
  for (const Pid pid : {0, -1, -41, std::numeric_limits<Pid>::min()})
    EXPECT_EQ(apply(term(pid), fake.targets()), replaced) << pid;
  EXPECT_THAT(fake.asked,
              ElementsAre("signal 41 15 100", "signal 40 9 7", "POST /containers/c1/stop within 15 s",
                          "quit a", "settings p", "signal 42 15 100"));
  EXPECT_EQ(apply({All{}}, fake.targets()), done);
}

}  // namespace
