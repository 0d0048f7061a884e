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
  const auto with = [](std::int32_t pressure, double busy, std::int64_t diskFree = 300 * gibibyte,
                       ThermalState thermal = ThermalState::nominal) {
    Snapshot snapshot = healthy();
    snapshot.pressure = pressure;
    snapshot.cpuBusy = busy;
    snapshot.diskFree = diskFree;
    snapshot.thermal = thermal;
    return snapshot;
  };
  Snapshot unknownDisk = with(1, 0, 0);
  unknownDisk.diskTotal = 0;
  const Snapshot tight = with(2, 0.5);
  const Snapshot tightAndBusy = with(4, 0.9);

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
    const Snapshot snapshot;
    std::vector<Finding> findings;
    Verdict verdict;
  } cases[] = {
      {"heat wins over everything", with(4, 1, 0, ThermalState::critical), {holder, worker}, tooHot},
      {"heat needs no finding", with(1, 0, 1LL << 40, ThermalState::serious), {}, tooHot},
      {"fair is not hot", with(1, 0, 1LL << 40, ThermalState::fair), {}, fine},
      {"disk wins over memory", with(4, 0, 20 * gibibyte - 1), {holder}, diskFull},
      {"exactly 20 GiB is enough", with(1, 0, 20 * gibibyte), {}, fine},
      {"an unknown disk is not full", unknownDisk, {}, fine},
      {"biggest by bytes", tight, {worker, holder, bigger}, named(memory, "Bigger")},
      {"a leftover never causes", tight, {leftover, holder}, named(memory, "Holder")},
      {"memory wins over processor", tightAndBusy, {worker, holder}, named(memory, "Holder")},
      {"pressure without memory falls to the processor", tightAndBusy, {worker}, named(processor, "Worker")},
      {"pressure and processor without any cause", tightAndBusy, {leftover}, fine},
      {"pressure without memory, processor calm", tight, {worker}, named(few, "Worker")},
      {"busy: biggest among now only", with(1, 0.81), {bigger, worker}, named(processor, "Worker")},
      {"busy without a now finding", with(1, 0.81), {holder, bigger}, named(few, "Bigger")},
      {"0.8 is not very busy", with(1, 0.8), {worker}, named(few, "Worker")},
      {"nothing at all is fine", healthy(), {}, fine},
  };
  for (const auto& [what, snapshot, findings, expected] : cases) {
    const Verdict got = verdict(snapshot, findings);
    EXPECT_EQ(std::tie(got.headline, got.cause, got.ok),
              std::tie(expected.headline, expected.cause, expected.ok))
        << what;
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
