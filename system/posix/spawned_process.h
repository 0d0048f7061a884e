// Starts a program as one started by hand begins: no signal ignored or blocked, whatever we ignore or block,
// and nothing on standard error. The group of its own lets its children be ended with it, and keeps the keys
// of our terminal from it. Descriptors that are not named here are closed by their own close-on-exec. Any
// thread.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tarnwick {

// What stands at the program's standard input or output beside a descriptor's number.
inline constexpr int ownStream = -1;  // ours
inline constexpr int noStream = -2;   // /dev/null

struct SpawnRequest {
  std::string path;
  std::vector<std::string> words;      // behind the path, which is the first one
  std::vector<std::string> variables;  // the whole environment, "NAME=value" each
  int input = noStream;
  int output = noStream;
};

// The new process, which somebody has to wait for; 0 when it could not be started.
pid_t spawnProcess(SpawnRequest request);

}  // namespace tarnwick
