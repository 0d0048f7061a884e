// The machine's figures, signals, mounts, tools and the program itself against the double of macOS's kernel.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/sysctl.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstring>

#include "app/explain/language_model.h"
#include "app/program/own_process.h"
#include "app/remedies/macos/macos_targets.h"
#include "sampling/macos/macos_machine_source.h"
#include "sampling/tools/tool_places.h"
#include "system/mounts.h"
#include "tests/macos/double/kernel.h"

namespace tarnwick {
namespace {

using darwin::bytesOf;
using darwin::Kernel;

MacosMachineSource machineSource() {
  return MacosMachineSource({.thermal = [] { return ThermalState::nominal; },
                             .importantCapacity = [] { return std::optional<std::int64_t>(); }});
}

TEST(MachineOfMacos, TicksGoOnBeyondThirtyTwoBitsAndOverAFailure) {
  Kernel kernel;
  MacosMachineSource machine = machineSource();
  const std::tuple<std::array<std::uint32_t, 4>, std::uint64_t, std::uint64_t> looks[] = {
      {{10, 20, 4'294'967'295, 5}, 35, 4'294'967'330},
      {{11, 22, 9, 8}, 41, 4'294'967'346},  // idle wrapped: ten further
      {{4, 22, 9, 8}, 4'294'967'330, 8'589'934'635},
  };
  for (const auto& [ticks, busy, total] : looks) {
    kernel.ticks = ticks;
    const CpuTicks found = machine.cpuTicks();
    EXPECT_EQ(found.busy, busy);
    EXPECT_EQ(found.total, total);
    kernel.refused["ticks"] = 0;
    EXPECT_EQ(machine.cpuTicks().total, 0U);
    kernel.refused.clear();
  }
}

TEST(MachineOfMacos, TheRightToTheHostIsGivenBack) {
  Kernel kernel;
  { const MacosMachineSource machine = machineSource(); }
  EXPECT_EQ(kernel.rights, 0);
}

TEST(MachineOfMacos, ANamedValueCountsOnlyInItsWholeSize) {
  const std::map<std::string, std::string> whole = {
      {"hw.memsize", bytesOf(std::uint64_t{17'179'869'184})},
      {"vm.swapusage", bytesOf(xsw_usage{.xsu_total = 3, .xsu_used = 2'147'483'648})},
      {"kern.memorystatus_vm_pressure_level", bytesOf(std::int32_t{4})},
      {"hw.activecpu", bytesOf(std::int32_t{10})},
      {"kern.boottime", bytesOf(timeval{1'700'000'000, 999'999})}};
  for (const std::string fault : {"", "short", "long", "absent", "refused"}) {
    Kernel kernel;
    MacosMachineSource machine = machineSource();
    for (const auto& [name, bytes] : whole) {
      if (fault != "absent") kernel.values[name] = bytes;
      if (fault == "short") kernel.values[name].pop_back();
      if (fault == "long") kernel.values[name] += '\0';
      if (fault == "refused") kernel.refused[name] = EPERM;
    }
    const MemoryState memory = machine.memory();
    const bool told = fault.empty();
    EXPECT_EQ(memory.ram, told ? 17'179'869'184 : 0U) << fault;
    EXPECT_EQ(memory.swapUsed, told ? 2'147'483'648 : 0U) << fault;
    EXPECT_EQ(memory.pressure, told ? std::optional(4) : std::nullopt) << fault;
    EXPECT_EQ(machine.cores(), told ? 10 : 0) << fault;
    EXPECT_EQ(machine.bootTime(), told ? std::optional<std::int64_t>(1'700'000'000) : std::nullopt) << fault;
  }
}

TEST(MachineOfMacos, MemoryInUseIsWhatCannotBeHadBackAtOnce) {
  // Pages of applications, of these to be thrown away, wired down, of the compressor; expected.
  const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint64_t> cases[] = {
      {1'000, 100, 20, 3, 923}, {10, 11, 20, 3, 23}, {0, 0, 0, 0, 0}};
  Kernel kernel;
  MacosMachineSource machine = machineSource();
  for (const auto& [applications, purgeable, wired, compressor, inUse] : cases) {
    kernel.pages.internal_page_count = applications;
    kernel.pages.purgeable_count = purgeable;
    kernel.pages.wire_count = wired;
    kernel.pages.compressor_page_count = compressor;
    EXPECT_EQ(machine.memory().inUse, inUse * 16'384);
  }
  kernel.pages.wire_count = 5;
  kernel.refused["pages"] = EPERM;
  EXPECT_EQ(machine.memory().inUse, 0U);
}

struct statfs volume(const char* point, const char* kind) {
  struct statfs made {};
  made.f_bsize = 4'096;
  made.f_blocks = 1'000;
  made.f_bfree = 900;  // not all of it for the user
  made.f_bavail = 600;
  std::string(point).copy(made.f_mntonname, sizeof made.f_mntonname - 1);
  std::string(kind).copy(made.f_fstypename, sizeof made.f_fstypename - 1);
  return made;
}

TEST(MachineOfMacos, TheDiskIsTheRootVolume) {
  Kernel kernel;
  kernel.volumes = {volume("/", "apfs")};
  EXPECT_EQ(machineSource().disk().free, 2'457'600);
  EXPECT_EQ(machineSource().disk().total, 4'096'000);
  kernel.refused["statfs"] = EIO;
  EXPECT_EQ(machineSource().disk().total, 0);
}

TEST(MountsOfMacos, VolumesMayComeAndGoBetweenTwoQuestions) {
  const std::tuple<const char*, std::size_t, int, std::size_t> changes[] = {{"as before", 2, 0, 2},
                                                                            {"more", 9, 0, 2},
                                                                            {"fewer", 1, 0, 1},
                                                                            {"none", 0, 0, 0},
                                                                            {"failure", 2, EIO, 0}};
  for (const auto& [what, then, failure, seen] : changes) {
    Kernel kernel;
    kernel.volumes = {volume("/", "apfs"), volume("/Volumes/share", "smbfs")};
    kernel.before = [&, calls = 0](const std::string&) mutable {
      if (++calls != 2) return;
      kernel.volumes.resize(then, volume("/Volumes/new", "apfs"));
      if (failure != 0) kernel.refused["volumes"] = failure;
    };
    const std::vector<Mount> found = mounts();
    ASSERT_EQ(found.size(), seen) << what;
    if (seen == 2) EXPECT_EQ(found[1].point + " " + found[1].kind, "/Volumes/share smbfs");
  }
}

TEST(SignalsOfMacos, OnlyTheProcessThatWasMeantIsHit) {
  struct Case {
    const char* what;
    Pid pid;
    std::function<void(Kernel&)> change;  // since the table was made
    SignalOutcome::Kind kind;
    std::string error;
  };
  using Kind = SignalOutcome::Kind;
  const Case cases[] = {
      {"the very process", 42, [](Kernel&) {}, Kind::sent, ""},
      {"gone", 42, [](Kernel& k) { k.processes.clear(); }, Kind::refused, ""},
      {"its pid used again", 42, [](Kernel& k) { k.processes[42].started = 1'001; }, Kind::refused, ""},
      {"its pid used again by somebody else", 42, [](Kernel& k) { k.processes[42].uid = 502; }, Kind::refused,
       ""},
      {"with another's rights since", 42, [](Kernel& k) { k.processes[42].uid = 0; }, Kind::refused, ""},
      {"a short record", 42, [](Kernel& k) { k.answers["record"] = 135; }, Kind::refused, ""},
      {"may not be read", 42, [](Kernel& k) { k.refused["record"] = EPERM; }, Kind::refused, ""},
      {"the system refuses", 42, [](Kernel& k) { k.refused["kill"] = EPERM; }, Kind::failed,
       "Operation not permitted"},
      {"ends before the signal", 42,
       [](Kernel& k) {
         k.before = [&](const std::string& call) {
           if (call == "kill") k.processes.clear();
         };
       },
       Kind::failed, "No such process"},
      {"the first process", 1, [](Kernel& k) { k.processes[1] = {}; }, Kind::refused, ""},
      {"our own group", 0, [](Kernel& k) { k.processes[0] = {}; }, Kind::refused, ""},
      {"everybody", -1, [](Kernel& k) { k.processes[-1] = {}; }, Kind::refused, ""},
  };
  for (const Case& at : cases) {
    Kernel kernel;
    kernel.processes[42] = {};
    at.change(kernel);
    errno = ENOTTY;
    const SignalOutcome outcome =
        MacosTargets(501).signal({.pid = at.pid, .number = SIGTERM, .started = timestamp(1'000)});
    EXPECT_EQ(outcome.kind, at.kind) << at.what;
    EXPECT_EQ(outcome.error, at.error) << at.what;
    const std::vector<std::pair<pid_t, int>> hit(at.kind == Kind::sent ? 1 : 0, {42, SIGTERM});
    EXPECT_EQ(kernel.signals, hit) << at.what;
  }
}

TEST(ProgramOnMacos, ALinkIsLeftForTheFileItself) {
  const std::tuple<const char*, bool, std::vector<std::string>> starts[] = {
      {"/usr/local/bin/tarnwick", false, {"/Applications/Tarnwick.app/Contents/MacOS/Tarnwick"}},
      {"/Applications/Tarnwick.app/Contents/MacOS/Tarnwick", false, {}},
      {"/usr/local/bin/tarnwick", true, {}},  // the file is gone
      {"", false, {}},
  };
  for (const auto& [executable, gone, programs] : starts) {
    Kernel kernel;
    kernel.executable = executable;
    kernel.links["/usr/local/bin/tarnwick"] = "/Applications/Tarnwick.app/Contents/MacOS/Tarnwick";
    if (gone) kernel.refused["realpath"] = ENOENT;
    leaveSymbolicLink(nullptr);
    EXPECT_EQ(kernel.programs, programs) << executable;
    EXPECT_EQ(ownExecutable(), executable);
  }
}

TEST(ProgramOnMacos, ItsOwnCostIsZeroWhereTheKernelDoesNotTell) {
  Kernel kernel;
  EXPECT_EQ(ownCost()->footprint(), 0U);
  kernel.processes[::getpid()] = {.footprint = 5'000'000};
  EXPECT_EQ(ownCost()->footprint(), 5'000'000U);
  EXPECT_EQ(ownCost()->peakFootprint(), 10'000'000U);
}

bool modelIsThere() { return true; }

// Answers with what it was told; fails without a prompt.
bool repeat(const char* instructions, const char* prompt, char** does, bool* sure) {
  *does = ::strdup((std::string(instructions) + "|" + prompt).c_str());
  *sure = true;
  return *prompt != '\0';
}

TEST(LanguageModelOfMacos, OnlyALibraryWithBothFunctionsIsOne) {
  const std::string name = "libtarnwick_language_model.dylib";
  const std::pair<std::string, void*> available{"tarnwick_language_model_available",
                                                reinterpret_cast<void*>(modelIsThere)};
  const std::pair<std::string, void*> answer{"tarnwick_language_model_answer",
                                             reinterpret_cast<void*>(repeat)};
  const std::tuple<std::string, std::map<std::string, void*>, bool> places[] = {
      {"@executable_path/" + name, {available, answer}, true},
      {"@executable_path/../Frameworks/" + name, {available, answer}, true},
      {"@executable_path/../lib/tarnwick/" + name, {available, answer}, true},
      {"@executable_path/" + name, {available}, false},
      {"@executable_path/" + name, {answer}, false},
      {name, {available, answer}, false},  // found by nobody's search path
  };
  for (const auto& [place, functions, usable] : places) {
    Kernel kernel;
    kernel.libraries[place] = functions;
    const auto model = systemLanguageModel();
    ASSERT_EQ(model != nullptr, usable) << place;
    if (!usable) continue;
    EXPECT_TRUE(model->available());
    const auto guess = model->answer("in", "a\xFF");
    ASSERT_TRUE(guess.has_value());
    EXPECT_EQ(guess->does, "in|a\xEF\xBF\xBD");
    EXPECT_TRUE(guess->sure);
    EXPECT_FALSE(model->answer("in", "").has_value());
  }
}

TEST(ToolsOfMacos, TheDeveloperFolderIsTheUsersChoice) {
  Kernel kernel;
  EXPECT_EQ(toolCandidates("/Users/me").developerDir, "/Library/Developer/CommandLineTools");
  kernel.links["/var/db/xcode_select_link"] = "/Applications/Xcode.app/Contents/Developer";
  EXPECT_EQ(toolCandidates("/Users/me").developerDir, "/Applications/Xcode.app/Contents/Developer");
}

}  // namespace
}  // namespace tarnwick
