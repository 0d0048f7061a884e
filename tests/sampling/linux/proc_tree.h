// A made /proc tree in a temporary folder. It goes with the object.
#pragma once

#include <unistd.h>

#include "sampling/linux/linux_process_source.h"
#include "tests/support/testing.h"

namespace tarnwick {

class ProcTree {
 public:
  ProcTree() {
    write("stat", "cpu  1 2 3 4\nbtime 1000000\n");
    write("meminfo", "Shmem: 0 kB\nSwapTotal: 100 kB\nSwapFree: 100 kB\n");
  }

  std::string root() const { return top_.at("proc"); }

  void write(const std::string& file, std::string_view bytes) const { top_.write("proc/" + file, bytes); }
  void link(const std::string& file, const std::string& target) const {
    write(file, "");  // makes the folders
    remove(file);
    std::filesystem::create_symlink(target, root() + "/" + file);
  }
  void remove(const std::string& file) const { std::filesystem::remove_all(root() + "/" + file); }

  struct Stat {
    std::string name = "tool";
    char state = 'S';
    Pid ppid = 1;
    int terminal = 0;
    Pid session = 1;
    unsigned flags = 0;
    unsigned userTicks = 0;
    std::uint64_t startTicks = 0;
  };
  void stat(Pid pid, const Stat& s) const {
    write(std::to_string(pid) + "/stat",
          std::to_string(pid) + " (" + s.name + ") " + s.state + " " + std::to_string(s.ppid) + " 1 " +
              std::to_string(s.session) + " " + std::to_string(s.terminal) + " -1 " +
              std::to_string(s.flags) + " 0 0 0 0 " + std::to_string(s.userTicks) + " 0 0 0 20 0 1 0 " +
              std::to_string(s.startTicks) + " 0 0\n");
  }
  // A process with every file.
  void process(Pid pid, const Stat& s) const {
    const std::string folder = std::to_string(pid);
    stat(pid, s);
    write(folder + "/statm", "900 100 40 1 0 1 0\n");
    write(folder + "/status", "Name:\ttool\nRssAnon:\t10 kB\nRssShmem:\t20 kB\nVmSwap:\t30 kB\n");
    write(folder + "/cmdline", std::string_view("tool\0--go\0", 10));
    link(folder + "/exe", "/usr/bin/tool");
    link(folder + "/cwd", "/home/ada");
  }

  // A source over the tree, for the processes of whoever runs the test.
  LinuxProcessOptions options() const { return {.uid = ::getuid(), .procRoot = root()}; }

 private:
  TempFolder top_;
};

}  // namespace tarnwick
