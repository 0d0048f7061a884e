#include "bench/generated_machine.h"

#include <fmt/format.h>

#include <algorithm>

namespace tarnwick {
namespace {

constexpr std::uint64_t megabyte = 1ULL << 20U;
constexpr double dayOld = 86'400;

class Machine {
 public:
  Machine(int count, const Self& self) : room_(count), self_(self) {
    snapshot_.now = timestamp(1'790'000'000);
    snapshot_.ram = 64ULL << 30U;
    snapshot_.cores = 10;
    snapshot_.diskFree = snapshot_.diskTotal = 1LL << 40;
  }

  Snapshot build() {
    addChain(std::min(1'000, room_ / 10));
    addStar(std::min(10'000, room_ / 5));
    addBrowser(room_ / 5);
    while (room_ > 0) addTerminal();
    snapshot_.index();
    return std::move(snapshot_);
  }

 private:
  Proc& add(Pid ppid, std::string path, std::vector<std::string> args) {
    const Pid pid = nextPid_++;
    --room_;
    return snapshot_.procs[pid] = {.pid = pid,
                                   .ppid = ppid,
                                   .uid = self_.uid,
                                   .path = std::move(path),
                                   .args = std::move(args),
                                   .started = snapshot_.now - Seconds{dayOld},
                                   .footprint = 10 * megabyte,
                                   .resident = 12 * megabyte,
                                   .cpu = 0.02,
                                   .cwd = self_.home};
  }

  void addChain(int length) {
    Pid parent = 1;
    for (int i = 0; i < length && room_ > 0; ++i)
      parent = add(parent, "/usr/bin/make", {"make", "-j8", "all"}).pid;
  }

  void addStar(int children) {
    if (room_ == 0) return;
    const Pid center = add(1, "/usr/bin/python3", {"python3", "-m", "pytest", "-n", "10000"}).pid;
    for (int i = 0; i < children && room_ > 0; ++i) add(center, "/usr/bin/python3", {"python3", "worker.py"});
  }

  void addBrowser(int helpers) {
    if (room_ == 0) return;
    const std::string bundle = "/Applications/Google Chrome.app";
    Proc& main = add(1, bundle + "/Contents/MacOS/Google Chrome", {});
    main.app = "Google Chrome";
    snapshot_.apps.push_back({main.pid, "Google Chrome", "com.google.Chrome", bundle, false});
    const Pid browser = main.pid;
    for (int i = 0; i < helpers && room_ > 0; ++i) {
      add(browser, bundle + "/Contents/Frameworks/Helper.app/Contents/MacOS/Helper", {}).app =
          "Google Chrome";
    }
  }

  // A login shell, a shell below it, and a server in a project with a worker; now and then an application.
  void addTerminal() {
    const Pid login = add(1, "/bin/zsh", {"-zsh"}).pid;
    const Pid shell = room_ > 0 ? add(login, "/bin/zsh", {"zsh", "-c", "npm start"}).pid : login;
    if (room_ > 0) {
      Proc& server = add(shell, "/usr/bin/node", {"node", "server.mjs", "--port", "3000"});
      server.cwd = fmt::format("{}/projects/p{}", self_.home, server.pid % 50);
      server.ports = {static_cast<std::uint16_t>(3'000 + server.pid % 1'000)};
      const Pid parent = server.pid;
      if (room_ > 0) add(parent, "/usr/bin/node", {"node", "worker.mjs"});
    }
    if (room_ > 0 && snapshot_.apps.size() < 30) addApp();
  }

  void addApp() {
    const std::string name = fmt::format("App{}", nextPid_);
    const std::string bundle = "/Applications/" + name + ".app";
    Proc& app = add(1, bundle + "/Contents/MacOS/" + name, {});
    app.app = name;
    snapshot_.apps.push_back({app.pid, name, "com.example." + name, bundle, true});
  }

  int room_;
  Self self_;
  Pid nextPid_ = 100;
  Snapshot snapshot_;
};

}  // namespace

Snapshot generatedMachine(int count, const Self& self) { return Machine(count, self).build(); }

}  // namespace tarnwick
