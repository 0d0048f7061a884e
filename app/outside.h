// The world outside the program, in small objects: the program takes the real ones, tests hand in twins.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/remedies/system_targets.h"
#include "app/settings/user_settings.h"
#include "context/browsers.h"
#include "sampling/live_machine.h"
#include "sampling/tools/posix/posix_tool_runner.h"
#include "sampling/tools/tool_places.h"
#include "system/clock.h"
#include "system/unix_socket.h"

namespace tarnwick {

// None of it is owned.
struct Outside {
  Self self;  // whose processes and whose home; the program itself is no finding
  UserSettings& settings;
  Clock& clock;
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
  explicit RealOutside(const Self& self);

  Outside parts();

 private:
  const Self self_;
  std::unique_ptr<UserSettings> settings_;
  SystemClock clock_;
  PosixToolRunner tools_;
  UnixSocketTransport transport_;
  std::unique_ptr<LiveMachine> sources_;
  std::unique_ptr<Browsers> browsers_;
  std::unique_ptr<SystemTargets> targets_;
};

}  // namespace tarnwick
