// The user's choices as fields, one of which can be stuck.
#pragma once

#include "app/settings/user_settings.h"

namespace tarnwick {

struct FakeSettings : UserSettings {
  bool opensAtLogin() override { return login; }
  void setOpensAtLogin(bool on) override { login = on; }
  bool prTitles() override { return titles; }
  void setPrTitles(bool on) override { titles = on && writable; }

  bool login = false;
  bool titles = false;
  bool writable = true;
};

}  // namespace tarnwick
