#include "tests/support/machines.h"

namespace {

constexpr double hour = 3'600;
const std::string shop = "/Users/x/code/shop-backend";

Proc& addServer(Snapshot& m, Pid pid, Pid ppid, std::vector<std::string> args,
                std::vector<std::uint16_t> ports, double age = 13 * hour) {
  Proc& proc = add(m, pid, ppid, std::move(args), age);
  proc.cwd = shop;
  proc.ports = std::move(ports);
  proc.footprint = 10 * megabyte;
  return proc;
}

// One Node server in the shop, 13 hours old, started from a terminal that is closed.
Snapshot oneServer() {
  Snapshot m = machine();
  addServer(m, 41, 1, {"node", "server.mjs"}, {3000});
  return m;
}

Git branch(const std::string& name) { return {"shop", name, "Round tax", "2 days ago", false, "o/shop"}; }

struct Stacks : RuleTest {
  std::vector<Finding> found() {
    m.index();
    return stacks(m, {}, around);
  }
  Finding card() { return only(found()); }
};

TEST_F(Stacks, WhichProcessesAreForgottenServers) {
  const auto withParent = [](std::uint16_t port) {
    return [port](Snapshot& s, Proc& p) { addServer(s, p.ppid = 40, 1, {"sh"}, {1, port}, 60); };
  };
  const std::tuple<const char*, std::function<void(Snapshot&, Proc&)>, std::size_t> cases[] = {
      {"13 hours", [](Snapshot&, Proc&) {}, 1},
      {"exactly 12 hours", [](Snapshot&, Proc& p) { p.started = testNow - Seconds{12 * hour}; }, 0},
      {"a second more", [](Snapshot&, Proc& p) { p.started = testNow - Seconds{12 * hour + 1}; }, 1},
      {"no port", [](Snapshot&, Proc& p) { p.ports.clear(); }, 0},
      {"an application", [](Snapshot&, Proc& p) { p.app = "Figma"; }, 0},
      {"in the Library", [](Snapshot&, Proc& p) { p.cwd = "/Users/x/Library/a"; }, 0},
      {"elsewhere", [](Snapshot&, Proc& p) { p.cwd = "/Users/x-outside/a"; }, 0},
      {"at home itself", [](Snapshot&, Proc& p) { p.cwd = "/Users/x"; }, 0},
      {"its parent's port", withParent(3000), 0},
      {"other ports", withParent(3001), 1}};
  for (const auto& [why, change, count] : cases) {
    m = oneServer();
    change(m, m.procs[41]);
    EXPECT_THAT(found(), SizeIs(count)) << why;
  }
}

TEST_F(Stacks, AddUpServersTheirTreesAndContainers) {
  around.heads[shop + "/server.mjs"] = "import http";
  add(m, 11, 1, {"-zsh"});
  addServer(m, 40, 1, {"Python", "-m", "uvicorn", "app:app"}, {8000, 8001});
  addServer(m, 41, 11, {"node", "server.mjs", std::string(300, 'x')}, {3000}, 14 * hour);
  addServer(m, 42, 40, {"Python"}, {8000});  // a worker
  addServer(m, 43, 11, {"node", "b.mjs"}, {3100});
  add(m, 44, 43, {"esbuild"}).footprint = 2 * megabyte;
  m.containers = {{"c1", "shop-backend-db-1", "Up", "postgres:16", 100 * megabyte},
                  {"c2", "other", "Up", "redis", megabyte},
                  {"c3", "my-shop-backend", "Up", "nginx", 0},
                  {"c4", "shop-backend-db-2", "Up", "postgres:9", 0}};
  m.index();
  const Finding found = only(stacks(m, {43, 11}, around));
  EXPECT_EQ(found.title, "shop-backend is still running");
  EXPECT_EQ(
      found.detail,
      "It runs 2 Node servers (ports 3000 and 3100), a Python API (ports 8000 and 8001), 2 Postgres databases, and a container database. You started it in a terminal 14 hours ago. It uses 142 MB in total.");
  EXPECT_EQ(found.bytes, 142 * megabyte);  // 41: 10, 43: 10 and 2, 40: 10 and its worker's 10, c1: 100
  EXPECT_EQ(found.actions.front().label, "Stop all 6");
  EXPECT_EQ(found.actions.front().fix.command(),
            "kill -TERM 41; kill -KILL 43; kill -TERM 40; docker stop c1; docker stop c3; docker stop c4");
  EXPECT_THAT(*found.evidence,
              StartsWith("Server: Node server. Command: node server.mjs " + std::string(184, 'x') +
                         "\nServer: Node server. Command: node b.mjs\n"));
  EXPECT_THAT(
      *found.evidence,
      EndsWith(" (image postgres:9)\nThe file server.mjs starts with:\nimport http\nStarted by: you"));
}

TEST_F(Stacks, OneCardForEachProject) {
  around.present = {"/Users/x/api/.git"};
  addServer(m, 41, 1, {"Express"}, {1}).cwd = "/Users/x/zoo";
  addServer(m, 42, 1, {"Express"}, {2}).cwd = "/Users/x/api/src";
  addServer(m, 43, 1, {"Express"}, {3}).cwd = "/Users/x/api";
  m.containers = {{"c1", "api", "Up", "redis", 0}, {"c2", "zoo", "Up", "redis", 0}};
  const std::vector<Finding> all = found();
  EXPECT_THAT(ids(all), ElementsAre("stack:/Users/x/api", "stack:/Users/x/zoo"));
  EXPECT_EQ(all[0].summary, "2 Express servers, on for 13 hours.") << "a short name claims no containers";
  EXPECT_THAT(all[1].detail, StartsWith("It runs an Express server (port 1)."));
  EXPECT_EQ(all[1].actions.front().label, "Stop it");
}

TEST_F(Stacks, BranchesOfTheRepository) {
  m = oneServer();
  const std::string gone =
      " It started 13 hours ago. The app or terminal that started it is closed. It uses 10 MB in total.";
  const auto told = [&](const std::string& name) {
    around.repositories[shop] = branch(name);
    around.repositories[shop].isCopy = name == "fix/tax";
    if (name == "fix/tax") around.repositories[shop].lastCommit = "";
    return card().title + ": " + card().detail;
  };
  const std::string start = "shop is still running: It runs a Node server (port 3000). Branch ";
  const std::string commit = ". Last commit 2 days ago: “Round tax”." + gone;
  for (const char* shared : {"main", "master", "develop"})
    EXPECT_EQ(told(shared), start + shared + commit + " Stop it if you are not using it.");
  EXPECT_THAT(around.asked, Not(Contains(HasSubstr("title")))) << "nobody asks for such a branch's request";
  EXPECT_EQ(told("Main"), start + "Main" + commit + " Stop it if you are done with this branch.");
  EXPECT_THAT(around.asked, Contains("title o/shop#Main"));
  around.titles["o/shop#fix/tax"] = "Tax";
  EXPECT_EQ(told("fix/tax"), "A copy of " + start + "fix/tax. Pull request: “Tax”." + gone +
                                 " Stop it if you are done with this branch.");
}

TEST_F(Stacks, JobsInEachState) {
  around.repositories[shop] = branch("main");
  const std::string still = ", but its server still runs. It uses 10 MB in total. It is safe to stop.";
  const std::tuple<Text, std::optional<Timestamp>, std::string> cases[] = {
      {"working", testNow, "is still working. It uses 10 MB in total."},
      {"blocked", testNow - Seconds{3 * hour}, "stopped 3 hours ago because of an error" + still},
      {"failed", {}, "stopped because of an error" + still},
      {"error", {}, "stopped because of an error" + still},
      {"done", testNow - Seconds{60}, "ended 1 minute ago" + still},
      {{}, {}, "ended" + still}};
  for (const auto& [state, updated, ending] : cases) {
    m = oneServer();
    around.jobs[shop] = {.job = "nightly", .jobState = state, .jobUpdated = updated};
    const std::string which = state == "working" ? "is still working." : "has stopped.";
    EXPECT_EQ(card().title, "A test server from the Claude Code job “nightly” is still running");
    EXPECT_EQ(card().detail, "It runs a Node server (port 3000). The job " + ending);
    EXPECT_EQ(card().summary, "From the Claude Code job “nightly”, which " + which);
    // The folder's own repository says nothing about a job.
    EXPECT_THAT(*card().evidence, AllOf(HasSubstr("job “nightly”, state: " + state.value_or("unknown")),
                                        Not(HasSubstr("Git repo"))));
  }
}

TEST_F(Stacks, WhatAJobWorkedOn) {
  around.titles["o/shop#7"] = "Add tax";
  m = oneServer();
  add(m, 12, 1, {"claude"});
  m.procs[41].ppid = 12;
  addServer(m, 42, 12, {"node", "b.mjs"}, {3001});
  around.sessions[12] = {.title = "Session"};
  ClaudeWork& job = around.jobs[shop] = {.title = "Own", .pr = 7, .prRepo = "o/shop", .jobDir = "/w"};
  around.repositories["/w"] = branch("fix/tax");
  const auto worked = [&] {
    const std::string detail = card().detail.substr(card().detail.find("3001).") + 6);
    return detail.substr(0, detail.find(" The job ended,"));
  };

  EXPECT_EQ(card().title, "2 test servers from the Claude Code job “shop-backend” are still running");
  EXPECT_EQ(worked(), " The job worked on the pull request “Add tax”.");
  job.pr = 8;
  EXPECT_EQ(worked(), " The job worked on “Session”.");
  around.sessions.clear();
  EXPECT_EQ(worked(), " The job worked on “Own”.");
  job.title.reset();
  EXPECT_EQ(worked(), " The job worked in shop, on the branch fix/tax. Its last commit was “Round tax”.");
  EXPECT_THAT(
      *card().evidence,
      EndsWith(
          "state: unknown\nThe job worked in the git repo shop, branch fix/tax. Last commit: Round tax\nStarted by: Claude Code"));
  around.repositories["/w"].lastCommit = "";
  EXPECT_EQ(worked(), " The job worked in shop, on the branch fix/tax.");
  job.jobDir.reset();
  EXPECT_EQ(worked(), "");
}

}  // namespace
