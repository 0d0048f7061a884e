// The user's choices that outlive a run: where this system keeps such things. What cannot be read is false;
// what cannot be written stays as it is, without a word.
#pragma once

#include <memory>

#include "records/basics.h"
#include "system/files.h"

namespace tarnwick {

class UserSettings {
 public:
  virtual ~UserSettings() = default;

  // Does the application start when the user logs in?
  virtual bool opensAtLogin() = 0;
  virtual void setOpensAtLogin(bool on) = 0;

  // May pull-request titles be looked up over the network? Asked on any thread.
  virtual bool prTitles() = 0;
  virtual void setPrTitles(bool on) = 0;
};

// The choices of the user on this system. `files` is nobody else's and must outlive the result.
std::unique_ptr<UserSettings> userSettings(const Self& self, Files& files);

}  // namespace tarnwick
