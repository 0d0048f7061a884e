// The user's defaults: on Linux one small text file in the XDG configuration folder, a "name = value" on
// each line; the last line of a name counts, and one without a value says nothing. Read anew at every
// question, so that two programs agree. What cannot be read is false.
#pragma once

#include <string>
#include <string_view>

#include "system/files.h"

namespace tarnwick {

class UserDefaults {
 public:
  // `folder`: the configuration folder; made when something is written. `files` must outlive it.
  UserDefaults(Files& files, std::string folder);

  bool isTrue(std::string_view name) const;

  // Keeps every other line as it is. False: nothing was changed.
  bool set(std::string_view name, bool value) const;

 private:
  Files& files_;
  std::string file_;
};

}  // namespace tarnwick
