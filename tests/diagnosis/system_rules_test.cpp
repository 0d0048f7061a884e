#include "tests/support/machines.h"

namespace {

const Self self{4242, 501, "/Users/x"};
constexpr std::int64_t gibibyte = 1LL << 30;
const Timestamp login = timestamp(1'700'000'000);

Proc& addAt(Snapshot& snapshot, Pid pid, std::string path, double cpu = 0) {
  return snapshot.procs[pid] = {.pid = pid, .ppid = 1, .uid = self.uid, .path = std::move(path), .cpu = cpu};
}

TEST(Heat, OnlySeriousAndCriticalAreHot) {
  EXPECT_THAT(heat({.thermal = ThermalState::fair}), IsEmpty());
  EXPECT_EQ(glance(heat({.thermal = ThermalState::critical})),
            "Your Mac is very hot, so macOS slows it down a lot | Very hot | BUSY NOW 1\n");
}

TEST(LowDisk, FiresBelowTwentyGibibytes) {
  const auto metric = [](std::int64_t free, std::int64_t total) {
    const std::vector<Finding> found = lowDisk({.diskFree = free, .diskTotal = total});
    return found.empty() ? "none" : *only(found).metric;
  };
  EXPECT_EQ(metric(20 * gibibyte, 256 * gibibyte), "none");
  EXPECT_EQ(metric(20 * gibibyte - 1, 256 * gibibyte), "20.0 GB free");
  EXPECT_EQ(metric(0, 0) + metric(0, -1), "nonenone") << "unknown";
  EXPECT_EQ(metric(0, 1) + ", " + metric(-7, 256 * gibibyte), "0 MB free, 0 MB free");
}

TEST(BusyServices, CountOwnProcessesFromHalfACore) {
  Snapshot snapshot{.cores = 8};
  addAt(snapshot, 10, "/usr/libexec/photoanalysisd", 0.3);
  addAt(snapshot, 11, "/usr/libexec/mdworker", 0.25);
  addAt(snapshot, 12, "/usr/libexec/mdworker_shared", 0.25);
  addAt(snapshot, 13, "/usr/libexec/corespotlightd", 3.0).uid = 0;
  addAt(snapshot, 14, "/usr/bin/python", 5.0).args = {"/opt/bin/bird", "x"};
  const std::vector<Finding> found = busyServices(snapshot, self);
  ASSERT_THAT(found, SizeIs(2)) << "Photos stays below half a core";

  EXPECT_EQ(
      found[0].id + ", " + found[0].metric.value() + ": " + found[0].actions.front().fix.command(),
      "service:iCloud is syncing your files, 63% CPU: open x-apple.systempreferences:com.apple.systempreferences.AppleIDSettings")
      << "named by its first argument; table order";
  EXPECT_EQ(found[1].subject + found[1].metric.value(), "Spotlight6% CPU") << "another user's does not count";
}

// A machine with a login window and `count` background apps of 100 MB, 200 MB, ... each.
Snapshot withApps(int count) {
  Snapshot snapshot;
  addAt(snapshot, 5, "/x/loginwindow").started = login;
  for (int i = 1; i <= count; ++i) {
    const std::string name = "App" + std::to_string(i);
    const std::string bundle = "/Applications/" + name + ".app";
    snapshot.apps.push_back({100 + i, name, "com.example." + name, bundle, true});
    addAt(snapshot, 100 + i, bundle + "/Contents/MacOS/" + name).footprint =
        static_cast<std::uint64_t>(i) * 100 * megabyte;
  }
  return snapshot;
}

TEST(LoginApps, NeedSixAndNameTheBiggestUnderWhichAHelperIsCounted) {
  EXPECT_THAT(loginApps(withApps(5), self), IsEmpty());
  Snapshot six = withApps(6);
  six.ram = 4200 * megabyte;
  const Finding found = only(loginApps(six, self));
  EXPECT_TRUE(found.detail.starts_with("App6, App5, App4, App3, and 2 more open when you log in or"));
  EXPECT_EQ(found.bytes, 2100 * megabyte);
  EXPECT_EQ(found.impact, 0.5);

  const std::string helper = "/Applications/App1.app/Contents/Library/LoginItems/Helper.app";
  six.apps.push_back({200, "Helper", "com.example.helper", helper, true});
  addAt(six, 200, helper + "/Contents/MacOS/Helper").footprint = 1000 * megabyte;
  const Finding helped = only(loginApps(six, self));
  EXPECT_EQ(helped.summary, "App1, App6, and 4 more open when you log in.") << "the last entry stays";
  EXPECT_EQ(helped.bytes, (2100 + 1000) * megabyte) << "the whole bundle once, helper included";
}

TEST(LoginApps, WhichAppsCount) {
  // The first application is in the foreground and started so many seconds after login.
  const auto started = [](double after, std::uint32_t uid = self.uid) {
    return [after, uid](Snapshot& s) {
      s.apps[0].background = false;
      s.procs[101].started = login + Seconds{after};
      s.procs[5].uid = uid;
      addAt(s, 6, "/x/loginwindow").started = login + Seconds{100};
      s.procs[6].uid = uid;
    };
  };
  const auto lyingAt = [](const char* path) { return [path](Snapshot& s) { s.apps[0].path = path; }; };
  const std::tuple<const char*, std::function<void(Snapshot&)>, std::size_t> cases[] = {
      {"Apple's own", [](Snapshot& s) { s.apps[0].bundleID = "com.apple.Foo"; }, 0},
      {"this program", [](Snapshot& s) { s.procs[s.apps[0].pid = self.pid] = s.procs[101]; }, 0},
      {"no process record", [](Snapshot& s) { s.procs.erase(101); }, 0},
      {"not a bundle", lyingAt("/Applications/Foo"), 0},
      {"inside another bundle", lyingAt("/Applications/A.app/Contents/Helpers/B.app"), 0},
      {"a login item inside", lyingAt("/Applications/A.app/Contents/Library/LoginItems/B.app"), 1},
      {"the same name twice", [](Snapshot& s) { s.apps[0].name = "App2"; }, 0},
      {"before login", started(-1), 0},
      {"at login", started(0), 1},
      {"180 s after login", started(180), 0},  // of two login windows the earlier counts
      {"only another user logged in", started(0, 0), 0}};
  for (const auto& [what, change, found] : cases) {
    Snapshot snapshot = withApps(6);
    change(snapshot);
    EXPECT_THAT(loginApps(snapshot, self), SizeIs(found)) << what;
  }
}

}  // namespace
