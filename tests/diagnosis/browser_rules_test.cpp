#include "tests/support/machines.h"

namespace {

const std::string chromeID = "com.google.Chrome";

// Chrome with two processes and 4 of 16 GB, listed among the running applications.
Snapshot withChrome() {
  Snapshot m = machine();
  addApp(m, 60, "Google Chrome").footprint = 3 * gigabyte;
  addApp(m, 61, "Google Chrome").footprint = gigabyte;
  m.apps = {{60, "Chrome", chromeID, "/Applications/Google Chrome.app", false},
            {61, "Chrome", "com.example.other", "/Volumes/x/Google Chrome.app", false}};
  return m;
}

using Browsers = RuleTest;

TEST_F(Browsers, LargeOrBusy) {
  Proc& zen = addApp(m, 60, "Zen");
  const std::tuple<std::uint64_t, double, const char*> cases[] = {
      {3'435'973'836, 0.99, ""},  // just below a fifth of 16 GB
      {3'435'973'837, 0.99, "Zen uses 3.2 GB of memory | 20% of memory | ALWAYS ON 0.2\n"},
      {3'951'369'912, 0, "Zen uses 3.7 GB of memory | 22% of memory | ALWAYS ON 0.23\n"},  // 22.9999999985
      {8 * gigabyte, 1.0, "Zen is working hard | 10% CPU | BUSY NOW 0.5\n"}};
  for (const auto& [footprint, cpu, cards] : cases) {
    zen.footprint = footprint;
    zen.cpu = cpu;
    EXPECT_EQ(glance(browsers(m)), cards);
  }
}

TEST_F(Browsers, OnlyOneAmongTheRunningApplicationsOrWithADesktopEntryCanBeQuit) {
  addApp(m, 60, "Arc").cpu = 1.5;
  const Finding busy = only(browsers(m));
  EXPECT_THAT(busy.detail, HasSubstr("Arc runs 1 process,"));
  EXPECT_EQ(busy.icon, "globe");
  EXPECT_EQ(busy.steps.back(),
            Step{"Quit and open Arc again. This frees memory that Arc holds on to over time."});
  m.procs.erase(60);
  addApp(m, 10, "Chromium").cpu = 2;
  m.apps = {{.pid = 10, .name = "Chromium", .bundleID = "chromium", .path = "/usr/share/chromium.desktop"}};
  EXPECT_THAT(browsers(m), IsEmpty()) << "nothing tells of sessions";
  m.procs[10].session = 10;
  const Finding card = only(browsers(m));
  EXPECT_EQ(card.title + ": " + card.steps.back().action.value().label,
            "Chromium is working hard: Quit Chromium");
  m.apps.front().path = "/Applications/Other.app";
  EXPECT_FALSE(only(browsers(m)).steps.back().action) << "the name alone does not tell";
}

TEST_F(Browsers, StepsFollowThePermission) {
  m = withChrome();
  m.tabs[chromeID] = {1, {{"github.com", 12}, {"example.org", 3}}};
  // Summary and steps, one a line, without the last: to quit.
  const auto told = [&] {
    const Finding found = only(browsers(m));
    std::string lines = found.summary;
    for (std::size_t i = 0; i + 1 < found.steps.size(); ++i)
      lines += "\n" + found.steps[i].text +
               (found.steps[i].action ? " " + found.steps[i].action->fix.command() : "");
    return lines;
  };
  const std::string close =
      "Each open tab uses memory. Close the tabs that you do not need.\nClose the tabs that you do not need.";
  m.access[chromeID] = Access::denied;
  const std::string turnOn =
      "\nTo find tabs that you can close, turn on Chrome under Tarnwick in Privacy & Security > Automation. ";
  EXPECT_THAT(
      told(),
      EndsWith(turnOn + "open x-apple.systempreferences:com.apple.preference.security?Privacy_Automation"));
  m.access[chromeID] = Access::unknown;
  EXPECT_EQ(told(), close);
  m.access[chromeID] = Access::allowed;
  EXPECT_EQ(told(), R"(1 duplicate tab and 12 GitHub tabs are open.
1 tab shows the same page as another tab. close the duplicate tabs in com.google.Chrome, keep the first copy
Many tabs are from the same site: 12 from GitHub and 3 from example.org. Close the ones that you are done with.
Turn on Memory Saver, if it is off. Chrome then puts tabs that you have not used for a while to sleep. open chrome://settings/performance in com.google.Chrome)");
  m.memorySaver = 1;
  m.tabs[chromeID] = {3, {}};
  EXPECT_THAT(told(), StartsWith("3 duplicate tabs are open.\n"));
  m.tabs[chromeID] = {0, {}};
  EXPECT_EQ(told(), close);
  m.apps.front().bundleID = "org.example.chrome";  // not one that can be asked for its tabs
  m.access["org.example.chrome"] = Access::denied;
  EXPECT_EQ(told(), close);
}

TEST_F(Browsers, WebKitBelongsToSafariWhileItRuns) {
  for (const auto& [pid, name] :
       {std::pair{63, "WebContent"}, {64, "Networking"}, {65, "GPU"}, {66, "WebAuthn"}})
    m.procs[pid] = {.pid = pid, .path = std::string("/System/Library/com.apple.WebKit.") + name, .cpu = 0.5};
  EXPECT_THAT(browsers(m), IsEmpty());
  addApp(m, 70, "Safari");
  EXPECT_THAT(only(browsers(m)).detail, HasSubstr("Safari runs 4 processes,"));
  addApp(m, 59, "Google Chrome").cpu = 1;
  addApp(m, 58, "Slack").cpu = 9;
  EXPECT_EQ(
      glance(browsers(m)),
      "Chrome is working hard | 10% CPU | BUSY NOW 0.1\nSafari is working hard | 15% CPU | BUSY NOW 0.15\n")
      << "by application name, not by pid";
}

TEST(TestBrowsers, OrphansOlderThanAnHour) {
  const char* firefox = "/c/ms-playwright/x/firefox";
  const std::tuple<const char*, double, Pid, std::uint32_t, const char*> cases[] = {
      {firefox, 3'601, 1, myUid, "Playwright"},
      {firefox, 3'600, 1, myUid, "none"},
      {firefox, 9'999, 2, myUid, "none"},
      {firefox, 9'999, 1, 0, "none"},
      {"/c/ms-playwright/A.app/Contents/Frameworks/crashpad", 9'999, 1, myUid, "none"},
      {"/opt/Google Chrome for Testing", 9'999, 1, myUid, "A test tool"},
      {"/opt/x-puppeteer/chrome-headless-shell", 9'999, 1, myUid, "Puppeteer"}};
  for (const auto& [path, age, ppid, uid, tool] : cases) {
    Snapshot m = machine();
    m.procs[20] = {
        .pid = 20, .ppid = ppid, .uid = uid, .path = path, .args = {""}, .started = m.now - Seconds{age}};
    m.index();
    const std::vector<Finding> found = testBrowsers(m, {}, {4242, myUid, "/Users/x"});
    EXPECT_EQ(found.empty() ? "none" : found[0].evidence->substr(6, found[0].evidence->find('.') - 6), tool)
        << path;
  }
}

TEST(TestBrowsers, CountTheirTreeAndAreForcedWhenStillThere) {
  Snapshot m = machine();
  Proc& proc = add(m, 20, 1, {"/c/puppeteer/chrome", "--headless", "--user\ndata"}, 6 * 86'400);
  proc.path = "/c/puppeteer/chrome";
  proc.footprint = 300 * megabyte;
  add(m, 21, 20, {"helper"}).footprint = 30 * megabyte;
  add(m, 22, 21, {"helper"}).footprint = 2 * megabyte;
  m.index();
  const Finding found = only(testBrowsers(m, {20}, {4242, myUid, "/Users/x"}));
  EXPECT_EQ(found.bytes, 332 * megabyte);
  EXPECT_THAT(*found.evidence, AllOf(StartsWith("Tool: Puppeteer."),
                                     EndsWith("\nBrowser command: chrome --headless --user data")));
  EXPECT_EQ(found.actions.front(), (Action{"Force quit", {Signal{20, 9, m.procs.at(20).started}}}));
}

}  // namespace
