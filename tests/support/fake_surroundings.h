// Prepared answers to the questions of rules, and a list of what was asked.
#pragma once

#include "diagnosis/surroundings.h"
#include "tests/support/testing.h"

namespace tarnwick {

struct FakeSurroundings : Surroundings {
  Self who{4242, 501, "/Users/x"};
  std::map<std::string, Git> repositories;     // by folder
  std::map<Pid, ClaudeWork> sessions;          // by pid of `claude`
  std::map<std::string, ClaudeWork> jobs;      // by folder
  std::map<std::string, std::string> titles;   // of pull requests, by "owner/name#request"
  std::set<std::string> present;               // files and folders
  std::map<std::string, std::string> heads;    // of files, by path
  std::map<std::string, std::string> devices;  // names, by path of the property list
  bool simctl = true;
  bool inTime = true;
  std::vector<std::string> asked;  // "git FOLDER", "title OWNER/NAME#REQUEST", "exists PATH", "head PATH"

  const Self& self() override { return who; }
  std::optional<Git> git(const std::string& dir) override {
    asked.push_back("git " + dir);
    return answerOf(repositories, dir);
  }
  std::optional<ClaudeWork> claudeSession(Pid pid) override { return answerOf(sessions, pid); }
  std::optional<ClaudeWork> claudeJob(const std::string& dir) override { return answerOf(jobs, dir); }
  std::optional<std::string> prTitle(const std::optional<std::string>& repo,
                                     const std::optional<std::string>& pr) override {
    if (!repo || !pr) return std::nullopt;
    asked.push_back("title " + *repo + "#" + *pr);
    return answerOf(titles, *repo + "#" + *pr);
  }
  bool hasTime() override { return inTime; }
  bool exists(const std::string& path) override {
    asked.push_back("exists " + path);
    return present.contains(path);
  }
  std::optional<std::string> fileHead(const std::string& path) override {
    asked.push_back("head " + path);
    return answerOf(heads, path);
  }
  std::optional<std::string> deviceName(const std::string& path) override { return answerOf(devices, path); }
  bool hasSimctl() override { return simctl; }
  std::string mediumDate(Timestamp moment) override {
    return "second " + std::to_string(static_cast<std::int64_t>(seconds(moment)));
  }
};

}  // namespace tarnwick
