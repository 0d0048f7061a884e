#include "tests/support/fake_fix_targets.h"

namespace tarnwick {
namespace {

const std::optional<std::string> done;
const std::string replaced = "Not done: the process is gone, belongs to another user, or was replaced.";

Fix term(Pid pid) { return {Signal{pid, 15, timestamp(100)}}; }

TEST(FixExecution, EachRemedyReachesItsTargetAndSaysWhatWentWrong) {
  const std::vector<std::tuple<Fix, std::string, std::optional<std::string>>> cases{
      {{QuitApp{"com.docker.docker"}}, "quit com.docker.docker", done},
      {{DockerStop{"c1"}}, "docker c1", "Not done: Docker did not stop the container."},
      {{OpenSettings{"p"}}, "settings p", "Not done: System Settings did not open."},
      {{AskAutomation{"a"}},
       "automation a",
       "Not allowed. You can change this later in Privacy & Security > Automation."},
      {{CloseDuplicateTabs{"a"}}, "duplicates a", "Not done: the browser did not answer."},
      {{OpenTab{"a", "u"}}, "tab a u", "Not done: the browser did not open the page."},
  };
  for (const auto& [fix, asked, failure] : cases) {
    FakeFixTargets targets;
    EXPECT_EQ(apply(fix, targets), done) << asked;
    targets.works = false;
    EXPECT_EQ(apply(fix, targets), failure) << asked;
    EXPECT_THAT(targets.asked, ElementsAre(asked, asked));
  }
}

TEST(FixExecution, SimulatorSentences) {
  FakeFixTargets targets;
  const Fix fix{SimShutdown{"U-1"}};
  EXPECT_EQ(apply(fix, targets), done);
  targets.simulator = SimulatorOutcome::noXcode;
  EXPECT_EQ(apply(fix, targets), "Not done: Xcode is not installed.");
  targets.simulator = SimulatorOutcome::failed;
  EXPECT_EQ(apply(fix, targets), "Not done: the simulator did not shut down.");
}

TEST(FixExecution, SignalSentences) {
  FakeFixTargets targets;
  targets.signalOutcomes = {{SignalOutcome::Kind::sent, {}},
                            {SignalOutcome::Kind::refused, {}},
                            {SignalOutcome::Kind::failed, "Operation not permitted"}};
  EXPECT_EQ(apply({Signal{2, 9, timestamp(7)}}, targets), done);
  EXPECT_EQ(apply(term(41), targets), replaced);
  EXPECT_EQ(apply(term(41), targets), "Operation not permitted");
  EXPECT_THAT(targets.asked, ElementsAre("signal 2 9 7", "signal 41 15 100", "signal 41 15 100"));
}

TEST(FixExecution, PidsBelowTwoReachNobody) {
  FakeFixTargets targets;
  for (const Pid pid : {1, 0, -1, -41, std::numeric_limits<Pid>::min()})
    EXPECT_EQ(apply(term(pid), targets), replaced) << pid;
  EXPECT_THAT(targets.asked, IsEmpty());
}

TEST(FixExecution, SeveralAreTriedInOrderWhateverFails) {
  FakeFixTargets targets;
  targets.works = false;
  targets.signalOutcomes = {{SignalOutcome::Kind::refused, {}}, {SignalOutcome::Kind::sent, {}}};
  EXPECT_EQ(apply({All{{term(41), term(40)}}}, targets), replaced);
  EXPECT_EQ(
      apply({All{{{DockerStop{"c1"}}, {QuitApp{"a"}}, {All{{{OpenSettings{"p"}}, term(1)}}}, term(42)}}},
            targets),
      "Not done: Docker did not stop the container.\nNot done: System Settings did not open.\n" + replaced);
  EXPECT_THAT(targets.asked, ElementsAre("signal 41 15 100", "signal 40 15 100", "docker c1", "quit a",
                                         "settings p", "signal 42 15 100"));
  EXPECT_EQ(apply({All{}}, targets), done);
}

}  // namespace
}  // namespace tarnwick
