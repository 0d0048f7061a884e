// A folder that is the user's alone, and what the programs of one user meet at in it. Whatever else stands
// under an expected name, put there by whomever, is refused: it is neither followed nor waited for. Any
// thread.
#pragma once

#include <optional>
#include <string>

#include "system/posix/descriptor.h"

namespace tarnwick {

class PrivateFolder {
 public:
  // Absent unless `path` is absolute and names a folder, not a link to one, that belongs to the user with
  // mode 0700, on a file system of this machine: one that waits for somebody else would hold the start up.
  static std::optional<PrivateFolder> open(const std::string& path);

  // What came of asking for a lock.
  struct Lock {
    enum class State {
      held,       // ours as long as `file` is open
      elsewhere,  // another process holds it
      refused     // what stands under the name is no file of the user's own, or the system refuses
    };
    State state = State::refused;
    Descriptor file;
  };

  // Makes the file, for the user alone, where there is none. Never waits.
  Lock lock(const std::string& name) const;

  // Is it a socket that belongs to the user, and to nobody else?
  bool hasSocket(const std::string& name) const;

 private:
  explicit PrivateFolder(Descriptor folder) : folder_(std::move(folder)) {}

  Descriptor folder_;
};

}  // namespace tarnwick
