// The applications that are installed for this user, found by their desktop entries. Answers are kept for
// the life of the object, absent ones too: a check asks for the same few applications each time. One per
// run, used by one thread at a time. What cannot be read is absent, and so is for this run what did not
// answer when all were read.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "system/environment.h"
#include "system/files.h"

namespace tarnwick {

struct DesktopEntry {
  std::string id;            // without ".desktop"
  std::string name;          // in the user's language
  std::string file;          // path of the entry
  bool shown = false;        // an application that menus show
  std::string command = {};  // what starts it; empty when nothing does
  bool terminal = false;     // it runs inside a terminal

  bool operator==(const DesktopEntry&) const = default;
};

// Where desktop entries are for the user with that home folder, most important first.
std::vector<std::string> applicationFolders(const std::string& home);

class DesktopEntries {
 public:
  // `files` asks the folders and must outlive it; null: the system is asked here and now.
  explicit DesktopEntries(std::vector<std::string> applicationFolders,
                          const std::string& locale = messageLocale(), Files* files = nullptr);
  DesktopEntries(const DesktopEntries&) = delete;
  DesktopEntries& operator=(const DesktopEntries&) = delete;

  // Who asks about the folders, for whoever follows what the entries name.
  Files& files() { return files_; }

  // All of them, by id; read once.
  const std::vector<DesktopEntry>& all();

  // The entry with that id in the first folder that has it; absent when none has it or it has no name.
  std::optional<DesktopEntry> find(const std::string& id);

 private:
  std::optional<DesktopEntry> read(const std::string& id);

  DirectFiles direct_;
  Files& files_;
  std::vector<std::string> folders_;
  std::vector<std::string> variants_;  // of localized keys, best first
  std::map<std::string, std::optional<DesktopEntry>> answers_;
  std::optional<std::vector<DesktopEntry>> all_;
};

}  // namespace tarnwick
