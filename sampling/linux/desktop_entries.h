// The applications that are installed for this user, found by their desktop entries. Answers are kept for
// the life of the object, absent ones too: a check asks for the same few applications each time. One per
// run, used by one thread at a time. What cannot be read is absent.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

struct DesktopEntry {
  std::string id;      // without ".desktop"
  std::string name;    // in the user's language
  std::string file;    // path of the entry
  bool shown = false;  // an application that menus show

  bool operator==(const DesktopEntry&) const = default;
};

// The folders for desktop entries by the base-directory rules, most important first. Arguments are the values
// of $XDG_DATA_HOME and $XDG_DATA_DIRS, absent when not set; relative paths in them do not count.
std::vector<std::string> applicationFolders(const std::optional<std::string>& dataHome,
                                            const std::optional<std::string>& dataDirs,
                                            const std::string& home);

// The same for this process's environment.
std::vector<std::string> applicationFolders(const std::string& home);

// The locale of texts by $LC_ALL, $LC_MESSAGES, $LANG; empty when none is set.
std::string messageLocale();

class DesktopEntries {
 public:
  explicit DesktopEntries(std::vector<std::string> applicationFolders,
                          const std::string& locale = messageLocale());

  // The entry with that id in the first folder that has it; absent when none has it or it has no name.
  std::optional<DesktopEntry> find(const std::string& id);

 private:
  std::optional<DesktopEntry> read(const std::string& id) const;

  std::vector<std::string> folders_;
  std::vector<std::string> variants_;  // of localized keys, best first
  std::map<std::string, std::optional<DesktopEntry>> answers_;
};

}  // namespace tarnwick
