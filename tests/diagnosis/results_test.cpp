#include "diagnosis/findings.h"
#include "diagnosis/report.h"
#include "diagnosis/verdict.h"
#include "tests/support/machines.h"

namespace {

// Heat 1.0, two services with the same share, and a full disk 0.9.
Snapshot troubled() {
  Snapshot snapshot{.diskTotal = 1, .cores = 1, .thermal = ThermalState::serious};
  for (const auto& [pid, name] : {std::pair{10, "mdworker"}, {11, "cloudd"}})
    snapshot.procs[pid] = {.pid = pid, .uid = 501, .args = {name}, .cpu = 0.9};
  return snapshot;
}

TEST(Findings, SortByImpactThenIdAndMarkElevenRulesInTableOrderOnlyWhenArmed) {
  FakeSurroundings nobody;
  double milliseconds = 0;
  BenchMarks marks([&] { return ++milliseconds; });
  EXPECT_THAT(ids(findings(troubled(), {}, nobody, marks)),
              ElementsAre("heat", "disk", "service:Spotlight is indexing your files",
                          "service:iCloud is syncing your files"))
      << "equal impacts go by the bytes of the id: d, s; then capital S before small i";
  EXPECT_THAT(findings(Snapshot{}, {}, nobody, marks), IsEmpty());
  EXPECT_EQ(milliseconds, 0) << "not armed, the clock is not even read";

  marks.arm();
  findings(troubled(), {}, nobody, marks);
  const auto marked = marks.take();
  std::string taken;
  for (const BenchMark& mark : marked.value()) taken += mark.first + ", ";
  EXPECT_EQ(
      taken,
      "heat, browsers, services, disk, login items, cpu, docker card, simulators, stacks, test browsers, caffeinate, ");
  EXPECT_EQ(milliseconds, 11);
}

// Report and verdict of a machine all of whose names hold `end`: a folder, an application, a container,
// branch, commit, session, job.
std::string saidWith(const std::string& end) {
  const std::string shop = "/Users/x/shop";
  const std::string jobs = "/Users/x/jobs" + end + "x";
  FakeSurroundings around;
  around.repositories[shop] = {"re" + end + "po", "bra" + end + "nch", "sub" + end + "ject", "1 hour ago"};
  around.sessions[30].title = "ti" + end + "tle";
  around.jobs[jobs].job = "jo" + end + "b";
  Snapshot m = machine();
  add(m, 30, 1, {"claude"});
  for (const auto& [pid, folder] : {std::pair{41, shop}, {42, jobs}, {43, "/Users/x/di" + end + "r"}}) {
    Proc& server = add(m, pid, 30, {"node"}, 50'000);
    server.cwd = folder;
    server.ports = {3000};
    server.footprint = static_cast<std::uint64_t>(pid) * megabyte;
  }
  addApp(m, 50, "Fig" + end + "ma").cpu = 5;
  addApp(m, 51, "Google Chrome").footprint = 4 * gigabyte;
  m.apps = {{51, "Chrome", "com.google.Chrome", "/Applications/Google Chrome.app", false}};
  m.access["com.google.Chrome"] = Access::allowed;
  m.tabs["com.google.Chrome"].piles = {{"si" + end + "te.net", 9}};
  m.containers = {{"c1", "d" + end + "b", "Up", "postgres", gigabyte}};
  m.containerLoad = {.count = 1, .bytes = 3 * gigabyte};
  m.index();
  BenchMarks marks([] { return 0.0; });
  const std::vector<Finding> found = findings(m, {}, around, marks);
  std::string said = text(m, found, {}) + verdict(m, found).cause.value_or("no cause");
  for (const Finding& finding : found) {
    said += finding.metric.value_or("");
    for (const Step& step : finding.steps) said += step.text + (step.action ? step.action->label : "");
  }
  return said;
}

TEST(Findings, NoNameSaysALineOfItsOwn) {
  const std::string plain = saidWith(" ");
  for (const char* name :
       {"di r", "re po", "bra nch", "sub ject", "ti tle", "jo b", "Fig ma", "d b", "si te"})
    EXPECT_THAT(plain, HasSubstr(name));
  for (const char* end : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"})
    EXPECT_EQ(saidWith(end), plain);
}

constexpr std::int64_t gibibyte = 1LL << 30;

const Finding holder{.bucket = Bucket::always, .bytes = 100, .subject = "Holder", .impact = 0.1};
const Finding bigger{.bucket = Bucket::always, .bytes = 200, .subject = "Bigger", .impact = 0.2};
const Finding twin{.bucket = Bucket::always, .bytes = 200, .subject = "Twin", .impact = 0.2};
const Finding worker{.bucket = Bucket::now, .subject = "Worker", .impact = 0.3};
const Finding leftover{.bucket = Bucket::leftovers, .bytes = 900, .subject = "Leftover", .impact = 0.9};

TEST(Verdict, TheFirstRowThatAppliesWins) {
  const auto with = [](std::int32_t pressure, double busy, std::int64_t diskFree = 300 * gibibyte,
                       ThermalState thermal = ThermalState::nominal) {
    return Snapshot{.diskFree = diskFree,
                    .diskTotal = 500 * gibibyte,
                    .cpuBusy = busy,
                    .thermal = thermal,
                    .pressure = pressure};
  };
  const Snapshot tight = with(2, 0.5);
  const Snapshot tightAndBusy = with(4, 0.9);
  const std::string tooHot = "Your Mac is too hot.";
  const std::string fine = "Your Mac looks fine right now. Calm.";
  const std::string memory = "Your Mac is short on memory. The biggest cause: ";
  const std::string processor = "Your Mac's processor is very busy. The biggest cause: ";
  const std::string few = "A few things slow your Mac down. The biggest cause: ";
  const std::tuple<const char*, Snapshot, std::vector<Finding>, std::string> cases[] = {
      {"heat wins over everything", with(4, 1, 0, ThermalState::critical), {holder, worker}, tooHot},
      {"heat needs no finding", with(1, 0, 1LL << 40, ThermalState::serious), {}, tooHot},
      {"fair is not hot", with(1, 0, 1LL << 40, ThermalState::fair), {}, fine},
      {"disk wins over memory", with(4, 0, 20 * gibibyte - 1), {holder}, "Your disk is almost full."},
      {"exactly 20 GiB is enough", with(1, 0, 20 * gibibyte), {}, fine},
      {"an unknown disk is not full", {}, {}, fine},
      {"the first of the biggest by bytes", tight, {worker, holder, twin, bigger}, memory + "Twin."},
      {"a leftover never causes", tight, {leftover, holder}, memory + "Holder."},
      {"memory wins over processor", tightAndBusy, {worker, holder}, memory + "Holder."},
      {"pressure without memory falls to the processor", tightAndBusy, {worker}, processor + "Worker."},
      {"pressure and processor without any cause", tightAndBusy, {leftover}, fine},
      {"pressure without memory, processor calm", tight, {worker}, few + "Worker."},
      {"busy: biggest among now only", with(1, 0.81), {bigger, worker}, processor + "Worker."},
      {"busy without a now finding, and of equal ones",
       with(1, 0.81),
       {holder, bigger, twin},
       few + "Bigger."},
      {"0.8 is not very busy", with(1, 0.8), {worker}, few + "Worker."}};
  for (const auto& [what, snapshot, findings, expected] : cases) {
    const Verdict told = verdict(snapshot, findings);
    EXPECT_EQ(told.headline + (told.cause ? " " + *told.cause : "") + (told.ok ? " Calm." : ""), expected)
        << what;
  }
}

TEST(Report, AGuessStandsUnderTheTitleOfItsEvidenceAndTheHeaderRoundsHalvesAwayFromZero) {
  const Snapshot busy{
      .ram = 16ULL << 30U, .swapUsed = 2'469'606'195, .cpuBusy = 0.125, .uptime = 3 * 86'400 + 5};
  const std::vector<Finding> found{
      {.bucket = Bucket::leftovers, .title = "Left", .detail = "Left detail."},
      {.bucket = Bucket::now, .title = "First", .detail = "Detail.", .evidence = "proof\nline two"},
      {.bucket = Bucket::now, .title = "Second", .detail = "Other.", .evidence = "other proof"}};
  const Guesses guesses{{"proof\nline two", "It serves tests."}, {"proof", "Wrong."}, {"", "Wrong."}};
  EXPECT_EQ(text(busy, found, guesses),
            "16.0 GB memory, 2.3 GB moved to disk · processor 13% busy · last restart 3 days ago"
            "\n\nBUSY NOW\n  First\n  ✨ It serves tests.\n  Detail.\n  Second\n  Other.\n"
            "\nFORGOTTEN\n  Left\n  Left detail.\n");
}

}  // namespace
