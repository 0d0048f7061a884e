// One sampled state of the machine, as plain values. Sampling makes it, diagnosis and the interface read
// it; nothing in it refers back to the live system, and copying it copies everything. Bytes are bytes,
// durations are seconds. All texts are valid UTF-8 but may hold control characters.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "records/basics.h"
#include "records/pid_map.h"

namespace tarnwick {

// The part after the last "/" of a path or program name; the whole text when it holds no "/".
std::string_view lastPathComponent(std::string_view path);

// One process of the user.
struct Proc {
  Pid pid = 0;
  Pid ppid = 0;
  std::uint32_t uid = 0;          // owner
  Pid session = 0;                // pid of its session's leader; 0 where the system does not tell
  std::string path;               // executable; empty when it could not be read
  std::vector<std::string> args;  // the program as invoked, then its arguments; empty inside an application
  Timestamp started;              // whole seconds
  std::uint64_t footprint = 0;    // memory the process is charged for, bytes
  std::uint64_t resident = 0;     // resident set, bytes
  double cpu = 0;   // cores' worth over the interval (1.0 = one core busy); 0 without a first sample
  std::string cwd;  // working directory; empty inside an application or when unreadable
  std::vector<std::uint16_t>
      ports;                       // listening TCP ports, ascending; only outside applications after 12 hours
  std::optional<std::string> app;  // application it belongs to; absent for command-line programs and daemons
  // A shell that leads its session and has a terminal. Where terminals do not start their shells as login
  // shells, this tells that somebody types into it.
  bool terminalShell = false;
  bool inContainer = false;  // one of those that Snapshot::containerLoad counts

  // The last path component of the first argument, else of `path`: an interpreter started through a
  // link is named by the link.
  std::string_view name() const;
};

// One running container.
struct Container {
  std::string id;         // the engine's id, its first 12 characters
  std::string name;       // without slashes at its ends
  std::string status;     // the engine's words, such as "Up 3 hours"; may be empty
  std::string image;      // image reference; may be empty
  std::uint64_t mem = 0;  // bytes in use without droppable cache; 0 when unknown

  bool operator==(const Container&) const = default;
};

// A process of another user, of which only what everybody may read is known.
struct OtherProc {
  Pid pid = 0;
  std::uint32_t uid = 0;       // owner
  std::string name;            // the kernel's, at most 15 characters; kernel threads have longer ones
  std::uint64_t resident = 0;  // resident set, bytes; what is shared counts for each
  double cpu = 0;              // as in Proc
  Timestamp started;           // whole seconds; 1970 when unknown
  // Bytes that no file stands behind, with nothing shared in them; absent unless everybody was asked for.
  std::optional<std::uint64_t> footprint = {};
  bool kernel = false;       // a thread of the kernel's own
  bool inContainer = false;  // as in Proc

  bool operator==(const OtherProc&) const = default;
};

// What the containers use together that run on this system itself, without a virtual machine around them.
struct ContainerLoad {
  std::int64_t count = 0;   // also those that the engine did not name
  std::uint64_t bytes = 0;  // in use without droppable cache
  double cpu = 0;           // cores' worth over the interval

  bool operator==(const ContainerLoad&) const = default;
};

// What one container uses that runs on this system itself.
struct ContainerUse {
  std::string id;           // the engine's, its first 12 characters
  std::uint64_t bytes = 0;  // in use without droppable cache
  double cpu = 0;           // cores' worth over the interval
  std::int64_t count = 0;   // processes

  bool operator==(const ContainerUse&) const = default;
};

// Running containers that are counted and not listed.
struct UnlistedContainers {
  std::int64_t count = 0;
  std::uint64_t bytes = 0;  // in use without droppable cache

  bool operator==(const UnlistedContainers&) const = default;
};

// One running application that has an identifier and a place on disk.
struct RunningApp {
  Pid pid = 0;
  std::string name;         // localized
  std::string bundleID;     // bundle identifier; on Linux the desktop entry's id
  std::string path;         // application bundle; on Linux the desktop entry's file
  bool background = false;  // shows no Dock icon; on Linux: autostarted or not shown

  bool operator==(const RunningApp&) const = default;
};

// Facts about the open tabs of one browser.
struct Tabs {
  int duplicates = 0;                              // tabs that repeat an address that is already open
  std::vector<std::pair<std::string, int>> piles;  // (host, tabs), most tabs first

  bool operator==(const Tabs&) const = default;
};

// May this program send Apple events to a browser?
enum class Access { allowed, denied, notAsked, unknown };

// The operating system's thermal state.
enum class ThermalState { nominal, fair, serious, critical };

// Facts about the repository that holds a directory.
struct Git {
  std::string repo;                 // repository name
  std::string branch;               // branch, or 7 characters of the commit when HEAD is detached
  std::string lastCommit;           // subject; empty when unknown
  std::string lastCommitAgo;        // in git's own words, such as "14 hours ago"; empty when unknown
  bool isCopy = false;              // a linked work tree or other extra copy
  std::optional<std::string> slug;  // "owner/name" of origin on the code-hosting service

  bool operator==(const Git&) const = default;
};

// What a Claude Code process works on; every field may be absent.
struct ClaudeWork {
  std::optional<std::string> title;     // session title
  std::optional<std::int64_t> pr;       // pull-request number
  std::optional<std::string> prRepo;    // "owner/name" of its repository
  std::optional<std::string> job;       // background job's name
  std::optional<std::string> jobState;  // its state word
  std::optional<Timestamp> jobUpdated;  // when the job last changed
  std::optional<std::string> jobDir;    // directory it works in

  bool operator==(const ClaudeWork&) const = default;
};

struct Snapshot {
  PidMap<Proc> procs;             // visited in ascending pid
  std::vector<OtherProc> others;  // ascending pid; only where the user's own explain less than half, or
                                  // where everybody was asked for
  std::map<std::uint32_t, std::string> userNames;  // of the owners of `others` by uid; where everybody was
                                                   // asked for, and only those that this system knows itself
  std::vector<Container> containers;  // running containers in the engine's order, of very many the biggest
  UnlistedContainers moreContainers;  // all others
  std::optional<ContainerLoad> containerLoad;  // absent where no container runs on this system itself
  std::vector<ContainerUse> containerUse;      // each of those
  std::vector<RunningApp> apps;                // in the order the workspace lists them
  std::int64_t diskFree = 0;                   // bytes free on the volume that fills up first, mostly "/"
  std::int64_t diskTotal = 0;                  // bytes of that volume; 0 when unknown
  std::uint64_t ram = 0;                       // installed memory, bytes; 0 when unknown
  std::uint64_t swapUsed = 0;                  // bytes
  std::uint64_t memoryInUse = 0;  // bytes that cannot be given out at once, those in swap too; 0 when unknown
  double cpuBusy = 0;             // share of all processor time that was not idle, 0..1
  int cores = 0;                  // active cores; readers take less than 1 as 1
  double uptime = 0;              // seconds since the machine started
  Timestamp now;                  // when the sample was complete
  ThermalState thermal = ThermalState::nominal;
  std::int32_t pressure = 1;             // memory pressure: 1 normal, 2 warning, 4 critical
  std::optional<int> memorySaver;        // Chrome's Memory Saver state; absent when unknown
  std::map<std::string, Access> access;  // per running scriptable browser, by bundle identifier
  std::map<std::string, Tabs> tabs;      // per browser whose tabs could be read, by bundle identifier
  PidMap<std::vector<Pid>> children;     // derived by index(): parent to children, ascending

  // Derives `children` from `procs`, from scratch. A parent that is not in `procs` gets an entry too.
  void index();
};

}  // namespace tarnwick
