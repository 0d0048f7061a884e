#include "app/demo/demo.h"

#include "app/demo/demo_machine.h"
#include "records/app_name.h"
#include "records/utf8.h"

namespace tarnwick {
namespace {

// Memory is short: Chrome holds a lot of it, and its tabs are known.
void makeMemory(Snapshot& machine, const Self& self) {
  machine.pressure = 2;
  machine.swapUsed = 3 * demoGigabyte;
  machine.cpuBusy = 0.12;
  machine.memorySaver = 0;
  for (const Pid pid : {15, 16, 17, 63, 64, 81}) machine.procs.at(pid).cpu = 0;

  const std::string renderer = machine.procs.at(61).path;
  constexpr Pid firstRenderer = 600;
  constexpr Pid renderers = 24;
  for (Pid pid = firstRenderer; pid < firstRenderer + renderers; ++pid) {
    machine.procs[pid] = Proc{.pid = pid,
                              .ppid = 60,
                              .uid = self.uid,
                              .path = renderer,
                              .args = {"renderer"},
                              .started = machine.now - Seconds{60},
                              .footprint = 50 * demoMegabyte,
                              .cwd = "/tmp/wt",
                              .app = appName(renderer, self.home)};
  }
  machine.access["com.google.Chrome"] = Access::allowed;
  machine.tabs["com.google.Chrome"] = {12,
                                       {{"docs.google.com", 9}, {"youtube.com", 6}, {"mail.google.com", 4}}};
}

void makeCalm(Snapshot& machine) {
  machine.procs.clear();
  machine.cpuBusy = 0.06;
}

// A project was left running: servers, containers and Docker's virtual machine.
void makeDeveloper(Demo& demo, const std::string& projectDir) {
  Snapshot& machine = demo.snapshot;
  machine.ram = 16 * demoGigabyte;
  machine.pressure = 2;
  machine.cpuBusy = 0.63;
  machine.procs.at(81).footprint = 8 * demoGigabyte;
  machine.procs.at(41).ppid = 1;
  machine.containers = {{"c1", "storefront-db", "Up 13 hours", "postgres:16", 780 * demoMegabyte},
                        {"c2", "storefront-redis", "Up 13 hours", "redis:7", 120 * demoMegabyte}};
  demo.repositories.emplace_back(projectDir, Git{.repo = "storefront",
                                                 .branch = "fix/checkout-tax",
                                                 .lastCommit = "Round tax for each line item",
                                                 .lastCommitAgo = "14 hours ago"});
}

}  // namespace

std::optional<Demo> demoSnapshot(Timestamp now, const std::optional<std::string>& scenario,
                                 const Self& self) {
  const bool developer = scenario == "developer";
  if (scenario && !developer && *scenario != "memory" && *scenario != "calm") return std::nullopt;

  const std::string projectDir = self.home + "/tarnwick-selftest/" + (developer ? "storefront" : "projx1");
  Demo demo{demoBase(now, projectDir, self), {}};
  if (scenario) {
    demo.snapshot.thermal = ThermalState::nominal;
    demo.snapshot.diskFree = static_cast<std::int64_t>(140 * demoGigabyte);
    if (scenario == "memory") makeMemory(demo.snapshot, self);
    if (scenario == "calm") makeCalm(demo.snapshot);
    if (developer) makeDeveloper(demo, projectDir);
  }
  demo.snapshot.index();
  return demo;
}

std::string unknownScenario(const std::string& name) {
  return "Unknown scenario “" + repairUtf8(name) + "”. Use memory, calm, or developer.\n";
}

}  // namespace tarnwick
