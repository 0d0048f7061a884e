#include "tests/app/panel/panel_sample.h"

namespace tarnwick {
namespace {

Fix end(Pid pid) { return {Signal{pid, 15, sampleTime}}; }

Finding docker() {
  return {
      .id = "docker",
      .bucket = Bucket::always,
      .title = "Docker holds 8.0 GB of memory",
      .detail =
          "Docker runs your containers inside a virtual machine, and that machine keeps the memory it "
          "once asked for. 2 containers are running: storefront-db (780 MB) and storefront-redis (120 MB).",
      .bytes = 8192 * mib,
      .actions = {{"Quit Docker", {QuitApp{"com.docker.docker"}}}},
      .steps = {{"Quit Docker when you do not need it.",
                 Action{"Quit Docker", {QuitApp{"com.docker.docker"}}}},
                {"Or give it less memory: open Docker, choose Settings, then Resources.", std::nullopt},
                {"Stop the containers that you do not use.",
                 Action{"Stop storefront-db", {DockerStop{"c1"}}}}},
      .subject = "Docker",
      .summary = "Docker keeps memory even while its containers do nothing.",
      .metric = "8.0 GB",
      .icon = "shippingbox",
      .impact = 0.5};
}

Finding browser() {
  return {
      .id = "browser-app:Google Chrome",
      .bucket = Bucket::now,
      .title = "Google Chrome uses 2.3 GB of memory for 31 tabs in 4 windows",
      .detail = "Each open tab is a program of its own. Close the tabs that you no longer read.",
      .bytes = 2300 * mib,
      .actions = {{"Close 12 duplicate tabs", {CloseDuplicateTabs{"com.google.Chrome"}}},
                  {"Turn on Memory Saver", {OpenTab{"com.google.Chrome", "chrome://settings/performance"}}}},
      .subject = "Google Chrome",
      .summary = "12 tabs repeat a page that is already open in another tab of the same browser.",
      .metric = "140% CPU",
      .icon = "/nowhere/Google Chrome.app",
      .impact = 0.3};
}

Finding testRun() {
  return {.id = "pid:15",
          .bucket = Bucket::now,
          .title = "“make test-cov” keeps 3 cores busy",
          .detail = "Claude Code started it 43 seconds ago in “storefront”. It runs pytest with 3 workers.",
          .bytes = 120 * mib,
          .actions = {{"Stop", {All{{end(15), end(14)}}}}},
          .evidence = "python -m pytest\ncwd /home/me/storefront",
          .subject = "“make test-cov”",
          .summary = "A test run that Claude Code started is using most of the processor.",
          .metric = "27% CPU",
          .icon = "terminal",
          .impact = 0.27};
}

}  // namespace

Snapshot sampleSnapshot() {
  return {.diskFree = 140 * gib,
          .diskTotal = 256 * gib,
          .ram = 16384 * mib,
          .cpuBusy = 0.12,
          .cores = 10,
          .now = sampleTime};
}

Finding sampleFinding(const std::string& id, Bucket bucket, Pid pid) {
  return {.id = id,
          .bucket = bucket,
          .title = "Title of " + id,
          .detail = "Detail of " + id + ".",
          .bytes = 512 * mib,
          .actions = {{"Stop", end(pid)}},
          .subject = id,
          .summary = "Summary of " + id + ".",
          .icon = "cpu",
          .impact = 0.1};
}

std::vector<Finding> sampleFindings() {
  Finding disk = sampleFinding("disk", Bucket::always);
  disk.title = "Your disk is almost full";
  disk.summary = "A full disk slows everything down, because macOS needs free space for swap files.";
  disk.icon = "internaldrive";
  disk.metric = "9.0 GB free";
  Finding photos = sampleFinding("service:Photos is analyzing your pictures", Bucket::now);
  photos.title = "Photos is analyzing your pictures";
  photos.icon = "photo.on.rectangle.angled";
  photos.actions.clear();
  Finding stack = sampleFinding("stack:/home/me/storefront", Bucket::leftovers);
  stack.title = "storefront: 2 servers and 2 containers that nobody has used for 13 hours";
  stack.icon = "server.rack";
  Finding awake = sampleFinding("caffeinate:30", Bucket::leftovers);
  awake.title = "“caffeinate” keeps this Mac awake";
  awake.icon = "cup.and.saucer";
  awake.bytes = 0;
  return {docker(), browser(), testRun(), disk, photos, stack, awake};
}

std::vector<std::string> textsOf(const Node& node) {
  std::vector<std::string> texts;
  for (const Label& label : nodesOf<Label>(node)) texts.push_back(label.text);
  return texts;
}

std::vector<std::string> titlesOf(const Node& node) {
  std::vector<std::string> titles;
  for (const Button& button : nodesOf<Button>(node)) {
    if (!button.title.empty()) titles.push_back(button.title);
  }
  return titles;
}

}  // namespace tarnwick
