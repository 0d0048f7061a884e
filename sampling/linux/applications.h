// Which application a process belongs to, and which applications run. As on other systems a process belongs
// to the application whose installation holds its executable, wherever it was started; only where a shared
// runtime runs the program, the unit of the user's session manager tells, and then only for its first
// process. Remembers the processes of applications from check to check. One per run, used by one thread at a
// time.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "records/pid_map.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/linux/app_slice.h"
#include "sampling/linux/installations.h"
#include "sampling/linux/proc_reader.h"
#include "sampling/workspace.h"

namespace tarnwick {

struct ApplicationPlaces {
  std::uint32_t uid = 0;  // whose applications
  std::string home;
  std::string procRoot = "/proc";
  std::string cgroupRoot = usualCgroupRoot;
};

class Applications : public Workspace {
 public:
  // `entries` must live longer.
  Applications(DesktopEntries& entries, ApplicationPlaces places);

  // The name of the application that the process with that executable belongs to; absent for every other
  // process.
  std::optional<std::string> of(const ProcessFiles& files, const ProcStat& stat, const std::string& path);

  // Between these two the processes of one look are shown; who is not shown has ended.
  void beginPass();
  void stillThere(Pid pid, const ProcStat& stat);

  // One for each main process, the oldest first: the one that started the others of its unit. An application
  // whose main process has ended does not run any more.
  std::vector<RunningApp> runningApps() override;

 private:
  struct Unit {
    std::string folder;       // in the cgroup tree, from its root; empty without one
    std::string application;  // the id in its name
  };
  struct Member {
    std::uint64_t start = 0;  // clock ticks
    Pid parent = 0;
    int pass = 0;           // when it was last there
    bool mayBeMain = true;  // false for what only serves the application
    std::string unit;       // as Unit::folder
    const DesktopEntry* entry = nullptr;
  };

  // What an executable alone tells; all of it absent for most.
  struct Executable {
    const Installations::Installation* installation = nullptr;
    bool inFlatpak = false;
    bool isRuntime = false;  // what it runs must be asked
  };

  const Executable& executable(const std::string& path);
  const DesktopEntry* entryOf(const Executable& its, const ProcessFiles& files, const ProcStat& stat,
                              const std::string& path, Member& member);
  const DesktopEntry* ofInstallation(const Installations::Installation& from, const ProcessFiles& files,
                                     const std::string& path, Member& member);
  const DesktopEntry* ofFlatpak(const ProcessFiles& files, Member& member);
  const DesktopEntry* ofRuntime(const ProcessFiles& files, const ProcStat& stat, Member& member);
  Unit unitOf(const ProcessFiles& files);
  bool isFirst(const std::string& unit, Pid pid, const ProcStat& stat) const;
  bool runs(const ProcessFiles& files, const std::string& script);
  bool hasUnits();
  bool lives(Pid pid, const Member& member) const;

  ApplicationPlaces places_;
  Installations installations_;
  ProcReader reader_;
  std::optional<bool> hasUnits_;                             // absent until asked for in a pass
  std::unordered_map<std::string, Executable> executables_;  // by path
  PidMap<Member> members_;
  int pass_ = 0;
  int lastShown_ = 0;  // the last pass in which processes were shown
  std::array<char, ProcessFiles::longestLink> buffer_{};
};

}  // namespace tarnwick
