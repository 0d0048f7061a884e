#include "diagnosis/verdict.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

constexpr std::int64_t gibibyte = 1LL << 30;

Finding finding(std::string subject, Bucket bucket, std::uint64_t bytes, double impact) {
  return {.id = subject, .bucket = bucket, .bytes = bytes, .subject = subject, .icon = "", .impact = impact};
}

Snapshot healthy() {
  Snapshot snapshot;
  snapshot.diskTotal = 500 * gibibyte;
  snapshot.diskFree = 300 * gibibyte;
  snapshot.cpuBusy = 0.5;
  return snapshot;
}

const Finding holder = finding("Holder", Bucket::always, 100, 0.1);
const Finding bigger = finding("Bigger", Bucket::always, 200, 0.2);
const Finding worker = finding("Worker", Bucket::now, 0, 0.3);
const Finding leftover = finding("Leftover", Bucket::leftovers, 900, 0.9);

TEST(Verdict, TheFirstRowThatAppliesWins) {
  const auto with = [](auto change) {
    Snapshot snapshot = healthy();
    change(snapshot);
    return snapshot;
  };
  const auto hotAndFull = with([](Snapshot& s) {
    s.thermal = ThermalState::critical;
    s.diskFree = 0;
    s.pressure = 4;
    s.cpuBusy = 1;
  });
  const auto hot = with([](Snapshot& s) { s.thermal = ThermalState::serious; });
  const auto warm = with([](Snapshot& s) { s.thermal = ThermalState::fair; });
  const auto full = with([](Snapshot& s) {
    s.diskFree = 20 * gibibyte - 1;
    s.pressure = 4;
  });
  const auto notFull = with([](Snapshot& s) { s.diskFree = 20 * gibibyte; });
  const auto unknownDisk = with([](Snapshot& s) { s.diskFree = s.diskTotal = 0; });
  const auto tight = with([](Snapshot& s) { s.pressure = 2; });
  const auto tightAndBusy = with([](Snapshot& s) {
    s.pressure = 4;
    s.cpuBusy = 0.9;
  });
  const auto justBusy = with([](Snapshot& s) { s.cpuBusy = 0.81; });
  const auto notBusy = with([](Snapshot& s) { s.cpuBusy = 0.8; });

  const Verdict tooHot{"Your Mac is too hot.", std::nullopt, false};
  const Verdict diskFull{"Your disk is almost full.", std::nullopt, false};
  const Verdict fine{"Your Mac looks fine right now.", std::nullopt, true};
  const auto named = [](const char* headline, const std::string& subject) {
    return Verdict{headline, "The biggest cause: " + subject + ".", false};
  };
  const char* memory = "Your Mac is short on memory.";
  const char* processor = "Your Mac's processor is very busy.";
  const char* few = "A few things slow your Mac down.";

  const struct {
    const char* what;
    const Snapshot& snapshot;
    std::vector<Finding> findings;
    Verdict verdict;
  } cases[] = {
      {"heat wins over everything", hotAndFull, {holder, worker}, tooHot},
      {"heat needs no finding", hot, {}, tooHot},
      {"fair is not hot", warm, {}, fine},
      {"disk wins over memory", full, {holder}, diskFull},
      {"exactly 20 GiB is enough", notFull, {}, fine},
      {"an unknown disk is not full", unknownDisk, {}, fine},
      {"biggest by bytes", tight, {worker, holder, bigger}, named(memory, "Bigger")},
      {"a leftover never causes", tight, {leftover, holder}, named(memory, "Holder")},
      {"memory wins over processor", tightAndBusy, {worker, holder}, named(memory, "Holder")},
      {"pressure without memory falls to the processor", tightAndBusy, {worker}, named(processor, "Worker")},
      {"pressure and processor without any cause", tightAndBusy, {leftover}, fine},
      {"pressure without memory, processor calm", tight, {worker}, named(few, "Worker")},
      {"busy: biggest among now only", justBusy, {bigger, worker}, named(processor, "Worker")},
      {"busy without a now finding", justBusy, {holder, bigger}, named(few, "Bigger")},
      {"0.8 is not very busy", notBusy, {worker}, named(few, "Worker")},
      {"only leftovers is fine", healthy(), {leftover}, fine},
      {"nothing at all is fine", healthy(), {}, fine},
  };
  for (const auto& [what, snapshot, findings, expected] : cases) {
    const Verdict got = verdict(snapshot, findings);
    EXPECT_EQ(got.headline, expected.headline) << what;
    EXPECT_EQ(got.cause, expected.cause) << what;
    EXPECT_EQ(got.ok, expected.ok) << what;
  }
}

TEST(Verdict, OfEqualCausesTheEarlierOneIsNamed) {
  Snapshot snapshot = healthy();
  const Finding twin = finding("Twin", Bucket::always, 200, 0.2);
  EXPECT_EQ(verdict(snapshot, {bigger, twin}).cause, "The biggest cause: Bigger.");
  EXPECT_EQ(verdict(snapshot, {twin, bigger}).cause, "The biggest cause: Twin.");
  snapshot.pressure = 2;
  EXPECT_EQ(verdict(snapshot, {twin, bigger}).cause, "The biggest cause: Twin.");
}

}  // namespace
}  // namespace tarnwick
