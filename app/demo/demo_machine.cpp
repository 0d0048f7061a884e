#include "app/demo/demo_machine.h"

#include <array>
#include <string_view>

#include "records/app_name.h"

namespace tarnwick {
namespace {

constexpr std::string_view testBrowserPath =
    "/Users/x/Library/Caches/ms-playwright/chromium-1/chrome-mac-arm64/Google Chrome for Testing.app/Contents/MacOS/Google Chrome for Testing";
constexpr std::string_view testBrowserCrashReporter =
    "/Users/x/Library/Caches/ms-playwright/chromium-1/chrome-mac-arm64/Google Chrome for Testing.app/Contents/Frameworks/crashpad";

// Where a demo process works.
enum class DemoFolder { scratch, project, container };

struct DemoProc {
  Pid pid;
  Pid ppid;
  std::string_view path;  // a bare name stands for /usr/bin/ and the name
  std::vector<std::string> args;
  double age;  // seconds
  std::uint64_t megabytes = 0;
  double cpu = 0;
  DemoFolder folder = DemoFolder::scratch;
  std::vector<std::uint16_t> ports = {};
};

std::vector<DemoProc> demoProcs(const std::string& home) {
  return {
      {10, 1, "login", {"login"}, 60},
      {11, 10, "-zsh", {"-zsh"}, 60},
      {12, 11, "claude", {"claude"}, 60},
      {13, 12, "zsh", {"zsh", "-c", "make test-cov"}, 60},
      {14, 13, "make", {"make", "test-cov"}, 43},
      {15, 14, "python", {"python", "-m", "pytest"}, 60, 0, 0.9},
      {16, 15, "python", {"python"}, 60, 0, 0.9},
      {17, 15, "python", {"python"}, 60, 0, 0.9},
      {20, 1, testBrowserPath, {""}, 518'400, 300},
      {21, 20, "helper", {"helper"}, 60, 30},
      {22, 11, testBrowserPath, {""}, 518'400},
      {23, 1, testBrowserCrashReporter, {"crashpad"}, 518'400},
      {30, 11, "caffeinate", {"caffeinate", "-dimsu"}, 7'200},
      {31, 12, "caffeinate", {"caffeinate", "-i", "-t", "300"}, 7'200},
      {32, 11, "caffeinate", {"caffeinate", "-i", "make"}, 7'200},
      {33, 11, "caffeinate", {"caffeinate", "-i"}, 60},
      {40, 1, "Python", {"Python", "-m", "uvicorn", "app:app"}, 46'800, 50, 0, DemoFolder::project, {8000}},
      {41, 11, "node", {"node", "server.mjs"}, 46'800, 20, 0, DemoFolder::project, {3000}},
      {42, 40, "Python", {"Python", "-m", "uvicorn"}, 46'800, 0, 0, DemoFolder::project, {8000}},
      {43, 11, "node", {"node", "fresh.mjs"}, 60, 0, 0, DemoFolder::project, {5173}},
      {44, 1, "helper", {"helper", "serve.js"}, 46'800, 0, 0, DemoFolder::container, {9999}},
      {50,
       1,
       "launchd_sim",
       {"launchd_sim",
        home +
            "/Library/Developer/CoreSimulator/Devices/00000000-0000-0000-0000-000000000000/data/var/run/launchd_bootstrap.plist"},
       432'000,
       10},
      {51, 50, "SpringBoard", {"SpringBoard"}, 60, 200},
      {60, 1, "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome", {"Google Chrome"}, 60, 1024},
      {61,
       60,
       "/Applications/Google Chrome.app/Contents/Frameworks/Google Chrome Framework.framework/Helpers/Google Chrome Helper (Renderer).app/Contents/MacOS/Google Chrome Helper (Renderer)",
       {"renderer"},
       60,
       1024},
      {62, 1, "/Applications/Safari.app/Contents/MacOS/Safari", {"Safari"}, 60, 200},
      {63,
       1,
       "/System/Library/Frameworks/WebKit.framework/Versions/A/XPCServices/com.apple.WebKit.WebContent.xpc/Contents/MacOS/com.apple.WebKit.WebContent",
       {"webcontent"},
       60,
       300,
       1.2},
      {64,
       1,
       "/System/Library/PrivateFrameworks/PhotoAnalysis.framework/Versions/A/Support/photoanalysisd",
       {"photoanalysisd"},
       60,
       0,
       1.2},
      {70,
       1,
       "/System/Library/CoreServices/loginwindow.app/Contents/MacOS/loginwindow",
       {"loginwindow"},
       864'000},
      {80, 1, "/Applications/Docker.app/Contents/MacOS/com.docker.backend", {""}, 60},
      {81,
       1,
       "/System/Library/Frameworks/Virtualization.framework/Versions/A/XPCServices/com.apple.Virtualization.VirtualMachine.xpc/Contents/MacOS/com.apple.Virtualization.VirtualMachine",
       {"vm"},
       60,
       2048,
       1.2},
  };
}

struct EverydayApp {
  Pid pid;
  std::string_view name;
  std::string_view bundleID;
  std::string_view path;
  bool background;
  double age;  // seconds
  std::uint64_t megabytes;
};

constexpr std::array<EverydayApp, 9> everydayApps{{
    {71, "Dropbox", "com.getdropbox.dropbox", "/Applications/Dropbox.app", true, 863'940, 700},
    {72, "Zoom", "us.zoom.xos", "/Applications/zoom.us.app", false, 863'940, 600},
    {73, "Logi Options+", "com.logi.optionsplus", "/Applications/logioptionsplus.app", true, 172'800, 500},
    {74, "Spotify", "com.spotify.client", "/Applications/Spotify.app", false, 863'940, 400},
    {75, "Slack", "com.tinyspeck.slackmacgap", "/Applications/Slack.app", false, 86'400, 900},
    {76, "1Password Browser Helper", "com.1password.browser-helper",
     "/Applications/1Password.app/Contents/Library/LoginItems/1Password Browser Helper.app", true, 259'200,
     300},
    {77, "Raycast", "com.raycast.macos", "/Applications/Raycast.app", true, 259'200, 200},
    {78, "Rectangle", "com.knollsoft.Rectangle", "/Applications/Rectangle.app", true, 259'200, 100},
    {79, "Music", "com.apple.Music", "/System/Applications/Music.app", false, 863'940, 800},
}};

Proc procOf(const DemoProc& row, Timestamp now, const std::string& projectDir, const Self& self) {
  Proc proc{.pid = row.pid,
            .ppid = row.ppid,
            .uid = self.uid,
            .path = row.path.starts_with('/') ? std::string(row.path) : "/usr/bin/" + std::string(row.path),
            .args = row.args,
            .started = now - Seconds{row.age},
            .footprint = row.megabytes * demoMegabyte,
            .cpu = row.cpu,
            .cwd = "/tmp/wt",
            .ports = row.ports};
  if (row.folder == DemoFolder::project) proc.cwd = projectDir;
  if (row.folder == DemoFolder::container) proc.cwd = self.home + "/Library/Containers/com.example/Data";
  proc.app = appName(proc.path, self.home);
  return proc;
}

Proc procOf(const EverydayApp& row, Timestamp now, const Self& self) {
  Proc proc{.pid = row.pid,
            .ppid = 1,
            .uid = self.uid,
            .path = std::string(row.path) + "/Contents/MacOS/" + std::string(row.name),
            .args = {std::string(row.name)},
            .started = now - Seconds{row.age},
            .footprint = row.megabytes * demoMegabyte,
            .cwd = "/tmp/wt"};
  proc.app = appName(proc.path, self.home);
  return proc;
}

}  // namespace

Snapshot demoBase(Timestamp now, const std::string& projectDir, const Self& self) {
  Snapshot machine;
  for (const DemoProc& row : demoProcs(self.home)) {
    machine.procs[row.pid] = procOf(row, now, projectDir, self);
  }
  for (const EverydayApp& row : everydayApps) {
    machine.apps.push_back(
        {row.pid, std::string(row.name), std::string(row.bundleID), std::string(row.path), row.background});
    machine.procs[row.pid] = procOf(row, now, self);
  }
  machine.apps.push_back(
      {60, "Google Chrome", "com.google.Chrome", "/Applications/Google Chrome.app", false});
  machine.apps.push_back({62, "Safari", "com.apple.Safari", "/Applications/Safari.app", false});
  machine.containers = {{"c1", "projx1-db", "Up 13 hours", "postgres:17", 100 * demoMegabyte},
                        {"c2", "other-db", "Up 2 days", "redis", 1 * demoMegabyte}};
  machine.diskFree = static_cast<std::int64_t>(9 * demoGigabyte);
  machine.diskTotal = static_cast<std::int64_t>(256 * demoGigabyte);
  machine.ram = 8 * demoGigabyte;
  machine.cores = 10;
  machine.now = now;
  machine.thermal = ThermalState::serious;
  machine.access["com.google.Chrome"] = Access::notAsked;
  return machine;
}

}  // namespace tarnwick
