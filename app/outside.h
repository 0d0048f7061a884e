// The world outside the program, in small objects: the program takes the real ones, tests hand in twins.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/remedies/system_targets.h"
#include "app/settings/user_settings.h"
#include "context/browsers.h"
#include "sampling/live_machine.h"
#include "sampling/tools/limited_tool_runner.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "system/check_limits.h"
#include "system/clock.h"
#include "system/files.h"
#include "system/mutex.h"
#include "system/posix/ending_signals.h"
#include "system/posix/guarded_files.h"
#include "system/unix_socket.h"

namespace tarnwick {

// None of it is owned.
struct Outside {
  Self self;  // whose processes and whose home; the program itself is no finding
  UserSettings& settings;
  Clock& clock;
  CheckLimits& limits;
  Files& files;      // in folders of other programs
  Files& homeFiles;  // the user's own, and the system's
  ToolRunner& tools;
  ToolCandidates toolCandidates;
  SocketTransport& transport;
  std::vector<std::string> engineSockets;  // where a container engine may be, the preferred place first
  LiveMachine& sources;
  Browsers& browsers;
  SystemTargets& targets;
};

// The system that the program runs on; owns what its parts() name.
class RealOutside {
 public:
  // `program`: the path of this program, which is started anew to ask about files. `distant`: what the list
  // of mounts says now, when it has been read already.
  RealOutside(const Self& self, const std::string& program, const DistantPoints& distant = {});

  Outside parts();

  // Watches for what ends the program from now on, not only once there is a tool that could outlive it. For a
  // program that is about to have many threads.
  void watchForTheEnd() { endings_.watch(); }

  // What is to be done besides when a signal ends the program; it must be quick and is done by a thread of
  // its own. Empty: nothing. Any thread.
  void atTheEnd(std::function<void()> act) {
    const MutexLock lock(endMutex_);
    endAct_ = std::move(act);
  }

  // Ends every tool that runs, for good. Any thread.
  void endTools() { tools_.endAll(); }

 private:
  void beforeTheEnd();

  const Self self_;
  SystemClock clock_;
  CheckLimits limits_{clock_};
  GuardedFiles files_;
  HomeFiles homeFiles_;
  CheckLimits unlimited_{clock_};  // what the panel asks for itself belongs to no check
  GuardedFiles settingsFiles_;
  HomeFiles settingsHome_{settingsFiles_, clock_};
  const Self placed_;  // as self_, with a home that has no files where the real one does not answer
  std::unique_ptr<UserSettings> settings_;
  Mutex endMutex_;
  std::function<void()> endAct_ TARNWICK_GUARDED_BY(endMutex_);
  PosixToolRunner tools_{[this] { endings_.watch(); }};
  EndingSignals endings_{[this] { beforeTheEnd(); }};
  LimitedToolRunner limitedTools_{tools_, limits_};
  UnixSocketTransport transport_{&homeFiles_};
  std::unique_ptr<LiveMachine> sources_;
  std::unique_ptr<Browsers> browsers_;
  std::unique_ptr<SystemTargets> targets_;
};

}  // namespace tarnwick
