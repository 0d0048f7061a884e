#include <gmock/gmock.h>

#include "diagnosis/detect.h"
#include "tests/support/fake_surroundings.h"
#include "tests/support/machines.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string chromeID = "com.google.Chrome";
const Step closeTabs{"Close the tabs that you do not need."};
const Step quitChrome{"Quit and open Chrome again. This frees memory that Chrome holds on to over time.",
                      Action{"Quit Chrome", {QuitApp{chromeID}}}};

// Chrome with two processes and 4 of 16 GB, listed among the running applications.
Snapshot withChrome() {
  Snapshot m = machine();
  addApp(m, 60, "Google Chrome").footprint = 3 * gigabyte;
  addApp(m, 61, "Google Chrome").footprint = gigabyte;
  m.apps = {{60, "Chrome", chromeID, "/Applications/Google Chrome.app", false},
            {61, "Chrome", "com.example.other", "/Volumes/x/Google Chrome.app", false}};
  return m;
}

Finding only(const std::vector<Finding>& found) {
  EXPECT_THAT(found, SizeIs(1));
  return found.empty() ? Finding{} : found.front();
}

TEST(Browsers, LargeOrBusy) {
  Snapshot m = machine();
  Proc& zen = addApp(m, 60, "Zen");
  const struct {
    std::uint64_t footprint;
    double cpu;
    const char* title;  // empty: no finding
    const char* metric;
    double impact;
  } cases[] = {
      {16 * gigabyte / 100 * 19, 0.99, "", "", 0},
      {3'435'973'836, 0.99, "", "", 0},  // just below a fifth of 16 GB
      {3'435'973'837, 0.99, "Zen uses 3.2 GB of memory", "20% of memory", 3'435'973'837 / (16.0 * gigabyte)},
      {4'810'363'371, 0, "Zen uses 4.5 GB of memory", "27% of memory", 4'810'363'371 / (16.0 * gigabyte)},
      {0, 1.0, "Zen is working hard", "10% CPU", 0.1},
      {8 * gigabyte, 1.0, "Zen is working hard", "10% CPU", 0.5},
  };
  for (const auto& [footprint, cpu, title, metric, impact] : cases) {
    zen.footprint = footprint;
    zen.cpu = cpu;
    const std::vector<Finding> found = browsers(m);
    if (*title == '\0') {
      EXPECT_THAT(found, IsEmpty()) << footprint;
      continue;
    }
    const Finding finding = only(found);
    EXPECT_EQ(finding.title, title);
    EXPECT_EQ(finding.metric, metric);
    EXPECT_DOUBLE_EQ(finding.impact, impact);
    EXPECT_EQ(finding.bytes, footprint);
    EXPECT_EQ(finding.bucket, cpu >= 1 ? Bucket::now : Bucket::always);
  }
}

TEST(Browsers, TheWholeCard) {
  const Snapshot m = withChrome();
  const Finding large = only(browsers(m));
  EXPECT_EQ(
      large,
      (Finding{.id = "browser-app:Google Chrome",
               .bucket = Bucket::always,
               .title = "Chrome uses 4.0 GB of memory",
               .detail = "That is 25% of your Mac's memory. When memory runs short, macOS moves data to the "
                         "disk, and everything gets slower. Chrome runs 2 processes, because each tab and "
                         "extension gets its own.",
               .bytes = 4 * gigabyte,
               .steps = {closeTabs, quitChrome},
               .subject = "Chrome",
               .summary = "Each open tab uses memory. Close the tabs that you do not need.",
               .metric = "25% of memory",
               .icon = "/Applications/Google Chrome.app",
               .impact = 0.25}));

  Snapshot lonely = machine();
  addApp(lonely, 60, "Arc").cpu = 1.5;
  const Finding busy = only(browsers(lonely));
  EXPECT_EQ(busy.detail,
            "A busy page, such as a video or a large web app, takes processor time from your other "
            "apps. Arc runs 1 process, because each tab and extension gets its own.");
  EXPECT_EQ(busy.summary, "A busy page takes processor time from your other apps.");
  EXPECT_THAT(
      busy.steps,
      ElementsAre(closeTabs, Step{"Quit and open Arc again. This frees memory that Arc holds on to over "
                                  "time."}))
      << "nothing to quit: it is not among the running applications";
  EXPECT_EQ(busy.icon, "globe");
}

TEST(Browsers, StepsFollowThePermission) {
  Snapshot m = withChrome();
  m.tabs[chromeID] = {1, {{"github.com", 12}, {"example.org", 3}}};
  const Step ask{
      "Tarnwick can look at your open tabs and find the ones that you can close. macOS calls this "
      "permission “control”.",
      Action{"See my open tabs", {AskAutomation{chromeID}}}};
  const Step denied{
      "To find tabs that you can close, turn on Chrome under Tarnwick in Privacy & Security > "
      "Automation.",
      Action{"Open Automation settings", {OpenSettings{"com.apple.preference.security?Privacy_Automation"}}}};
  const Step duplicates{"1 tab shows the same page as another tab.",
                        Action{"Close 1 duplicate", {CloseDuplicateTabs{chromeID}}}};
  const Step piles{
      "Many tabs are from the same site: 12 from GitHub and 3 from example.org. Close the ones that "
      "you are done with."};
  const Step saver{
      "Turn on Memory Saver, if it is off. Chrome then puts tabs that you have not used for a while "
      "to sleep.",
      Action{"Open Chrome settings", {OpenTab{chromeID, "chrome://settings/performance"}}}};

  m.access[chromeID] = Access::notAsked;
  EXPECT_THAT(only(browsers(m)).steps, ElementsAre(ask, quitChrome));
  EXPECT_EQ(only(browsers(m)).summary,
            "Each open tab uses memory. Tarnwick can find the tabs that you can close.");
  m.access[chromeID] = Access::denied;
  EXPECT_THAT(only(browsers(m)).steps, ElementsAre(denied, quitChrome));
  m.access[chromeID] = Access::unknown;
  EXPECT_THAT(only(browsers(m)).steps, ElementsAre(closeTabs, quitChrome));
  EXPECT_EQ(only(browsers(m)).summary, "Each open tab uses memory. Close the tabs that you do not need.");

  m.access[chromeID] = Access::allowed;
  EXPECT_THAT(only(browsers(m)).steps, ElementsAre(duplicates, piles, saver, quitChrome));
  EXPECT_EQ(only(browsers(m)).summary, "1 duplicate tab and 12 GitHub tabs are open.");
  m.memorySaver = 0;
  m.tabs[chromeID] = {3, {}};
  std::vector<Step> steps = only(browsers(m)).steps;
  ASSERT_THAT(steps, SizeIs(3));
  EXPECT_EQ(steps[0].text, "3 tabs show the same page as another tab.");
  EXPECT_EQ(steps[0].action->label, "Close 3 duplicates");
  EXPECT_EQ(steps[1].text,
            "Turn on Memory Saver. Chrome then puts tabs that you have not used for a while to sleep.");
  EXPECT_EQ(only(browsers(m)).summary, "3 duplicate tabs are open.");
  m.memorySaver = 1;
  m.tabs[chromeID] = {0, {}};
  EXPECT_THAT(only(browsers(m)).steps, ElementsAre(closeTabs, quitChrome));

  m.apps.front().bundleID = "org.example.chrome";  // not one that can be asked for its tabs
  m.access["org.example.chrome"] = Access::denied;
  EXPECT_EQ(only(browsers(m)).steps.front(), closeTabs);
}

TEST(Browsers, WebKitBelongsToSafariWhileItRuns) {
  Snapshot m = machine();
  for (const auto& [pid, name] :
       {std::pair{63, "WebContent"}, {64, "Networking"}, {65, "GPU"}, {66, "WebAuthn"}}) {
    Proc& page = add(m, pid, 1, {"page"});
    page.path = std::string("/System/Library/com.apple.WebKit.") + name;
    page.cpu = 0.5;
  }
  EXPECT_THAT(browsers(m), IsEmpty());
  addApp(m, 70, "Safari");
  addApp(m, 59, "Google Chrome").cpu = 1;
  addApp(m, 58, "Slack").cpu = 9;
  const std::vector<Finding> found = browsers(m);
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].subject, "Chrome") << "by application name, not by pid";
  EXPECT_EQ(found[1].metric, "15% CPU");
  EXPECT_THAT(found[1].detail, testing::HasSubstr("Safari runs 4 processes,"));
}

TEST(TestBrowsers, OrphansOlderThanAnHour) {
  const Self self{4242, myUid, "/Users/x"};
  const struct {
    const char* path;
    Pid ppid;
    std::uint32_t uid;
    double age;
    const char* tool;  // empty: not reported
  } cases[] = {
      {"/c/ms-playwright/x/firefox", 1, myUid, 3'601, "Playwright"},
      {"/c/ms-playwright/x/firefox", 1, myUid, 3'600, ""},
      {"/c/ms-playwright/x/firefox", 2, myUid, 9'999, ""},
      {"/c/ms-playwright/x/firefox", 1, 0, 9'999, ""},
      {"/c/ms-playwright/A.app/Contents/Frameworks/crashpad", 1, myUid, 9'999, ""},
      {"/c/puppeteer/chrome", 1, myUid, 9'999, "Puppeteer"},
      {"/opt/Google Chrome for Testing", 1, myUid, 9'999, "A test tool"},
      {"/opt/x-puppeteer/chrome-headless-shell", 1, myUid, 9'999, "Puppeteer"},
      {"/c/ms-playwright", 1, myUid, 9'999, ""},
  };
  for (const auto& [path, ppid, uid, age, tool] : cases) {
    Snapshot m = machine();
    Proc& proc = add(m, 20, ppid, {""}, age);
    proc.path = path;
    proc.uid = uid;
    m.index();
    const std::vector<Finding> found = testBrowsers(m, {}, self);
    ASSERT_THAT(found, SizeIs(*tool == '\0' ? 0 : 1)) << path << age;
    if (!found.empty()) {
      EXPECT_EQ(found.front().evidence->find("Tool: " + std::string(tool) + "."), 0U) << path;
    }
  }
}

TEST(TestBrowsers, TheWholeCard) {
  Snapshot m = machine();
  Proc& proc = add(m, 20, 1, {"/c/ms-playwright/chrome", "--headless", "--user\ndata"}, 6 * 86'400);
  proc.path = "/c/ms-playwright/chrome";
  proc.footprint = 300 * megabyte;
  add(m, 21, 20, {"helper"}).footprint = 30 * megabyte;
  add(m, 22, 21, {"helper"}).footprint = 2 * megabyte;
  m.index();
  const Self self{4242, myUid, "/Users/x"};
  Finding expected{.id = "browser:20",
                   .bucket = Bucket::leftovers,
                   .title = "A test browser is still open",
                   .detail =
                       "Playwright opened it 6 days ago for an automated test. The test ended but did not "
                       "close it. It uses 332 MB.",
                   .bytes = 332 * megabyte,
                   .actions = {{"Close it", {Signal{20, 15, m.procs.at(20).started}}}},
                   .evidence =
                       "Tool: Playwright. The test runner that opened it has ended.\n"
                       "Browser command: chrome --headless --user data",
                   .subject = "a test browser",
                   .summary = "Playwright opened it 6 days ago and did not close it.",
                   .metric = "332 MB",
                   .icon = "globe",
                   .impact = 332.0 / (16 * 1024)};
  EXPECT_THAT(testBrowsers(m, {}, self), ElementsAre(expected));
  expected.actions = {{"Force quit", {Signal{20, 9, m.procs.at(20).started}}}};
  EXPECT_THAT(testBrowsers(m, {20}, self), ElementsAre(expected)) << "still there after it was asked to end";
}

}  // namespace
}  // namespace tarnwick
