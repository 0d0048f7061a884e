// Rules about browsers: those that work hard or hold much memory, and those that a test left behind.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "diagnosis/attribution.h"
#include "diagnosis/browser_names.h"
#include "diagnosis/detect.h"
#include "diagnosis/machine_share.h"
#include "records/browsers.h"
#include "records/checked.h"
#include "records/formatted.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

constexpr double largeShare = 0.2;  // of the installed memory
constexpr double testSeconds = 3'600;
constexpr std::string_view chromeID = "com.google.Chrome";

// A path that contains one of these is a browser made for automated tests.
constexpr std::array<std::string_view, 4> testBrowserMarkers{"/ms-playwright/", "/puppeteer/",
                                                             "Chrome for Testing", "chrome-headless-shell"};

// One browser with all its processes.
struct Browser {
  std::string_view key;  // application name; points into the snapshot
  std::string_view name;
  std::uint64_t memory = 0;
  double cpu = 0;  // cores' worth
  std::int64_t count = 0;
  const RunningApp* app = nullptr;    // null when it is not among the running applications
  std::optional<Access> access = {};  // absent when the permission was not looked up
  const Tabs* tabs = nullptr;         // null unless access is allowed and the tabs were read

  bool isBusy() const { return cpu >= busyCores; }
};

// In ascending order of application name.
std::map<std::string_view, Browser> browsersOf(const Snapshot& snapshot) {
  const bool safariRuns = isSafariRunning(snapshot);
  std::map<std::string_view, Browser> all;
  for (const auto& [pid, proc] : snapshot.procs) {
    const auto key = browserOf(proc, safariRuns);
    if (!key) continue;
    Browser& browser = all[*key];
    browser.memory = saturatingAdd(browser.memory, proc.footprint);
    browser.cpu += proc.cpu;
    ++browser.count;
  }
  for (auto& [key, browser] : all) {
    browser.key = key;
    const KnownBrowser* known = browserOfApp(key);
    browser.name = known == nullptr ? key : known->name;
    browser.app = runningApp(key, snapshot);
    if (browser.app == nullptr) continue;
    const auto access = snapshot.access.find(browser.app->bundleID);
    if (access != snapshot.access.end()) browser.access = access->second;
    const auto tabs = snapshot.tabs.find(browser.app->bundleID);
    if (browser.access == Access::allowed && tabs != snapshot.tabs.end()) browser.tabs = &tabs->second;
  }
  return all;
}

std::string pileText(const std::pair<std::string, int>& pile) {
  return formatted("{} from {}", pile.second, siteName(pile.first));
}

void addReadTabSteps(const Tabs& tabs, const std::string& id, std::vector<Step>& steps) {
  if (tabs.duplicates >= 1) {
    const std::string who = tabs.duplicates == 1 ? "1 tab shows" : formatted("{} tabs show", tabs.duplicates);
    steps.push_back({who + " the same page as another tab.",
                     Action{"Close " + plural(tabs.duplicates, "duplicate"), {CloseDuplicateTabs{id}}}});
  }
  if (!tabs.piles.empty()) {
    std::vector<std::string> piles;
    std::transform(tabs.piles.begin(), tabs.piles.end(), std::back_inserter(piles), pileText);
    steps.push_back({formatted("Many tabs are from the same site: {}. Close the ones that you are done with.",
                               list(piles))});
  }
}

// What can be done about the tabs of a browser that is among the running applications.
void addTabSteps(const Browser& browser, std::vector<Step>& steps) {
  const std::string& id = browser.app->bundleID;
  if (scriptableBrowser(id) == nullptr) return;
  if (browser.access == Access::notAsked) {
    steps.push_back(
        {"Tarnwick can look at your open tabs and find the ones that you can close. macOS calls this "
         "permission “control”.",
         Action{"See my open tabs", {AskAutomation{id}}}});
  } else if (browser.access == Access::denied) {
    steps.push_back({formatted("To find tabs that you can close, turn on {} under Tarnwick in Privacy & "
                               "Security > Automation.",
                               browser.name),
                     Action{"Open Automation settings",
                            {OpenSettings{"com.apple.preference.security?Privacy_Automation"}}}});
  } else if (browser.tabs != nullptr) {
    addReadTabSteps(*browser.tabs, id, steps);
  }
}

// Chrome can put idle tabs to sleep; worth saying only where it is off or may be off.
bool lacksMemorySaver(const Browser& browser, const Snapshot& snapshot) {
  return browser.app->bundleID == chromeID && browser.access == Access::allowed &&
         snapshot.memorySaver.value_or(0) == 0;
}

std::vector<Step> browserSteps(const Browser& browser, const Snapshot& snapshot) {
  std::vector<Step> steps;
  if (browser.app != nullptr) addTabSteps(browser, steps);
  if (steps.empty()) steps.push_back({"Close the tabs that you do not need."});
  if (browser.app != nullptr && lacksMemorySaver(browser, snapshot)) {
    steps.push_back(
        {formatted("Turn on Memory Saver{}. Chrome then puts tabs that you have not used for a while "
                   "to sleep.",
                   snapshot.memorySaver ? "" : ", if it is off"),
         Action{"Open Chrome settings", {OpenTab{std::string(chromeID), "chrome://settings/performance"}}}});
  }
  Step quit{
      formatted("Quit and open {0} again. This frees memory that {0} holds on to over time.", browser.name)};
  if (browser.app != nullptr) {
    quit.action = Action{formatted("Quit {}", browser.name), {QuitApp{browser.app->bundleID}}};
  }
  steps.push_back(std::move(quit));
  return steps;
}

std::vector<std::string> tabNotes(const Browser& browser) {
  std::vector<std::string> notes;
  if (browser.tabs == nullptr) return notes;
  if (browser.tabs->duplicates > 0) notes.push_back(plural(browser.tabs->duplicates, "duplicate tab"));
  if (!browser.tabs->piles.empty()) {
    const auto& [host, count] = browser.tabs->piles.front();
    notes.push_back(formatted("{} {} tabs", count, siteName(host)));
  }
  return notes;
}

std::string browserSummary(const Browser& browser) {
  if (browser.isBusy()) return "A busy page takes processor time from your other apps.";
  const std::vector<std::string> notes = tabNotes(browser);
  if (!notes.empty()) return list(notes) + " are open.";
  if (browser.access == Access::notAsked) {
    return "Each open tab uses memory. Tarnwick can find the tabs that you can close.";
  }
  return "Each open tab uses memory. Close the tabs that you do not need.";
}

Finding browserFinding(const Browser& browser, const Snapshot& snapshot) {
  const bool busy = browser.isBusy();
  const double memory = memoryShare(browser.memory, snapshot);
  const std::string percent = formatted("{:.0f}%", std::trunc(memory * 100));
  const std::string why =
      busy ? "A busy page, such as a video or a large web app, takes processor time from your other apps."
           : formatted(
                 "That is {} of your Mac's memory. When memory runs short, macOS moves data to the "
                 "disk, and everything gets slower.",
                 percent);
  return {.id = formatted("browser-app:{}", browser.key),
          .bucket = busy ? Bucket::now : Bucket::always,
          .title = busy ? formatted("{} is working hard", browser.name)
                        : formatted("{} uses {} of memory", browser.name, size(browser.memory)),
          .detail = formatted("{} {} runs {}, because each tab and extension gets its own.", why,
                              browser.name, plural(browser.count, "process")),
          .bytes = browser.memory,
          .steps = browserSteps(browser, snapshot),
          .subject = std::string(browser.name),
          .summary = browserSummary(browser),
          .metric = busy ? pct(browser.cpu, snapshot) : percent + " of memory",
          .icon = browser.app != nullptr ? browser.app->path : "globe",
          .impact = std::max(memory, processorShare(browser.cpu, snapshot))};
}

bool isTestBrowser(const std::string& path) {
  return path.find("/Frameworks/") == std::string::npos &&
         std::any_of(testBrowserMarkers.begin(), testBrowserMarkers.end(),
                     [&](std::string_view marker) { return path.find(marker) != std::string::npos; });
}

std::string_view testTool(const std::string& path) {
  if (path.find("ms-playwright") != std::string::npos) return "Playwright";
  if (path.find("puppeteer") != std::string::npos) return "Puppeteer";
  return "A test tool";
}

Finding testBrowserFinding(const Proc& proc, const Snapshot& snapshot, const std::set<Pid>& termed) {
  std::uint64_t memory = proc.footprint;
  for (const Proc* below : descendants(proc.pid, snapshot)) memory = saturatingAdd(memory, below->footprint);
  const std::string_view tool = testTool(proc.path);
  const std::string age = ago(secondsBetween(proc.started, snapshot.now));
  return {.id = formatted("browser:{}", proc.pid),
          .bucket = Bucket::leftovers,
          .title = "A test browser is still open",
          .detail = formatted(
              "{} opened it {} ago for an automated test. The test ended but did not close it. It uses {}.",
              tool, age, size(memory)),
          .bytes = memory,
          .actions = {stop(proc, termed, "Close it")},
          .evidence = formatted("Tool: {}. The test runner that opened it has ended.\nBrowser command: {}",
                                tool, commandLine(proc)),
          .subject = "a test browser",
          .summary = formatted("{} opened it {} ago and did not close it.", tool, age),
          .metric = size(memory),
          .icon = "globe",
          .impact = memoryShare(memory, snapshot)};
}

}  // namespace

std::vector<Finding> browsers(const Snapshot& snapshot) {
  std::vector<Finding> found;
  for (const auto& [key, browser] : browsersOf(snapshot)) {
    const bool large = static_cast<double>(browser.memory) >= largeShare * static_cast<double>(snapshot.ram);
    if (browser.isBusy() || large) found.push_back(browserFinding(browser, snapshot));
  }
  return found;
}

std::vector<Finding> testBrowsers(const Snapshot& snapshot, const std::set<Pid>& termed, const Self& self) {
  std::vector<Finding> found;
  for (const auto& [pid, proc] : snapshot.procs) {
    const bool leftOver =
        proc.ppid == 1 && proc.uid == self.uid && secondsBetween(proc.started, snapshot.now) > testSeconds;
    if (leftOver && isTestBrowser(proc.path)) found.push_back(testBrowserFinding(proc, snapshot, termed));
  }
  return found;
}

}  // namespace tarnwick
