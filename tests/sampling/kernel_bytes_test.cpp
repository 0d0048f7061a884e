#include <cstring>

#include "sampling/decode/arguments.h"
#include "sampling/decode/kernel_records.h"
#include "sampling/decode/listeners.h"
#include "sampling/decode/processor_times.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

// A block as the kernel writes it: the count in the machine's byte order, then `rest` as it stands.
std::string block(std::int32_t count, const std::string& rest) {
  std::string bytes(sizeof count, '\0');
  std::memcpy(bytes.data(), &count, sizeof count);
  return bytes + rest;
}

std::string zeros(std::size_t count) { return std::string(count, '\0'); }
std::string ended(const std::string& text) { return text + '\0'; }

TEST(ArgumentBlock, ArgumentsAreTakenFromBetweenPathAndEnvironment) {
  const std::string path = "/usr/bin/python3";
  const std::string environment = ended("HOME=/Users/me") + ended("SECRET=1");
  const std::string words = ended("python") + ended("-m") + ended("http.server");
  const std::tuple<const char*, std::string, Strings> cases[] = {
      {"the usual block", block(3, path + zeros(4) + words + environment), {"python", "-m", "http.server"}},
      {"much padding", block(1, path + zeros(4'000) + ended("python")), {"python"}},
      {"an empty argument stays", block(3, ended(path) + "a" + zeros(2) + ended("b")), {"a", "", "b"}},
      {"a count beyond all memory", block(2'147'483'647, ended(path) + ended("a") + ended("b")), {"a", "b"}},
      {"no argument", block(0, ended(path) + words), {}},
      {"a negative count", block(-1, ended(path) + words), {}},
      {"a path without an end", block(1, path), {}},
      {"nothing behind the path", block(1, path + zeros(6)), {}},
      {"the only argument without an end", block(1, ended(path) + "a"), {}},
      {"nothing behind the count", block(1, ""), {}},
      {"an empty path", block(1, zeros(3) + ended("a")), {"a"}},
      {"an argument without an end", block(2, ended(path) + ended("a") + "b"), {"a"}},
      {"a cut count", std::string("\1\0\0", 3), {}},
      {"bytes that are no UTF-8", block(1, ended(path) + ended("a\xFF\x62")), {"a\xEF\xBF\xBD\x62"}},
  };
  for (const auto& [what, bytes, arguments] : cases) EXPECT_EQ(argumentsInBlock(bytes), arguments) << what;
  std::string many = ended(path);
  for (int i = 0; i < 2'000; ++i) many += ended("a");
  EXPECT_THAT(argumentsInBlock(block(2'000, many)), SizeIs(993)) << "of 32,768 bytes each takes 33";
}

// The kernel's side of an argument buffer: one block, cut where the buffer ends.
struct FakeKernel {
  ArgumentBuffer::Query query() {
    return [this](std::span<char> buffer) -> std::optional<std::size_t> {
      asked.push_back(buffer.size());
      if (asked.size() > answers) return std::nullopt;
      const std::size_t size = std::min(bytes.size(), buffer.size());
      std::copy_n(bytes.begin(), size, buffer.begin());
      return size;
    };
  }

  std::string bytes;
  std::vector<std::size_t> asked;  // the room that each question offered
  std::size_t answers = 99;        // so many questions succeed
};

// A block of exactly that many bytes with one argument.
std::string blockOfSize(std::size_t bytes) {
  const std::string start = block(1, ended("/p"));
  return start + std::string(bytes - start.size() - 1, 'x') + '\0';
}

TEST(ArgumentBuffer, ABlockThatFillsTheBufferIsReadAgainIntoALargeOne) {
  const std::tuple<std::size_t, std::vector<std::size_t>, std::size_t> cases[] = {
      {65'535, {65'536}, 1}, {65'536, {65'536, 1'048'576}, 1}, {1'048'577, {65'536, 1'048'576}, 0}};
  for (const auto& [blockBytes, asked, arguments] : cases) {
    FakeKernel kernel{blockOfSize(blockBytes)};
    ArgumentBuffer buffer;
    EXPECT_EQ(argumentsInBlock(*buffer.read(kernel.query())), Strings(arguments, std::string(4'096, 'x')));
    EXPECT_EQ(kernel.asked, asked) << blockBytes;
  }
}

TEST(ArgumentBuffer, TheLargeOneStaysForTheRestOfThePass) {
  FakeKernel large{blockOfSize(70'000)};
  FakeKernel small{block(1, ended("/p") + ended("a"))};
  ArgumentBuffer buffer;
  buffer.read(large.query());
  EXPECT_THAT(argumentsInBlock(*buffer.read(small.query())), ElementsAre("a"));
  buffer.beginPass();
  EXPECT_THAT(argumentsInBlock(*buffer.read(small.query())), ElementsAre("a"));
  EXPECT_THAT(small.asked, ElementsAre(1'048'576, 65'536));
}

TEST(ArgumentBuffer, AFailedQuestionGivesNoArguments) {
  ArgumentBuffer buffer;
  for (const std::size_t answers : {0U, 1U}) {  // the process ends between the two questions
    FakeKernel gone{blockOfSize(70'000), {}, answers};
    EXPECT_EQ(buffer.read(gone.query()), std::nullopt);
  }
  const auto lying = [](std::span<char> room) -> std::optional<std::size_t> { return room.size() + 1; };
  EXPECT_THAT(buffer.read(lying), testing::Optional(SizeIs(ArgumentBuffer::mostBytes))) << "and no byte more";
}

TEST(KernelRecords, OnlyWholeOnesCountAndNoMoreThanThereIsRoomFor) {
  EXPECT_TRUE(isWholeRecord(136, 136));
  for (const std::int64_t answered : {-1, 0, 135, 137}) EXPECT_FALSE(isWholeRecord(answered, 136));
  const std::pair<std::int64_t, std::size_t> answers[] = {{-1, 0}, {3, 0}, {4, 1}, {11, 2}, {32'772, 8'192}};
  for (const auto& [answered, count] : answers)
    EXPECT_EQ(wholeRecords(answered, 4, 8'192), count) << answered;
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

TEST(Listeners, PortsAreSwappedOutOfNetworkOrderAndListedOnce) {
  // On the machines that this runs on, a port of 8080 (0x1F90) lies in memory as 1F 90.
  const std::pair<std::int32_t, std::uint16_t> cases[] = {{0x901F, 8'080}, {0x5000, 80}, {0xFFFF, 65'535},
                                                          {0, 0},          {0x0100, 1},  {-1, 65'535}};
  for (const auto& [field, port] : cases) EXPECT_EQ(portInNetworkOrder(field), port);
  EXPECT_THAT(eachPortOnce({8'080, 80, 8'080, 65'535, 80}), ElementsAre(80, 8'080, 65'535));
  EXPECT_THAT(eachPortOnce({}), IsEmpty());
}

TEST(ProcessorTimes, NeitherSumsNorProductsWrap) {
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(sumOfTimes(most - 1, 1), most);
  EXPECT_EQ(sumOfTimes(most, 1), std::nullopt);
  EXPECT_EQ(ticksFromNanoseconds(125, 24'000'000), 3U);
  EXPECT_EQ(ticksFromNanoseconds(124, 24'000'000), 2U);
  // Half a thousand years in nanoseconds.
  EXPECT_EQ(ticksFromNanoseconds(16'000'000'000'000'000'000U, 24'000'000), 384'000'000'000'000'000U);
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
