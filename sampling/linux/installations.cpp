#include "sampling/linux/installations.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "records/browsers.h"
#include "records/shells.h"
#include "records/snapshot.h"
#include "records/text.h"
#include "sampling/decode/desktop_entry.h"
#include "sampling/decode/launch_command.h"

namespace tarnwick {
namespace {

constexpr std::size_t firstBytes = 2;  // tell a script
constexpr std::size_t scriptBytes = 65'536;
constexpr int deepestScript = 4;  // scripts that start scripts

// Where programs that belong to nobody lie side by side.
constexpr std::array<std::string_view, 12> sharedFolders{"/",
                                                         "/opt",
                                                         "/usr",
                                                         "/usr/lib",
                                                         "/usr/lib32",
                                                         "/usr/lib64",
                                                         "/usr/libexec",
                                                         "/usr/share",
                                                         "/usr/local",
                                                         "/usr/local/lib",
                                                         "/usr/local/share",
                                                         "/srv"};
constexpr std::array<std::string_view, 5> programFolders{"bin", "sbin", "games", "lib", "libexec"};
constexpr std::array<std::string_view, 6> personalFolders{"Applications", "Desktop", "Documents",
                                                          "Downloads",    "bin",     ".local"};
constexpr std::array<std::string_view, 6> searched{"/usr/local/bin/", "/usr/bin/",         "/bin/",
                                                   "/usr/games/",     "/usr/local/games/", "/usr/sbin/"};
constexpr std::string_view imageMounts = "/tmp/.mount_";

template <typename Words>
bool isOneOf(std::string_view word, const Words& words) {
  return std::ranges::find(words, word) != words.end();
}

std::string parentOf(const std::string& path) {
  return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

// The interpreter that a script names in its first line, by its file's name; empty for another file.
std::string interpreterOf(std::string_view head) {
  if (!head.starts_with("#!")) return {};
  head.remove_prefix(2);
  std::string_view line = takeLine(head);
  std::string_view program = takeWord(line);
  while (lastPathComponent(program) == "env" || (program.starts_with('-') && !line.empty()))
    program = takeWord(line);
  return std::string(lastPathComponent(program));
}

bool isBetter(const DesktopEntry& a, const DesktopEntry& b) {
  const auto rank = [](const DesktopEntry& entry) {
    return std::tuple(browserOfDesktopID(entry.id) == nullptr, !entry.shown,
                      commandWords(entry.command).size(), entry.id.size());
  };
  return rank(a) < rank(b);
}

}  // namespace

const Installations::Installation* Installations::ofFlatpak(std::string_view id) {
  readAll();
  const auto found = flatpaks_.find(id);
  return found == flatpaks_.end() ? nullptr : &found->second;
}

const Installations::Interpreted* Installations::interpreted(const std::string& id) {
  readAll();
  const auto found = interpreted_.find(id);
  return found == interpreted_.end() ? nullptr : &found->second;
}

bool Installations::anyUnknown() {
  readAll();
  return anyUnknown_;
}

const Installations::Installation* Installations::ofExecutable(const std::string& path) {
  readAll();
  const auto file = programs_.find(path);
  const Installation* exact = file == programs_.end() ? nullptr : &file->second;
  if (exact != nullptr && exact->entries.front().shown) return exact;
  if (path.starts_with(imageMounts)) return ofImage(path.substr(0, path.find('/', imageMounts.size())));
  for (std::string folder = parentOf(path); folder.size() > 1; folder = parentOf(folder)) {
    if (const auto found = folders_.find(folder); found != folders_.end()) return &found->second;
  }
  return exact;
}

// An image carries its own entry at the top of its mount.
const Installations::Installation* Installations::ofImage(const std::string& mount) {
  auto& image = images_[mount];
  if (!image) {
    for (const std::string& id : files_.folderEntries(mount)) {
      if (!id.ends_with(".desktop")) continue;
      DesktopEntries its({mount}, messageLocale(), &files_);
      if (auto entry = its.find(id.substr(0, id.rfind('.')))) image = Installation{{std::move(*entry)}, {}};
    }
  }
  return image ? &*image : nullptr;
}

void Installations::readAll() {
  if (std::exchange(isRead_, true)) return;
  for (const DesktopEntry& entry : entries_.all()) {
    if (!entry.terminal && !entry.command.empty()) place(entry);
  }
}

void Installations::place(const DesktopEntry& entry) {
  const Launch launch = launchOf(commandWords(entry.command));
  if (!launch.snap.empty()) {
    for (const char* snaps : {"/snap/", "/var/lib/snapd/snap/"})
      add(folders_, snaps + launch.snap, {}, entry);
  } else if (!launch.flatpak.empty()) {
    add(flatpaks_, launch.flatpak, {}, entry);
  } else if (const std::string file = located(launch.program); !placeProgram(file, entry, 0)) {
    const bool runtime = isSharedRuntime(lastPathComponent(launch.program));
    anyUnknown_ = anyUnknown_ || !runtime;
    interpreted_.try_emplace(entry.id, Interpreted{entry, {}});
  }
  // What the bus starts for the application need not be what the menu starts.
  if (entry.id.find('.') == std::string::npos) return;
  const auto service =
      files_.readSmallFile("/usr/share/dbus-1/services/" + entry.id + ".service", desktopEntryLimit);
  std::string_view text = service ? std::string_view(*service) : std::string_view();
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with("Exec="))
      placeProgram(located(launchOf(commandWords(line.substr(5))).program), entry, 0);
  }
}

// False when the file does not tell what will run.
bool Installations::placeProgram(const std::string& file, const DesktopEntry& entry, int depth) {
  const std::string_view name = lastPathComponent(file);
  if (file.empty() || isSharedRuntime(name)) return false;
  auto head = files_.readFileHead(file, firstBytes);
  if (head && head->starts_with("#!")) head = files_.readFileHead(file, scriptBytes);
  if (!head) return false;
  const std::string interpreter = interpreterOf(*head);
  const std::string folder = installationFolder(file);
  // A folder "bin" with a language's scripts has the language in it too.
  const bool byLanguage =
      !interpreter.empty() && !isInteractiveShell(interpreter) && folder != parentOf(file);
  if (!folder.empty() && !byLanguage)
    add(folders_, folder, interpreter.empty() ? file : std::string(), entry);
  if (interpreter.empty()) {
    add(programs_, file, file, entry);
    return true;
  }
  if (!isInteractiveShell(interpreter)) {
    interpreted_.try_emplace(entry.id, Interpreted{entry, std::string(name)});
    return true;
  }
  bool placed = false;
  for (const std::string& program : programsOfScript(*head, file)) {
    const std::string next = located(program);
    if (placed || next.empty() || depth == deepestScript) continue;
    placed = placeProgram(next, entry, depth + 1);
  }
  return placed;
}

void Installations::add(std::map<std::string, Installation, std::less<>>& where, const std::string& key,
                        const std::string& program, const DesktopEntry& entry) {
  Installation& installation = where[key];
  if (installation.program.empty()) installation.program = program;
  auto& entries = installation.entries;
  if (std::ranges::find(entries, entry.id, &DesktopEntry::id) != entries.end()) return;
  entries.insert(std::ranges::upper_bound(entries, entry, isBetter), entry);
}

// The real file behind a program's name or path; empty when there is none.
std::string Installations::located(const std::string& program) {
  if (program.starts_with('/')) return files_.realPath(program).value_or("");
  if (program.empty() || program.find('/') != std::string::npos) return {};
  for (const std::string_view folder : searched) {
    std::string file = std::string(folder) + program;
    if (files_.isExecutableFile(file)) return files_.realPath(file).value_or("");
  }
  const std::string own = home_ + "/.local/bin/" + program;
  return files_.isExecutableFile(own) ? files_.realPath(own).value_or("") : std::string();
}

// The folder that holds nothing but the application of the file; empty when there is none.
std::string Installations::installationFolder(const std::string& file) const {
  std::string folder = parentOf(file);
  const bool inBin = lastPathComponent(folder) == "bin";
  if (inBin) folder = parentOf(folder);
  // A user's own tools, a language's say, share their "bin" too.
  const bool usersTools =
      inBin && folder.starts_with(home_ + "/") && !folder.starts_with(home_ + "/.local/share/");
  return usersTools || !isPrivate(folder) ? std::string() : folder;
}

bool Installations::isPrivate(const std::string& folder) const {
  const std::string_view name = lastPathComponent(folder);
  const std::string above = parentOf(folder);
  if (isOneOf(folder, sharedFolders) || folder == home_ || above == "/") return false;
  if (above == home_ && isOneOf(name, personalFolders)) return false;
  if (folder == home_ + "/.local/share" || above == "/home") return false;
  const bool system = above == "/usr" || above == "/usr/local" || above == home_ + "/.local";
  if (system && (isOneOf(name, programFolders) || name == "share")) return false;
  return !(above == "/usr/lib" && name.find("-linux-gnu") != std::string_view::npos);
}

}  // namespace tarnwick
