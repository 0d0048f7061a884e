#include "system/posix/spawned_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <utility>

namespace tarnwick {
namespace {

// The NULL-ended list of pointers that the system takes; lives as long as `texts`.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

bool prepareAttributes(posix_spawnattr_t& attributes) {
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  sigdelset(&all, SIGKILL);
  sigdelset(&all, SIGSTOP);
  constexpr int flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  return posix_spawnattr_setflags(&attributes, static_cast<short>(flags)) == 0 &&
         posix_spawnattr_setpgroup(&attributes, 0) == 0 &&
         posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
         posix_spawnattr_setsigdefault(&attributes, &all) == 0;
}

bool prepareStream(posix_spawn_file_actions_t& actions, int stream, int as, int access) {
  if (stream == ownStream) return true;
  if (stream == noStream) return posix_spawn_file_actions_addopen(&actions, as, "/dev/null", access, 0) == 0;
  return posix_spawn_file_actions_adddup2(&actions, stream, as) == 0;
}

}  // namespace

pid_t spawnProcess(SpawnRequest request) {
  request.words.insert(request.words.begin(), request.path);
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
  if (posix_spawnattr_init(&attributes) != 0) return 0;
  if (posix_spawn_file_actions_init(&actions) != 0) {
    posix_spawnattr_destroy(&attributes);
    return 0;
  }
  pid_t pid = 0;
  const bool started =
      prepareAttributes(attributes) && prepareStream(actions, request.input, STDIN_FILENO, O_RDONLY) &&
      prepareStream(actions, request.output, STDOUT_FILENO, O_WRONLY) &&
      prepareStream(actions, noStream, STDERR_FILENO, O_WRONLY) &&
      posix_spawn(&pid, request.path.c_str(), &actions, &attributes, pointersTo(request.words).data(),
                  pointersTo(request.variables).data()) == 0;
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return started ? pid : 0;
}

}  // namespace tarnwick
