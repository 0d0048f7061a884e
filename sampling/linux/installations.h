// Where the applications of this machine are installed, worked out of their desktop entries: each executable
// belongs to the application whose installation holds it. Entries and links are read once, when the first
// question comes; what cannot be read is absent. One per run, used by one thread at a time.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sampling/linux/desktop_entries.h"

namespace tarnwick {

class Installations {
 public:
  // `entries` must live longer.
  Installations(DesktopEntries& entries, std::string home)
      : entries_(entries), files_(entries.files()), home_(std::move(home)) {}

  // One installation, which several entries may start: an office suite's programs, a browser's web pages.
  struct Installation {
    std::vector<DesktopEntry> entries;  // best first; never empty
    std::string program;                // the file that they start; empty where only the folder is known
  };

  // The installation that holds the executable; null when none does. Valid as long as this object.
  const Installation* ofExecutable(const std::string& path);

  // The installation of a flatpak; null when it has no entry.
  const Installation* ofFlatpak(std::string_view id);

  // The entry of an application that is run by a shared runtime, or that nobody knows where it is: its
  // executable does not tell it. `script` is what the runtime must have been given, empty when unknown.
  struct Interpreted {
    DesktopEntry entry;
    std::string script;
  };
  const Interpreted* interpreted(const std::string& id);
  bool anyUnknown();  // is there one whose runtime is not known?

 private:
  void readAll();
  void place(const DesktopEntry& entry);
  bool placeProgram(const std::string& file, const DesktopEntry& entry, int depth);
  void add(std::map<std::string, Installation, std::less<>>& where, const std::string& key,
           const std::string& program, const DesktopEntry& entry);
  std::string located(const std::string& program);
  bool isPrivate(const std::string& folder) const;
  std::string installationFolder(const std::string& file) const;
  const Installation* ofImage(const std::string& mount);

  DesktopEntries& entries_;
  Files& files_;
  std::string home_;
  bool isRead_ = false;
  bool anyUnknown_ = false;
  std::map<std::string, Installation, std::less<>> programs_;  // by executable
  std::map<std::string, Installation, std::less<>> folders_;   // by folder, without a slash at its end
  std::map<std::string, Installation, std::less<>> flatpaks_;  // by id
  std::map<std::string, std::optional<Installation>, std::less<>> images_;  // by mount
  std::map<std::string, Interpreted, std::less<>> interpreted_;             // by the entry's id
};

}  // namespace tarnwick
