// What the demo machine's rules get to know outside their snapshot: what the demo itself says, and nothing of
// this machine. So a demo reads the same everywhere, whatever lies in its invented folders.
#pragma once

#include <map>
#include <string>

#include "app/demo/demo.h"
#include "diagnosis/surroundings.h"

namespace tarnwick {

class DemoSurroundings : public Surroundings {
 public:
  // `live` answers who runs the program and how dates read here; it must live longer.
  DemoSurroundings(const Demo& demo, Surroundings& live);

  const Self& self() override { return live_.self(); }
  std::string mediumDate(Timestamp moment) override { return live_.mediumDate(moment); }
  std::optional<Git> git(const std::string& dir) override;

  std::optional<ClaudeWork> claudeSession(Pid) override { return std::nullopt; }
  std::optional<ClaudeWork> claudeJob(const std::string&) override { return std::nullopt; }
  std::optional<std::string> prTitle(const std::optional<std::string>&,
                                     const std::optional<std::string>&) override {
    return std::nullopt;
  }
  bool exists(const std::string&) override { return false; }
  std::optional<std::string> fileHead(const std::string&) override { return std::nullopt; }
  std::optional<std::string> deviceName(const std::string&) override { return std::nullopt; }
  bool hasSimctl() override { return false; }

 private:
  std::map<std::string, Git> repositories_;
  Surroundings& live_;
};

}  // namespace tarnwick
