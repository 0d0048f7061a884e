#include "sampling/decode/kernel_records.h"

#include <gmock/gmock.h>

#include <limits>

namespace tarnwick {
namespace {

using testing::ElementsAre;
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

TEST(KernelRecords, OnlyARecordOfTheExactSizeCounts) {
  EXPECT_TRUE(isWholeRecord(136, 136));
  for (const std::int64_t answered : {-1, 0, 135, 137}) EXPECT_FALSE(isWholeRecord(answered, 136));
}

TEST(KernelRecords, ListsHoldTheWholeRecordsThatThereIsRoomFor) {
  const std::tuple<std::int64_t, std::size_t, std::size_t, std::size_t> cases[] = {
      {-1, 4, 8'192, 0}, {3, 4, 8'192, 0}, {4, 4, 8'192, 1}, {11, 4, 8'192, 2}, {32'772, 4, 8'192, 8'192}};
  for (const auto& [answered, record, room, count] : cases)
    EXPECT_EQ(wholeRecords(answered, record, room), count) << answered << " of " << record;
}

TEST(KernelRecords, TextsEndAtTheFirstZeroByteOrWithTheField) {
  const std::string full(4'096, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {std::string("/bin/sh\0left over", 17), "/bin/sh"},
      {full, full},
      {"/tmp/\xC3", "/tmp/\xEF\xBF\xBD"},  // a character that the field cut in two
      {"", ""},
  };
  for (const auto& [field, text] : cases) EXPECT_EQ(textInField(field), text);
}

TEST(KernelRecords, PortsAreSwappedOutOfNetworkOrderAndListedOnce) {
  // On the machines that this runs on, a port of 8080 (0x1F90) lies in memory as 1F 90.
  const std::pair<std::int32_t, std::uint16_t> cases[] = {{0x901F, 8'080}, {0x5000, 80}, {0xFFFF, 65'535},
                                                          {0, 0},          {0x0100, 1},  {-1, 65'535}};
  for (const auto& [field, port] : cases) EXPECT_EQ(portInNetworkOrder(field), port);
  EXPECT_THAT(eachPortOnce({8'080, 80, 8'080, 65'535, 80}), ElementsAre(80, 8'080, 65'535));
  EXPECT_THAT(eachPortOnce({}), testing::IsEmpty());
}

TEST(KernelRecords, SumsAndProductsDoNotWrap) {
  EXPECT_EQ(sumOfTimes(3, 4), 7U);
  EXPECT_EQ(sumOfTimes(most - 1, 1), most);
  EXPECT_EQ(sumOfTimes(most, 1), std::nullopt);
  EXPECT_EQ(bytesInBlocks(10, 4'096), 40'960);
  EXPECT_EQ(bytesInBlocks(most, 0), 0);
  EXPECT_EQ(bytesInBlocks(most, 4'096), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(bytesInBlocks(most / 2, 1), std::numeric_limits<std::int64_t>::max());
}

TEST(KernelRecords, NanosecondsBecomeTicksOfAnotherClock) {
  constexpr std::uint64_t second = 1'000'000'000;
  EXPECT_EQ(ticksFromNanoseconds(second, 24'000'000), 24'000'000U);
  EXPECT_EQ(ticksFromNanoseconds(125, 24'000'000), 3U);
  EXPECT_EQ(ticksFromNanoseconds(124, 24'000'000), 2U);
  // Half a thousand years in nanoseconds: a product of the two would have wrapped.
  EXPECT_EQ(ticksFromNanoseconds(16'000'000'000 * second, 24'000'000), 384'000'000'000'000'000U);
}

TEST(WrappingCounter, GoesOnWhereThirtyTwoBitsBeginAnew) {
  WrappingCounter counter;
  EXPECT_EQ(counter.advanceTo(4'294'967'290U), 4'294'967'290U);
  EXPECT_EQ(counter.advanceTo(4'294'967'290U), 4'294'967'290U);  // nothing moved
  EXPECT_EQ(counter.advanceTo(4U), 4'294'967'300U);              // ten further
  EXPECT_EQ(counter.advanceTo(3U), 8'589'934'595U);              // all the way round
}

}  // namespace
}  // namespace tarnwick
