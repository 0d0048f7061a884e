#include "records/finding.h"

#include <gmock/gmock.h>

#include <unordered_set>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Timestamp started = timestamp(1'700'000'000);

TEST(Fix, CommandsAndPidsOfNestedLists) {
  EXPECT_EQ(Fix{SimShutdown{"0000-1"}}.command(), "simctl shutdown 0000-1");
  EXPECT_EQ((Fix{Signal{7, 2, started}}.command()), "kill -TERM 7") << "only 9 reads KILL";
  const Fix inner{All{{{Signal{3, 15, started}}, {QuitApp{"x"}}, {Signal{3, 9, started}}}}};
  const Fix outer{All{{{Signal{1, 15, started}}, inner, {All{}}, {Signal{2, 15, started}}}}};
  EXPECT_THAT(outer.pids(), ElementsAre(1, 3, 3, 2));
  EXPECT_EQ(outer.command(), "kill -TERM 1; kill -TERM 3; Cmd-Q x; kill -KILL 3; ; kill -TERM 2");
  EXPECT_THAT(Fix{DockerStop{"c"}}.pids(), IsEmpty());
}

TEST(Fix, HashesLookAtCaseAndWholePayload) {
  const Fix base{Signal{41, 15, started}};
  const std::vector<Fix> all{base,
                             {Signal{42, 15, started}},
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
  EXPECT_EQ(all, std::vector<Fix>(all));
  EXPECT_NE((Fix{All{{base}}}), (Fix{All{{base, base}}}));
  std::unordered_set<std::size_t> hashes;
  for (const Fix& fix : all) hashes.insert(std::hash<Fix>{}(fix));
  EXPECT_EQ(hashes.size(), all.size());
  EXPECT_EQ(std::hash<Fix>{}(base), std::hash<Fix>{}(Fix{Signal{41, 15, started}}));
}

TEST(Bucket, IsFoundByItsLabelOnly) {
  for (const Bucket bucket : allBuckets) {
    EXPECT_EQ(bucketFromLabel(label(bucket)), bucket);
    EXPECT_EQ(std::hash<Bucket>{}(bucket), std::hash<std::string_view>{}(label(bucket)));
  }
  for (const char* other : {"", "busy now", "BUSY NOW "}) EXPECT_EQ(bucketFromLabel(other), std::nullopt);
}

}  // namespace
}  // namespace tarnwick
