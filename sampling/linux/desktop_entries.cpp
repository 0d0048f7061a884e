#include "sampling/linux/desktop_entries.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "records/limits.h"
#include "records/text.h"
#include "records/utf8.h"
#include "sampling/decode/desktop_entry.h"

namespace tarnwick {
namespace {

// No vendor nests deeper, and a folder that links to itself ends here.
constexpr int deepestFolder = 3;

// An id names files below the application folders and nothing else, hidden ones not.
bool isSafe(std::string_view id) { return isPlainFileName(id) && !id.starts_with('.'); }

struct FoundEntry {
  std::string file;
  std::string text;
};

// The entry `id` of a folder: "a-b" is the file a-b.desktop or, in a subfolder, a/b.desktop.
std::optional<FoundEntry> findIn(Files& files, const std::string& folder, const std::string& id, int depth) {
  if (!isSafe(id)) return std::nullopt;
  const std::string file = folder + "/" + id + ".desktop";
  if (auto text = files.readSmallFile(file, desktopEntryLimit)) return FoundEntry{file, std::move(*text)};
  if (depth == deepestFolder) return std::nullopt;
  for (auto dash = id.find('-'); dash != std::string::npos; dash = id.find('-', dash + 1)) {
    const std::string below = folder + "/" + id.substr(0, dash);
    if (dash == 0 || !files.isDirectory(below)) continue;
    if (auto found = findIn(files, below, id.substr(dash + 1), depth + 1)) return found;
  }
  return std::nullopt;
}

// Adds the ids of the entries below `folder`; `before` is what the folders above it add to an id.
void collectIds(Files& files, const std::string& folder, const std::string& before, int depth,
                std::set<std::string>& ids) {
  constexpr std::string_view ending = ".desktop";
  for (const std::string& name : files.folderEntries(folder)) {
    const std::string below = std::string(folder).append("/").append(name);
    if (name.ends_with(ending) && isSafe(name)) {
      ids.insert(before + name.substr(0, name.size() - ending.size()));
    } else if (depth < deepestFolder && isSafe(name) && name.find('.') == std::string::npos &&
               files.isDirectory(below)) {
      collectIds(files, below, std::string(before).append(name).append("-"), depth + 1, ids);
    }
  }
}

}  // namespace

std::vector<std::string> applicationFolders(const std::string& home) {
  std::vector<std::string> folders = dataFolders(home);
  // Where snaps and flatpaks keep theirs. A session's variables name these folders, a remote shell's may not.
  for (const std::string& folder :
       {home + "/.local/share/flatpak/exports/share", std::string("/var/lib/flatpak/exports/share"),
        std::string("/var/lib/snapd/desktop")}) {
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
  }
  for (std::string& folder : folders) folder += "/applications";
  return folders;
}

DesktopEntries::DesktopEntries(std::vector<std::string> applicationFolders, const std::string& locale,
                               Files* files)
    : files_(files == nullptr ? direct_ : *files),
      folders_(std::move(applicationFolders)),
      variants_(localeVariants(locale)) {}

std::optional<DesktopEntry> DesktopEntries::find(const std::string& id) {
  const auto known = answers_.find(id);
  if (known != answers_.end()) return known->second;
  return answers_.emplace(id, read(id)).first->second;
}

const std::vector<DesktopEntry>& DesktopEntries::all() {
  if (all_) return *all_;
  // Most sessions name folders that nobody has made; each entry would be looked for in them again.
  std::erase_if(folders_, [this](const std::string& folder) { return !files_.isDirectory(folder); });
  std::set<std::string> ids;
  for (const std::string& folder : folders_) collectIds(files_, folder, "", 0, ids);
  all_.emplace();
  for (const std::string& id : ids) {
    if (all_->size() == mostDesktopEntries) break;
    if (auto entry = find(id)) all_->push_back(std::move(*entry));
  }
  return *all_;
}

std::optional<DesktopEntry> DesktopEntries::read(const std::string& id) {
  for (const std::string& folder : folders_) {
    const auto found = findIn(files_, folder, id, 0);
    if (!found) continue;
    const auto entry = desktopEntryText(found->text, variants_);
    // The first folder decides, even with an entry that says nothing: so users hide applications.
    if (!entry || entry->name.empty()) return std::nullopt;
    return DesktopEntry{.id = id,
                        .name = entry->name,
                        .file = repairUtf8(found->file),
                        .shown = entry->shown,
                        .command = entry->command,
                        .terminal = entry->terminal};
  }
  return std::nullopt;
}

}  // namespace tarnwick
