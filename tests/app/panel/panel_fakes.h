// A panel without a machine, a desktop or a toolkit.
#pragma once

#include <string>
#include <vector>

#include "app/panel/panel_controller.h"
#include "tests/app/panel/panel_sample.h"
#include "tests/support/hand_executor.h"

namespace tarnwick {

// Writes down what the model asks for.
class PanelServices : public ModelServices {
 public:
  Check check(const std::set<Pid>& /*termed*/) override {
    calls.emplace_back("check");
    return next;
  }
  void resetCaches() override { calls.emplace_back("reset"); }
  std::optional<std::string> apply(const Fix& fix) override {
    calls.push_back(fix.command());
    return std::nullopt;
  }
  void copyText(const std::string& text) override { calls.push_back("copy " + text.substr(0, 14)); }
  std::optional<std::string> ownExecutable() override { return "/bin/tarnwick"; }
  std::string explainByChild(const std::string& /*executable*/, const std::string& evidence) override {
    calls.push_back("explain " + evidence);
    return "A guess.";
  }
  void freeMemory() override {}
  Timestamp now() override { return time; }

  Check next;
  Timestamp time = sampleTime;
  std::vector<std::string> calls;
};

// The two settings, one of which can be stuck.
class FakeSettings : public PanelSettings {
 public:
  bool opensAtLogin() override { return login; }
  void setOpensAtLogin(bool on) override { login = on; }
  bool prTitles() override { return titles; }
  void setPrTitles(bool on) override { titles = on && writable; }

  bool login = false;
  bool titles = false;
  bool writable = true;
};

}  // namespace tarnwick
