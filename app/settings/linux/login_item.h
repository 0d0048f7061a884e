// "Open at login" on Linux: an entry in the autostart folder that every desktop reads.
#pragma once

#include <string>

#include "system/files.h"

namespace tarnwick {

class LoginItem {
 public:
  // `folder`: the user's configuration folder. `executable`: absolute path of this program.
  // `files` must outlive it.
  LoginItem(Files& files, std::string folder, std::string executable);

  // Is there an entry that a desktop would start? One that is hidden or switched off does not count.
  bool isEnabled() const;

  // Writes the entry, or removes it. False: it is as it was.
  bool setEnabled(bool on) const;

 private:
  Files& files_;
  std::string file_;
  std::string executable_;
};

}  // namespace tarnwick
