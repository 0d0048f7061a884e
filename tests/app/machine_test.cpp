// How the machine and the modes are wired: each line of the composition, seen from outside by twins that
// write down what they are asked.

#include "app/machine.h"

#include <regex>

#include "app/modes.h"
#include "tests/support/fake_fix_targets.h"
#include "tests/support/fake_machine_source.h"
#include "tests/support/fake_process_source.h"
#include "tests/support/fake_settings.h"
#include "tests/support/fake_transport.h"
#include "tests/support/recording_tool_runner.h"

namespace {

struct FakeSources : LiveMachine {
  ProcessSource& processes() override { return processSource; }
  MachineSource& machine() override { return machineSource; }
  Workspace& workspace() override { return session; }
  bool dockerRuns(const Docker& docker) override { return docker.present(); }

  FakeProcessSource processSource;
  FakeMachineSource machineSource;
  FakeWorkspace session;
};

constexpr Pid ownPid = 4242;

// A machine with a forgotten server on a branch, a busy command inside the home's Library, and the busy
// program itself.
struct Twins {
  Twins() {
    clock.time = timestamp(1'700'000'000);
    sources.processSource.clock = &clock;
    repository("shop");
    repository("Library/cache");
    add(10, 1, "login", {"login"});
    add(11, 10, "zsh", {"-zsh"});
    add(41, 1, "node", {"node", "server.mjs"}, "shop").ports = {3000};
    add(50, 11, "make", {"make", "all"}, "Library/cache").usage->processorTime = 1500;
    add(ownPid, 11, "tarnwick", {"tarnwick", "itself"}).usage->processorTime = 1500;
    sources.processSource.processes[41].usage->footprint = 64U << 20U;
    sources.processSource.strangers[90] = {.uid = 33, .name = "backupd", .resident = 9U << 20U};
    sources.processSource.userNames[33] = "ada";
    transport.replies["GET /containers/json"] = "HTTP/1.0 200 OK\r\n\r\n[]";
  }

  FakeProcess& add(Pid pid, Pid parent, const std::string& name, std::vector<std::string> args,
                   const std::string& folder = "") {
    FakeProcess& process = sources.processSource.processes[pid];
    const ProcessFacts facts{parent, 501, 1'700'000'000 - 13 * 3'600};
    return process = {facts, ProcessUsage{}, 0, "/usr/bin/" + name, {}, std::move(args), home.at(folder)};
  }

  void repository(const std::string& folder) const {
    home.write(folder + "/.git/HEAD", "ref: refs/heads/cart\n");
    home.write(folder + "/.git/config", "[remote \"origin\"]\n\turl = git@github.com:ada/shop.git\n");
  }

  Outside outside() {
    ++looks;
    return {.self = {ownPid, 501, home.path()},
            .settings = settings,
            .clock = clock,
            .limits = limits,
            .files = files,
            .homeFiles = files,
            .tools = tools,
            .toolCandidates = {.git = {home.script("git", "")}, .gh = {home.script("gh", "")}},
            .transport = transport,
            .engineSockets = {"/engine.sock"},
            .sources = sources,
            .browsers = targets,
            .targets = targets};
  }

  ProgramRun start(const std::vector<std::string>& words) {
    const auto print = [this](std::string_view text) { return printed += text, 0; };
    return {.words = parseCommandLine(words),
            .self = {ownPid, 501, home.path()},
            .outside = [this] { return outside(); },
            .print = print,
            .printDocument = print};
  }

  // One line for everything that was asked, "~" for the home folder, and the lines that were printed.
  std::string events() {
    std::string lines = "looked at this machine " + std::to_string(looks) + "\n";
    for (const auto& call : tools.calls) {
      for (const std::string& word : call) lines += word + " ";
      lines += "\n";
    }
    for (const auto& asked : transport.asked())
      lines += "engine: " + asked.request.substr(0, asked.request.find(" HTTP")) + "\n";
    for (const double seconds : clock.sleeps) lines += "rested " + std::to_string(seconds) + "\n";
    for (const std::string& asked : targets.asked) lines += asked + "\n";
    lines += printed;
    for (std::size_t at = 0; (at = lines.find(home.path(), at)) != std::string::npos;)
      lines.replace(at, home.path().size(), "~");
    return lines;
  }

  TempFolder home;
  FakeSettings settings;
  FakeClock clock;
  CheckLimits limits{clock};
  DirectFiles files;
  RecordingToolRunner tools;
  FakeTransport transport;
  FakeSources sources;
  FakeFixTargets targets;
  int looks = 0;
  std::string printed;
};

int timesIn(const std::string& text, const std::string& part) {
  int times = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++times;
  return times;
}

using Act = std::function<void(Twins&)>;

// `titles`: the user chose for good that they are looked up.
Act mode(const Strings& words, bool titles = false) {
  return [words, titles](Twins& twins) {
    twins.settings.titles = titles;
    EXPECT_EQ(runTextMode(twins.start(words)), 0);
  };
}

Act on(const std::function<void(Machine&)>& use) {
  return [use](Twins& twins) {
    Machine machine(twins.outside(), PrTitles::whenChosen);
    use(machine);
  };
}

TEST(Wiring, EveryPartIsAskedByWhomAndWhenItShould) {
  const char* title = "~/gh pr view --repo ada/shop ";
  const char* engine = "engine: GET /containers/json\n";
  const std::tuple<const char*, Act, std::string, int> cases[] = {
      {"no consent, no network", mode({"--print"}), title, 0},
      {"consent for this run", mode({"--print", "--pr"}), title, 1},
      {"consent for good", mode({"--print"}, true), title, 1},
      {"a measurement looks nothing up", mode({"--bench", "--pr"}, true), title, 0},
      {"a report asks the engine", mode({"--print"}), engine, 1},
      {"its answer is kept", on([](Machine& m) { m.check({}), m.check({}); }), engine, 1},
      {"until the caches are emptied", on([](Machine& m) { m.check({}), m.resetCaches(), m.check({}); }),
       engine, 2},
      {"a report rests a second", mode({"--print"}), "rested 1.000000\n", 1},
      {"a measurement rests half of one", mode({"--bench"}), "rested 0.500000\n", 5},
      {"git tells about a project", mode({"--print"}), "~/git -C ~/shop --git-dir=~/shop/.git ", 1},
      {"but not inside the home's Library", mode({"--print"}), "~/git -C ~/Library", 0},
      {"nobody tells once the check's time is over",
       [](Twins& t) { t.transport.onAsked = [&] { t.clock.turn(8); }, mode({"--print"})(t); }, "~/git -C ",
       0},
      {"a busy command is reported", mode({"--print"}), "“make all”", 1},
      {"the program itself is not", mode({"--print"}), "itself", 0},
      {"so it is among the biggest users", mode({"--top"}), "  kill -TERM 50\n", 1},
      {"and in the document", mode({"--json", "--top"}), "\"what\": \"make all\"", 1},
      {"which git is asked about too", mode({"--json"}), "\"branch\": \"cart\"", 1},
      {"other users are asked about for them", mode({"--top"}), "processes of ada, mostly backupd\n", 1},
      {"a demo has its own", mode({"--json", "--demo"}), "looked at this machine 0\n{\n  \"schema\": 1,", 1},
      {"nor does a report about one", mode({"--print", "--scenario", "memory"}), "machine 0\n", 1},
      {"nor the self-test", mode({"--selftest"}), "looked at this machine 0\nselftest ok\n", 1},
      {"a remedy reaches the system", on([](Machine& m) { m.apply({QuitApp{"a"}}); }), "quit a\n", 1},
      {"the browsers", on([](Machine& m) { m.apply({AskAutomation{"a"}}); }), "automation a\n", 1},
      {"and the engine", on([](Machine& m) { m.apply({DockerStop{"c1"}}); }),
       "engine: POST /containers/c1/stop\n", 1},
      {"a child explains", on([](Machine& m) { m.explainByChild("/me", "x"); }), "/me --explain x \n", 1}};
  for (const auto& [what, act, event, times] : cases) {
    Twins twins;
    act(twins);
    EXPECT_EQ(timesIn(twins.events(), event), times) << what << ":\n" << twins.events();
  }
}

TEST(Wiring, ANamedRemedyIsCarriedOutOnlyAsItIsOffered) {
  const std::string gone = "Not done: the process is gone, belongs to another user, or was replaced.\n";
  const std::string still = "Done, but it is still there. Refresh in a few seconds.\n";
  const SignalOutcome refused{SignalOutcome::Kind::refused};
  const std::tuple<const char*, const char*, std::vector<SignalOutcome>, int, std::string> cases[] = {
      {"kill -TERM 41", "--fix", {}, 0, still + "signal 41 15 1699953200"},
      {"kill -TERM 41", "--fix", {refused}, 1, gone + "signal 41 15 1699953200"},
      {"kill -TERM 41", "--dry-run", {}, 0, "Would do: Stop it (shop): kill -TERM 41\n"},
      {"kill -TERM 4", "--fix", {}, 1, ""},
      {"kill -TERM 41 ", "--fix", {}, 1, ""}};
  for (const auto& [command, how, outcomes, status, seen] : cases) {
    Twins twins;
    twins.targets.signalOutcomes = outcomes;
    EXPECT_EQ(runTextMode(twins.start({"--fix", command, how, "--yes"})), status);
    for (const std::string& asked : twins.targets.asked) twins.printed += asked;
    EXPECT_EQ(twins.printed, seen);
  }
}

// Three checks: as it was, without the server, and nothing new.
TEST(Wiring, AWatchPrintsWhatChanges) {
  Twins twins;
  ProgramRun run = twins.start({"--watch", "5"});
  std::vector<double> rests;
  run.rest = [&](double seconds) {
    rests.push_back(seconds);
    twins.printed += "rest\n";
    if (rests.size() == 2) twins.sources.processSource.processes.erase(41);
    return rests.size() < 4;
  };
  EXPECT_EQ(runTextMode(run), 0);
  EXPECT_THAT(rests, ElementsAre(5, 5, 5, 5));
  const std::string stamp = "(^|\n)[-0-9]{10} [:0-9]{8}  ";
  EXPECT_EQ(
      std::regex_replace(twins.printed, std::regex(stamp), "$1"),
      "Your Mac is too hot.\nNew: Your Mac is hot, so macOS slows it down (Hot)\nNew: You are running a command (19% CPU)\n"
      "New: shop is still running (64 MB)  [Stop it]  kill -TERM 41\nrest\nrest\nGone: shop is still running\nrest\nrest\n");
}

TEST(Wiring, TheSelfTestEndsTheProgramWhereADemoReadsOtherwise) {
  Twins twins;
  ProgramRun run = twins.start({"--selftest"});
  std::vector<ExpectedDiagnosis> expected(run.expected.begin(), run.expected.end());
  expected.back().headline = "Fine.";
  run.expected = expected;
  EXPECT_DEATH(runTextMode(run), "selftest: the headline of the developer demo is .* but must be “Fine.”");
}

TEST(Wiring, TwoChecksAtOnceAreAFault) {
  Twins twins;
  Machine machine(twins.outside(), PrTitles::never);
  twins.transport.onAsked = [&] { machine.resetCaches(); };
  EXPECT_DEATH(machine.check({}), "two threads at once");
}

}  // namespace
