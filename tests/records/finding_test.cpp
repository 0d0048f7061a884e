#include "records/finding.h"

#include <gmock/gmock.h>

#include <unordered_set>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Timestamp started = timestamp(1'700'000'000);

// One of each case, in case order.
std::vector<Fix> oneOfEach() {
  return {{Signal{41, 15, started}},
          {QuitApp{"com.docker.docker"}},
          {DockerStop{"c1"}},
          {SimShutdown{"0000-1"}},
          {OpenSettings{"com.apple.settings.Storage"}},
          {AskAutomation{"com.google.Chrome"}},
          {CloseDuplicateTabs{"com.apple.Safari"}},
          {OpenTab{"com.google.Chrome", "chrome://settings/performance"}},
          {All{{{Signal{41, 15, started}}, {Signal{40, 9, started}}, {DockerStop{"c1"}}}}}};
}

TEST(Fix, CommandTextsOfAllCases) {
  const std::vector<std::string> texts{
      "kill -TERM 41",
      "Cmd-Q com.docker.docker",
      "docker stop c1",
      "simctl shutdown 0000-1",
      "open x-apple.systempreferences:com.apple.settings.Storage",
      "ask macOS to let Tarnwick read the tab addresses of com.google.Chrome",
      "close the duplicate tabs in com.apple.Safari, keep the first copy",
      "open chrome://settings/performance in com.google.Chrome",
      "kill -TERM 41; kill -KILL 40; docker stop c1",
  };
  const std::vector<Fix> fixes = oneOfEach();
  ASSERT_EQ(fixes.size(), texts.size());
  for (std::size_t i = 0; i < fixes.size(); ++i) {
    EXPECT_EQ(fixes[i].kind.index(), i);
    EXPECT_EQ(fixes[i].command(), texts[i]);
  }
  EXPECT_EQ((Fix{Signal{7, 2, started}}.command()), "kill -TERM 7") << "only 9 reads KILL";
}

TEST(Fix, NestedListsFlattenAndEmptyOnesAreEmpty) {
  const Fix inner{All{{{Signal{3, 15, started}}, {QuitApp{"x"}}, {Signal{3, 9, started}}}}};
  const Fix outer{All{{{Signal{1, 15, started}}, inner, {All{}}, {Signal{2, 15, started}}}}};
  EXPECT_THAT(outer.pids(), ElementsAre(1, 3, 3, 2));
  EXPECT_EQ(outer.command(), "kill -TERM 1; kill -TERM 3; Cmd-Q x; kill -KILL 3; ; kill -TERM 2");
  EXPECT_EQ(Fix{All{}}.command(), "");
  EXPECT_THAT(Fix{All{}}.pids(), IsEmpty());
  EXPECT_THAT(Fix{DockerStop{"c"}}.pids(), IsEmpty());
}

TEST(Fix, EqualityAndHashLookAtCaseAndWholePayload) {
  const Fix base{Signal{41, 15, started}};
  const std::vector<Fix> others{{Signal{42, 15, started}},
                                {Signal{41, 9, started}},
                                {Signal{41, 15, started + Seconds{1}}},
                                {QuitApp{"x"}},
                                {DockerStop{"x"}},
                                {SimShutdown{"x"}},
                                {OpenSettings{"x"}},
                                {AskAutomation{"x"}},
                                {CloseDuplicateTabs{"x"}},
                                {OpenTab{"x", "y"}},
                                {OpenTab{"y", "x"}},
                                {All{{base}}},
                                {All{{base, base}}},
                                {All{}}};
  std::unordered_set<std::size_t> hashes{std::hash<Fix>{}(base)};
  for (std::size_t i = 0; i < others.size(); ++i) {
    EXPECT_NE(others[i], base) << i;
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(others[i], others[j]) << i << " " << j;
    hashes.insert(std::hash<Fix>{}(others[i]));
  }
  EXPECT_EQ(hashes.size(), others.size() + 1);
  EXPECT_EQ(oneOfEach(), oneOfEach());
  for (const Fix& fix : oneOfEach()) EXPECT_EQ(std::hash<Fix>{}(fix), std::hash<Fix>{}(Fix(fix)));
}

TEST(Bucket, LabelsAreExactAndInDisplayOrder) {
  EXPECT_EQ(label(Bucket::now), "BUSY NOW");
  EXPECT_EQ(label(Bucket::always), "ALWAYS ON");
  EXPECT_EQ(label(Bucket::leftovers), "FORGOTTEN");
  EXPECT_THAT(allBuckets, ElementsAre(Bucket::now, Bucket::always, Bucket::leftovers));
  for (const Bucket bucket : allBuckets) {
    EXPECT_EQ(bucketFromLabel(label(bucket)), bucket);
    EXPECT_EQ(std::hash<Bucket>{}(bucket), std::hash<std::string_view>{}(label(bucket)));
  }
  for (const char* other : {"", "busy now", "BUSY NOW ", "now"})
    EXPECT_EQ(bucketFromLabel(other), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
