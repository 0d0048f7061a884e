// The control groups of containers, in either version of the tree and wherever an engine lays them: a
// system's or a user's own, under the session manager or by itself. What cannot be read is left out. One
// thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sampling/container_group.h"

namespace tarnwick {

// The engine's id of the container whose group has that name, such as "docker-ID.scope" or "libpod-ID.scope",
// or only "ID" where `bare`; absent for other groups. An id has 64 hexadecimal digits.
std::optional<std::string> containerOfGroup(std::string_view name, bool bare);

class ControlGroups {
 public:
  // `root` is where the tree is mounted.
  ControlGroups(const std::string& root, std::uint32_t uid);

  // Without the one in which this program itself runs: from in there it is the machine.
  std::vector<ContainerGroup> containers() const;

 private:
  void addFrom(const std::string& folder, int depth, std::vector<ContainerGroup>& found) const;
  ContainerGroup read(const std::string& folder, std::string id) const;
  std::uint64_t memoryOf(const std::string& folder) const;
  std::uint64_t processorTimeOf(const std::string& folder) const;

  std::string memoryRoot_;
  std::string processorRoot_;
  std::uint32_t uid_;
  bool unified_;
};

}  // namespace tarnwick
