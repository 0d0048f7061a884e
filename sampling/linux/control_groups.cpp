#include "sampling/linux/control_groups.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "records/limits.h"
#include "records/text.h"
#include "system/small_file.h"

namespace tarnwick {
namespace {

constexpr std::size_t idCharacters = 64;
constexpr std::size_t shownCharacters = 12;
constexpr std::size_t groupFileLimit = 1'048'576;  // bytes
constexpr int deepestPod = 2;                      // a slice for pods and one for each
constexpr int deepestPart = 4;                     // a container may divide itself

bool cutEnd(std::string_view& text, std::string_view end) {
  if (!text.ends_with(end)) return false;
  text.remove_suffix(end.size());
  return true;
}

bool cutStart(std::string_view& text, std::string_view start) {
  if (!text.starts_with(start)) return false;
  text.remove_prefix(start.size());
  return true;
}

std::optional<std::uint64_t> number(std::string_view text) {
  return wholeNumber<std::uint64_t>(takeWord(text));
}

std::string textOf(const std::string& file) { return readSmallFile(file, groupFileLimit).value_or(""); }

// The value in the line "name value"; 0 without one.
std::uint64_t member(std::string_view text, std::string_view name) {
  const auto line = lineOf(text, name);
  return line ? number(*line).value_or(0) : 0;
}

// 0 in the list stands for a process of another pid namespace.
void addPids(const std::string& group, int depth, std::vector<Pid>& pids) {
  const std::string text = textOf(group + "/cgroup.procs");
  for (std::string_view list = text; !list.empty();) {
    const auto pid = wholeNumber<Pid>(takeLine(list));
    if (pid && *pid > 0) pids.push_back(*pid);
  }
  if (depth == deepestPart) return;
  for (const std::string& name : folderEntries(group)) {
    const std::string below = std::string(group).append("/").append(name);
    if (isDirectory(below)) addPids(below, depth + 1, pids);
  }
}

}  // namespace

std::optional<std::string> containerOfGroup(std::string_view name, bool bare) {
  cutEnd(name, ".scope");
  if (!cutStart(name, "docker-") && !cutStart(name, "libpod-") && !bare) return std::nullopt;
  const bool plain = name.find_first_not_of("0123456789abcdef") == std::string_view::npos;
  return plain && name.size() == idCharacters ? std::optional(std::string(name)) : std::nullopt;
}

// Beside a version 1 tree the unified one counts nothing.
ControlGroups::ControlGroups(const std::string& root, std::uint32_t uid)
    : uid_(uid), unified_(isRegularFile(root + "/cgroup.controllers")) {
  memoryRoot_ = unified_ ? root : root + "/memory";
  processorRoot_ = unified_ ? root : root + "/cpuacct";
}

std::vector<ContainerGroup> ControlGroups::containers() const {
  const std::string user = std::to_string(uid_);
  const std::string manager = "/user.slice/user-" + user + ".slice/user@" + user + ".service";
  std::vector<ContainerGroup> found;
  for (const std::string& folder :
       {std::string("/docker"), std::string("/libpod_parent"), std::string("/system.slice"),
        std::string("/machine.slice"), manager, manager + "/user.slice", manager + "/app.slice"}) {
    addFrom(folder, 0, found);
  }
  std::erase_if(found, [](const ContainerGroup& group) {
    return std::find(group.pids.begin(), group.pids.end(), ::getpid()) != group.pids.end();
  });
  return found;
}

void ControlGroups::addFrom(const std::string& folder, int depth, std::vector<ContainerGroup>& found) const {
  for (const std::string& name : folderEntries(memoryRoot_ + folder)) {
    std::string path = std::string(folder).append("/").append(name);
    if (auto id = containerOfGroup(name, folder == "/docker")) {
      found.push_back(read(path, std::move(*id)));
    } else if (depth < deepestPod && name.find("libpod_pod") != std::string::npos) {
      addFrom(path, depth + 1, found);
    }
  }
}

ContainerGroup ControlGroups::read(const std::string& folder, std::string id) const {
  ContainerGroup group;
  group.id = std::move(id);
  group.id.resize(shownCharacters);
  group.bytes = memoryOf(memoryRoot_ + folder);
  group.processorTime = processorTimeOf(processorRoot_ + folder);
  addPids(memoryRoot_ + folder, 0, group.pids);
  return group;
}

// Cache that can be dropped at any time is not held.
std::uint64_t ControlGroups::memoryOf(const std::string& folder) const {
  const auto usage = number(textOf(folder + (unified_ ? "/memory.current" : "/memory.usage_in_bytes")));
  const std::string details = textOf(folder + "/memory.stat");
  const std::uint64_t droppable = member(details, unified_ ? "inactive_file" : "total_inactive_file");
  const std::uint64_t held = usage.value_or(0);
  return believed(droppable < held ? held - droppable : held);
}

std::uint64_t ControlGroups::processorTimeOf(const std::string& folder) const {
  if (!unified_) return number(textOf(folder + "/cpuacct.usage")).value_or(0);
  constexpr std::uint64_t nanosecondsInMicrosecond = 1'000;
  constexpr std::uint64_t mostTime = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t used = member(textOf(folder + "/cpu.stat"), "usage_usec");
  return used > mostTime / nanosecondsInMicrosecond ? mostTime : used * nanosecondsInMicrosecond;
}

}  // namespace tarnwick
