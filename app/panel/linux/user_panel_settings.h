// The menu's two choices of the Linux user: an autostart entry and a line in the user's defaults.
#pragma once

#include <string>

#include "app/linux/login_item.h"
#include "app/linux/user_defaults.h"
#include "app/panel/panel_window.h"

namespace tarnwick::panel {

class UserPanelSettings : public PanelSettings {
 public:
  // Reads the environment once: which configuration folder, and where this program lies.
  explicit UserPanelSettings(const std::string& home);

  bool opensAtLogin() override { return loginItem_.isEnabled(); }
  void setOpensAtLogin(bool on) override { loginItem_.setEnabled(on); }
  bool prTitles() override { return defaults_.isTrue("prTitles"); }
  void setPrTitles(bool on) override { defaults_.set("prTitles", on); }

 private:
  LoginItem loginItem_;
  UserDefaults defaults_;
};

}  // namespace tarnwick::panel
