#include "diagnosis/biggest_users.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>
#include <utility>

#include "diagnosis/attribution.h"
#include "diagnosis/browser_names.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "diagnosis/process_kinds.h"
#include "diagnosis/user_groups.h"
#include "records/browsers.h"
#include "records/checked.h"
#include "records/formatted.h"
#include "records/one_line.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr std::uint64_t leastBytes = std::uint64_t{1} << 20U;  // less is shown as nothing
constexpr double leastCores = 0.01;
constexpr std::int32_t scarcePressure = 2;
constexpr double scarceProcessor = 0.8;
constexpr std::size_t mostNamedServers = 3;
constexpr std::size_t mostStopped = 256;  // a longer command is for nobody

// Where the system keeps what a session or the machine needs, and what people do not start themselves.
constexpr std::array<std::string_view, 6> systemFolders{"/usr/lib/",  "/usr/libexec/", "/lib/",
                                                        "/usr/sbin/", "/sbin/",        "/System/"};
constexpr std::array<std::string_view, 6> sessionServices{"dbus-broker",    "dbus-daemon", "pipewire",
                                                          "pipewire-pulse", "pulseaudio",  "wireplumber"};

// May the work below that root be ended without ending what others stand on?
bool mayEnd(const Proc& root, const std::optional<std::string>& who, const Snapshot& snapshot,
            const Self& self) {
  if (root.pid < firstOrdinaryPid || root.uid != self.uid || isPrompt(root, snapshot)) return false;
  if (who) return true;
  const auto begins = [&](std::string_view folder) { return root.path.starts_with(folder); };
  return !root.path.empty() && std::ranges::none_of(systemFolders, begins) &&
         std::ranges::find(sessionServices, root.name()) == sessionServices.end();
}

std::optional<Action> quitAction(const RunningApp* app, std::string_view name) {
  if (app == nullptr || app->bundleID.empty()) return std::nullopt;
  return Action{formatted("Quit {}", name), {QuitApp{app->bundleID}}};
}

// The engine's record of a container; null when it told nothing.
const Container* engineRecord(const ContainerUse& use, const Snapshot& snapshot) {
  const auto found = std::ranges::find(snapshot.containers, use.id, &Container::id);
  return found == snapshot.containers.end() ? nullptr : &*found;
}

std::string browserName(std::string_view app) {
  const KnownBrowser* known = browserOfApp(app);
  return std::string(known == nullptr ? app : known->name);
}

// Puts the chosen groups into words.
class Describer {
 public:
  Describer(const Snapshot& snapshot, Starters& starters, Surroundings& surroundings)
      : snapshot_(snapshot), surroundings_(surroundings), self_(surroundings.self()) {
    const auto own = snapshot.procs.find(self_.pid);
    if (own != snapshot.procs.end()) ownRoot_ = starters.of(own->second).root;
  }

  BiggestUser describe(const UserGroup& group) {
    BiggestUser user{.kind = group.kind,
                     .what = oneLine(whatIs(group)),
                     .bytes = group.bytes,
                     .cpu = group.cpu,
                     .count = group.count,
                     .since = group.since,
                     .who = group.user ? userName(*group.user) : group.who,
                     .stop = stopOf(group)};
    if (user.what.empty()) user.what = "something without a name";
    addProject(group, user);
    for (std::optional<std::string>* text : {&user.who, &user.project, &user.branch})
      if (*text) *text = oneLine(**text);
    if (user.stop) user.stop->label = oneLine(user.stop->label);
    return user;
  }

 private:
  std::string userName(std::uint32_t uid) const {
    const auto known = snapshot_.userNames.find(uid);
    return known == snapshot_.userNames.end() ? formatted("user {}", uid) : known->second;
  }
  std::string whatIs(const UserGroup& group) const;
  std::string jobWords(const UserGroup& group) const;
  std::optional<Action> stopOf(const UserGroup& group) const;
  std::optional<Action> stopJobs(const UserGroup& group) const;
  void addProject(const UserGroup& group, BiggestUser& user);

  const Snapshot& snapshot_;
  Surroundings& surroundings_;
  const Self& self_;
  const Proc* ownRoot_ = nullptr;  // of the job that this program is part of
};

std::string serverWords(const std::vector<const Proc*>& servers) {
  std::vector<std::string> kinds;
  for (const Proc* server : servers) {
    std::string kind = formatted("{} (port {})", serverKind(*server), server->ports.front());
    if (std::ranges::find(kinds, kind) == kinds.end()) kinds.push_back(std::move(kind));
  }
  if (kinds.size() > mostNamedServers) {
    const std::size_t more = kinds.size() - mostNamedServers;
    kinds.resize(mostNamedServers);
    kinds.push_back(formatted("{} more", more));
  }
  return list(kinds);
}

// Its command, or what else it can be told by.
std::string commandOf(const Proc& root) {
  std::string command = shortenedCommand(commandLine(root));
  if (!command.empty()) return command;
  return root.path.empty() ? formatted("process {}", root.pid) : std::string(lastPathComponent(root.path));
}

std::string Describer::jobWords(const UserGroup& group) const {
  const Proc& root = *group.roots.front();
  std::string_view name = root.name();
  if (name.starts_with('-')) name.remove_prefix(1);
  const std::string command = commandOf(root);
  if (name.empty()) name = command;
  const bool prompt = isPrompt(root, snapshot_);
  if (group.roots.size() == 1) return prompt ? formatted("{}, a terminal's shell", name) : command;
  const std::string times = formatted("{} × {}", name, group.roots.size());
  if (prompt) return times + ", shells of terminals";
  return root.args.size() > 1 ? times + ": " + command : times;
}

std::string Describer::whatIs(const UserGroup& group) const {
  switch (group.kind) {
    case UserKind::application:
      return std::string(group.name);
    case UserKind::browser:
      return browserName(group.name);
    case UserKind::container: {
      const Container* known = engineRecord(*group.container, snapshot_);
      return known == nullptr ? "container " + group.container->id
                              : formatted("{} ({})", known->name, dbKind(known->image));
    }
    case UserKind::virtualMachine: {
      const auto count = std::ssize(snapshot_.containers) + snapshot_.moreContainers.count;
      return count == 0 ? "Docker" : formatted("Docker, with {}", plural(count, "container"));
    }
    case UserKind::servers:
      return serverWords(group.servers);
    case UserKind::job:
    case UserKind::sameCommand:
      break;
    case UserKind::otherUser:
      return formatted("processes of {}, mostly {}", userName(*group.user), group.name);
    case UserKind::kernel:
      return formatted("the kernel, mostly {}", group.name);
  }
  return jobWords(group);
}

std::optional<Action> Describer::stopJobs(const UserGroup& group) const {
  const auto mayEndJob = [&](const Proc* root) {
    return root != ownRoot_ && mayEnd(*root, group.who, snapshot_, self_);
  };
  if (group.roots.size() > mostStopped || !std::ranges::all_of(group.roots, mayEndJob)) return std::nullopt;
  if (group.roots.size() == 1) return stop(*group.roots.front(), {}, "Stop it");
  All all;
  for (const Proc* root : group.roots) all.fixes.push_back({stopSignal(*root, {})});
  return Action{formatted("Stop all {}", group.roots.size()), {std::move(all)}};
}

std::optional<Action> Describer::stopOf(const UserGroup& group) const {
  switch (group.kind) {
    case UserKind::application:
      return quitAction(runningApp(group.name, snapshot_), group.name);
    case UserKind::browser:
      return quitAction(runningApp(group.name, snapshot_), browserName(group.name));
    case UserKind::container:
      if (const Container* known = engineRecord(*group.container, snapshot_))
        return Action{"Stop " + known->name, {DockerStop{known->id}}};
      return std::nullopt;
    case UserKind::virtualMachine:
      return quitDocker(snapshot_);
    case UserKind::servers:
    case UserKind::job:
    case UserKind::sameCommand:
      return stopJobs(group);
    case UserKind::otherUser:
    case UserKind::kernel:
      break;
  }
  return std::nullopt;
}

void Describer::addProject(const UserGroup& group, BiggestUser& user) {
  std::string folder = group.folder;
  if (folder.empty()) {
    if (group.roots.empty() || group.kind == UserKind::virtualMachine) return;
    const std::string& cwd = group.roots.front()->cwd;
    const auto there = [&](const Proc* root) { return root->cwd == cwd; };
    if (cwd.empty() || !std::ranges::all_of(group.roots, there)) return;
    folder = projectRoot(cwd, surroundings_);
  }
  if (auto git = surroundings_.git(folder)) {
    user.project = std::move(git->repo);
    user.branch = std::move(git->branch);
  } else if (group.kind == UserKind::servers) {
    user.project = std::string(lastPathComponent(folder));
  }
}

// Places in `groups`, those that have most by `use` first.
template <typename Use>
std::vector<std::size_t> placesBy(const std::vector<UserGroup>& groups, Use use) {
  std::vector<std::size_t> places(groups.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::ranges::stable_sort(places,
                           [&](std::size_t a, std::size_t b) { return use(groups[a]) > use(groups[b]); });
  return places;
}

// The biggest by either, those first that use most of what is scarce.
std::vector<const UserGroup*> chosen(const std::vector<UserGroup>& groups, std::size_t most, Scarce scarce) {
  const auto byMemory = [](const UserGroup& group) { return std::pair(double(group.bytes), group.cpu); };
  const auto byProcessor = [](const UserGroup& group) { return std::pair(group.cpu, double(group.bytes)); };
  const std::vector<std::size_t> memory = placesBy(groups, byMemory);
  const std::vector<std::size_t> processor = placesBy(groups, byProcessor);
  std::set<std::size_t> wanted;
  for (std::size_t i = 0; i < std::min(most, groups.size()); ++i) {
    if (groups[memory[i]].bytes >= leastBytes) wanted.insert(memory[i]);
    if (groups[processor[i]].cpu >= leastCores) wanted.insert(processor[i]);
  }
  std::vector<const UserGroup*> rows;
  for (const std::size_t place : scarce == Scarce::memory ? memory : processor)
    if (wanted.contains(place)) rows.push_back(&groups[place]);
  return rows;
}

// What the machine says is in use of both, else what the groups together use. Intervals that begin one after
// another can hold more work than the machine did in its own: the groups are brought back to that.
void addTotals(const Snapshot& snapshot, std::vector<UserGroup>& groups, BiggestUsers& users) {
  std::uint64_t bytes = 0;
  double cpu = 0;
  for (const UserGroup& group : groups) {
    bytes = saturatingAdd(bytes, group.bytes);
    cpu += group.cpu;
  }
  users.bytesInUse = snapshot.memoryInUse > 0 ? snapshot.memoryInUse : bytes;
  users.cpuInUse = snapshot.cpuBusy > 0 ? snapshot.cpuBusy * std::max(snapshot.cores, 1) : cpu;
  if (cpu <= users.cpuInUse) return;
  for (UserGroup& group : groups) group.cpu *= users.cpuInUse / cpu;
}

Scarce scarceOf(const Snapshot& snapshot, const BiggestUsers& users) {
  if (snapshot.pressure >= scarcePressure) return Scarce::memory;
  if (snapshot.cpuBusy > scarceProcessor) return Scarce::processor;
  const bool fuller = memoryShare(users.bytesInUse, snapshot) > processorShare(users.cpuInUse, snapshot);
  return snapshot.ram > 0 && fuller ? Scarce::memory : Scarce::processor;
}

// The difference of two figures that are small enough, as those are that anybody believes.
std::int64_t difference(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t most = std::uint64_t{1} << 62U;
  return static_cast<std::int64_t>(std::min(a, most)) - static_cast<std::int64_t>(std::min(b, most));
}

void addRest(const std::vector<UserGroup>& groups, bool selfSeen, BiggestUsers& users) {
  std::uint64_t bytes = 0;
  users.restCpu = users.cpuInUse;
  users.restCount = selfSeen ? 1 : 0;
  for (const UserGroup& group : groups) users.restCount += group.count;
  for (const BiggestUser& row : users.rows) {
    bytes = saturatingAdd(bytes, row.bytes);
    users.restCpu -= row.cpu;
    users.restCount -= row.count;
  }
  users.restCpu = std::max(users.restCpu, 0.0);  // what rounding leaves
  users.restBytes = difference(users.bytesInUse, bytes);
}

}  // namespace

std::string_view word(UserKind kind) {
  constexpr std::array<std::string_view, 9> words{"application",     "browser",    "container",
                                                  "virtual_machine", "servers",    "job",
                                                  "same_command",    "other_user", "kernel"};
  return words.at(static_cast<std::size_t>(kind));
}

BiggestUsers biggestUsers(const Snapshot& snapshot, std::size_t most, Surroundings& surroundings) {
  Starters starters(snapshot);
  std::vector<UserGroup> groups = userGroups(snapshot, starters, surroundings);
  BiggestUsers users;
  addTotals(snapshot, groups, users);
  users.scarce = scarceOf(snapshot, users);
  Describer describer(snapshot, starters, surroundings);
  for (const UserGroup* group : chosen(groups, most, users.scarce))
    users.rows.push_back(describer.describe(*group));
  addRest(groups, snapshot.procs.contains(surroundings.self().pid), users);
  return users;
}

std::string biggestOf(const BiggestUsers& users, Scarce kind, std::size_t most, const Snapshot& snapshot) {
  std::vector<const BiggestUser*> rows;
  for (const BiggestUser& row : users.rows)
    if (kind == Scarce::memory ? row.bytes >= leastBytes : row.cpu >= leastCores) rows.push_back(&row);
  std::ranges::stable_sort(rows, [&](const BiggestUser* a, const BiggestUser* b) {
    return kind == Scarce::memory ? a->bytes > b->bytes : a->cpu > b->cpu;
  });
  std::string text;
  for (std::size_t i = 0; i < std::min(most, rows.size()); ++i)
    appendFormatted(text, "{}{} {}", i == 0 ? "" : ", ", rows[i]->what,
                    kind == Scarce::memory ? size(rows[i]->bytes) : pct(rows[i]->cpu, snapshot));
  return text;
}

}  // namespace tarnwick
