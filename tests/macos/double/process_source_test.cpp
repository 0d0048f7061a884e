// Processes of macOS against the double of its kernel: lists and records that change between two calls, short
// answers, and argument blocks of every shape.
#include "sampling/macos/macos_process_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "sampling/process_table.h"
#include "tests/macos/double/kernel.h"

namespace tarnwick {
namespace {

using darwin::bytesOf;
using darwin::Kernel;
using darwin::KernelProcess;
using darwin::OpenDescriptor;
using Strings = std::vector<std::string>;
using Pids = std::vector<Pid>;
using Ports = std::vector<std::uint16_t>;

constexpr Pid pid = 4'711;
constexpr std::size_t largeBlock = ArgumentBuffer::mostBytes;

struct ProcessesOfMacos : testing::Test {
  Kernel kernel;
  MacosProcessSource source{{.pid = 1, .uid = 501, .home = "/Users/me"}};
  KernelProcess& process() { return kernel.processes[pid]; }
};

std::string ended(const std::string& text) { return text + '\0'; }

TEST_F(ProcessesOfMacos, TheListIsTheUsersAtEachQuestion) {
  kernel.processes = {{10, {}}, {11, {.uid = 0}}, {12, {}}};
  EXPECT_EQ(source.myPids(), (Pids{12, 10}));
  kernel.processes.erase(12);
  for (Pid other = 20; other < 23; ++other) kernel.processes[other] = {};
  EXPECT_EQ(source.myPids(), (Pids{22, 21, 20, 10}));
  for (const auto& [answered, count] : {std::pair{7, 1}, {3, 0}, {0, 0}, {-1, 0}}) {
    kernel.answers["pids"] = answered;
    EXPECT_EQ(source.myPids().size(), count) << answered;
  }
  kernel.answers.clear();
  for (Pid other = 100; other < 9'000; ++other) kernel.processes[other] = {};
  EXPECT_EQ(source.myPids().size(), ProcessSource::mostProcesses);
  kernel.refused["pids"] = EPERM;
  EXPECT_EQ(source.myPids(), Pids{});
}

// What a process says about itself, each answer on its own.
struct Answers {
  std::string path;
  Strings args;
  bool usage = false;
  std::string cwd;
  Ports ports;
  bool operator==(const Answers&) const = default;
};

void fill(KernelProcess& process) {
  process = {.path = "/bin/tool",
             .argumentCount = 1,
             .strings = ended("/bin/tool") + ended("tool"),
             .folder = "/tmp",
             .descriptors = {{.number = 3, .port = 80}}};
}

TEST_F(ProcessesOfMacos, WhatEndsMidwayOrIsAnsweredShortIsAbsentAndNothingElseIs) {
  const Answers whole{"/bin/tool", {"tool"}, true, "/tmp", {80}};
  const std::tuple<const char*, int, void (*)(Answers&)> questions[] = {
      {"path", 0, [](Answers& a) { a.path.clear(); }},
      {"arguments", -1, [](Answers& a) { a.args.clear(); }},
      {"usage", -1, [](Answers& a) { a.usage = false; }},
      {"folder", sizeof(proc_vnodepathinfo) - 1, [](Answers& a) { a.cwd.clear(); }},
      {"descriptors", sizeof(proc_fdinfo) - 1, [](Answers& a) { a.ports.clear(); }},
      {"socket", sizeof(socket_fdinfo) - 1, [](Answers& a) { a.ports.clear(); }},
  };
  const auto answersOf = [](Process& found) {
    return Answers{found.path(), found.args(), found.usage().has_value(), found.cwd(), found.listenPorts()};
  };
  const auto ask = [&] { return answersOf(*source.process(pid)); };
  for (const auto& [question, shortAnswer, loses] : questions) {
    Answers expected = whole;
    loses(expected);
    fill(process());
    EXPECT_EQ(ask(), whole) << question;
    kernel.answers[question] = shortAnswer;
    EXPECT_TRUE(ask() == expected) << question << " answered short";
    kernel.answers.clear();
    kernel.refused[question] = EPERM;
    EXPECT_TRUE(ask() == expected) << question << " refused";
    kernel.refused.clear();
    const auto found = source.process(pid);
    kernel.processes.erase(pid);
    EXPECT_TRUE(answersOf(*found) == Answers{}) << "it has ended";
  }
}

TEST_F(ProcessesOfMacos, AProcessIsOnlyWhatItsRecordShowsItToBe) {
  const std::tuple<const char*, std::uint32_t, std::uint64_t, int, bool> records[] = {
      {"the user's own", 501, 1'000, 136, true},
      {"another user's since the list was made", 502, 1'000, 136, false},
      {"of a start beyond all time", 501, std::uint64_t{1} << 63, 136, false},
      {"a short record", 501, 1'000, 135, false},
      {"no record", 501, 1'000, 0, false},
  };
  for (const auto& [what, uid, started, bytes, seen] : records) {
    process() = {.uid = uid, .started = started};
    kernel.answers["record"] = bytes;
    const auto found = source.process(pid);
    EXPECT_EQ(found != nullptr, seen) << what;
    if (found) EXPECT_EQ(found->facts().started, 1'000);
  }
  EXPECT_EQ(source.process(pid + 1), nullptr);
}

TEST_F(ProcessesOfMacos, ArgumentsAreNeverTheEnvironment) {
  const std::string path = ended("/bin/tool") + std::string(6, '\0');
  const std::string secret = ended("SECRET=1");
  const auto filled = [&](std::size_t bytes) {  // a block of so many bytes, most of them environment
    const std::string words = path + ended("tool") + ended("-x");
    return words + std::string(bytes - 4 - words.size() - secret.size() - 1, 'e') + '\0' + secret;
  };
  const std::tuple<const char*, std::int32_t, std::string, Strings> blocks[] = {
      {"as most are", 2, path + ended("tool") + ended("-x") + secret, {"tool", "-x"}},
      {"nothing at all", 1, "", {}},
      {"just below the small buffer", 2, filled(65'535), {"tool", "-x"}},
      {"just the small buffer", 2, filled(65'536), {"tool", "-x"}},
      {"beyond the small buffer", 2, filled(65'537), {"tool", "-x"}},
      {"just below the large buffer", 2, filled(largeBlock - 1), {"tool", "-x"}},
      {"just the large buffer: perhaps its end only", 2, filled(largeBlock), {}},
      {"beyond the large buffer: nothing but environment", 2, filled(largeBlock + 5'000), {}},
  };
  for (const auto& [what, count, strings, arguments] : blocks) {
    source.beginPass();
    process() = {.argumentCount = count, .strings = strings};
    EXPECT_EQ(source.process(pid)->args(), arguments) << what;
  }
  EXPECT_EQ(source.process(pid)->args(), Strings{}) << "again, with the large buffer at once";
}

TEST_F(ProcessesOfMacos, AProcessMayEndOrStartAProgramBetweenTwoLooksAtItsArguments) {
  const std::string large = ended("/a") + ended(std::string(70'000, 'x'));
  for (const bool ends : {true, false}) {
    source.beginPass();
    process() = {.argumentCount = 1, .strings = large};
    kernel.before = [&, looks = 0](const std::string& call) mutable {
      if (call != "arguments" || ++looks < 2) return;
      if (ends)
        kernel.processes.erase(pid);
      else
        process() = {.argumentCount = 1, .strings = ended("/b") + ended("b")};
    };
    EXPECT_EQ(source.process(pid)->args(), ends ? Strings{} : Strings{"b"});
  }
}

TEST_F(ProcessesOfMacos, PortsAreThoseOfListeningTcpSockets) {
  process().descriptors = {{.number = 3, .port = 8'080},
                           {.number = 4, .port = 80},
                           {.number = 5, .port = 8'080},           // the same for the other internet protocol
                           {.number = 6, .state = 4, .port = 81},  // connected
                           {.number = 7, .kind = SOCKINFO_IN, .port = 82},
                           {.number = 8, .type = PROX_FDTYPE_VNODE, .port = 83}};
  EXPECT_EQ(source.process(pid)->listenPorts(), (Ports{80, 8'080}));
}

TEST_F(ProcessesOfMacos, DescriptorsMayOpenAndCloseBetweenTwoQuestions) {
  using Change = std::function<void(std::vector<OpenDescriptor>&)>;
  const auto open = [](int count) {
    return [count](std::vector<OpenDescriptor>& all) {
      for (int i = 0; i < count; ++i)
        all.push_back({.number = 100 + i, .port = static_cast<std::uint16_t>(900 + i)});
    };
  };
  // What changes, before which call of which times, and how many ports are seen.
  const std::tuple<const char*, std::string, int, Change, std::size_t> changes[] = {
      {"a few more than at the first question", "descriptors", 2, open(20), 23},
      {"far more", "descriptors", 2, open(300), 303},
      {"fewer", "descriptors", 2, [](auto& all) { all.resize(1); }, 1},
      {"none", "descriptors", 2, [](auto& all) { all.clear(); }, 0},
      {"one closes before it is asked about", "socket", 2, [](auto& all) { all.erase(all.begin() + 1); }, 2},
      {"its number is used for a file", "socket", 3, [](auto& all) { all[2].type = PROX_FDTYPE_VNODE; }, 2},
  };
  for (const auto& [what, call, times, change, seen] : changes) {
    process().descriptors = {{.number = 3, .port = 80}, {.number = 4, .port = 81}, {.number = 5, .port = 82}};
    kernel.before = [&, &at = call, &time = times, &happens = change,
                     calls = 0](const std::string& now) mutable {
      if (now == at && ++calls == time) happens(process().descriptors);
    };
    EXPECT_EQ(source.process(pid)->listenPorts().size(), seen) << what;
  }
}

TEST_F(ProcessesOfMacos, ProcessorUseIsInCoresWhateverTheClocksCount) {
  const std::tuple<const char*, std::pair<std::uint64_t, std::uint64_t>, bool, std::uint64_t> clocks[] = {
      {"ticks of 125/3 nanoseconds", {125, 3}, false, 0},
      {"ticks of one nanosecond", {1, 1}, false, 0},
      {"translated", {125, 3}, true, 24'000'000},
      {"translated on a faster clock", {1, 1}, true, 1'000'000'000},
      {"translated, of unknown frequency", {125, 3}, true, 0},
      {"translated, of absurd frequency", {125, 3}, true, 10'000'000'001},
  };
  for (const auto& [what, timebase, translated, frequency] : clocks) {
    kernel.timebase = timebase;
    kernel.translated = translated;
    kernel.values["sysctl.proc_translated"] = bytesOf(translated ? 1 : 0);
    kernel.values["hw.tbfrequency"] = bytesOf(frequency);
    MacosProcessSource fresh({.pid = 1, .uid = 501, .home = "/Users/me"});
    ProcessTable table(fresh);
    // Ticks of a machine that has been awake for 28 years, where a product of both figures would not fit.
    kernel.awakeNanoseconds = 900'000'000'000'000'000;
    process() = {.userNanoseconds = 7'000'000'000, .systemNanoseconds = 1'000'000'000};
    table.firstPass();
    kernel.awakeNanoseconds += 2'000'000'000;
    process().userNanoseconds += 2'000'000'000;
    process().systemNanoseconds += 1'000'000'000;
    const PidMap<Proc> procs = table.secondPass(timestamp(2'000));
    EXPECT_NEAR(procs.find(pid)->second.cpu, 1.5, 0.000'001) << what;
  }
}

TEST_F(ProcessesOfMacos, TimesThatDoNotFitTogetherAreNone) {
  kernel.timebase = {1, 1};
  process() = {.userNanoseconds = std::numeric_limits<std::uint64_t>::max(), .systemNanoseconds = 1};
  EXPECT_EQ(source.processorTime(pid), std::nullopt);
  EXPECT_EQ(source.process(pid)->usage(), std::nullopt);
}

TEST_F(ProcessesOfMacos, APidThatIsUsedAgainIsAnotherProcess) {
  ProcessTable table(source);
  for (const std::uint64_t started : {1'000U, 1'001U}) {
    const std::string name = started == 1'000 ? "old" : "new";
    process() = {.started = started,
                 .path = "/bin/" + name,
                 .argumentCount = 1,
                 .strings = ended("/bin/" + name) + ended(name),
                 .userNanoseconds = 9'000'000'000 - started};
    table.firstPass();
    const PidMap<Proc> procs = table.secondPass(timestamp(2'000));
    EXPECT_EQ(procs.find(pid)->second.args, Strings{name});
  }
}

}  // namespace
}  // namespace tarnwick
