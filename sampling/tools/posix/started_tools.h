// The tools that run, so that none outlives the program and none holds it up. One that cannot even be killed,
// because it waits for a file system that does not answer, is left behind and laid to rest should it ever
// end. Any thread.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <vector>

#include "system/mutex.h"

namespace tarnwick {

class StartedTools {
 public:
  // Around the start of one: false when none may be started any more. `pid` leads a process group; 0 when
  // nothing was started.
  bool beginStart();
  void endStart(pid_t pid);

  // Has it ended? Asked without waiting; it is laid to rest then, and `status` is the system's word about it.
  bool hasEnded(pid_t pid, int& status);

  // Ends it with its children. Waits a moment for its end, not longer.
  void end(pid_t pid);

  // Ends all of them, and whoever is being started.
  void endAll();

 private:
  void layToRestAbandoned() TARNWICK_REQUIRES(mutex_);

  Mutex mutex_;
  std::vector<pid_t> running_ TARNWICK_GUARDED_BY(mutex_);
  std::vector<pid_t> abandoned_ TARNWICK_GUARDED_BY(mutex_);
  std::size_t starting_ TARNWICK_GUARDED_BY(mutex_) = 0;
  bool closed_ TARNWICK_GUARDED_BY(mutex_) = false;
};

}  // namespace tarnwick
