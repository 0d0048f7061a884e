#include <cstring>

#include "sampling/decode/arguments.h"
#include "sampling/decode/kernel_records.h"
#include "sampling/decode/listeners.h"
#include "sampling/decode/processor_times.h"
#include "tests/support/testing.h"

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
      {"much padding", block(1, path + zeros(4'000) + ended("python")), {"python"}},
      {"an empty argument stays", block(3, ended(path) + "a" + zeros(2) + ended("b")), {"a", "", "b"}},
      {"a count beyond all memory", block(2'147'483'647, ended(path) + ended("a") + ended("b")), {"a", "b"}},
      {"no argument", block(0, ended(path) + words), {}},
      {"a negative count", block(-1, ended(path) + words), {}},
      {"a path without an end", block(1, path), {}},
      {"nothing behind the path", block(1, path + zeros(6)), {}},
      {"nothing behind the count", block(1, ""), {}},
      {"an empty path", block(1, zeros(3) + ended("a")), {"a"}},
      {"an argument without an end", block(2, ended(path) + ended("a") + "b"), {"a"}},
      {"a cut count", std::string("\1\0\0", 3), {}},
      {"bytes that are no UTF-8", block(1, ended(path) + ended("a\xFF\x62")), {"a\xEF\xBF\xBD\x62"}}};
  for (const auto& [what, bytes, arguments] : cases) EXPECT_EQ(argumentsInBlock(bytes), arguments) << what;
  std::string many = ended(path);
  for (int i = 0; i < 2'000; ++i) many += ended("a");
  EXPECT_THAT(argumentsInBlock(block(2'000, many)), SizeIs(993)) << "of 32,768 bytes each takes 33";
}

TEST(KernelRecords, NoMoreIsTakenThanThereIsRoomFor) {
  const auto lying = [](std::span<char> room) -> std::optional<std::size_t> { return room.size() + 1; };
  EXPECT_THAT(ArgumentBuffer().read(lying), testing::Optional(SizeIs(ArgumentBuffer::mostBytes)));
  EXPECT_EQ(wholeRecords(32'772, 4, 8'192), 8'192U);
  EXPECT_EQ(portInNetworkOrder(0x901F), 8'080) << "which lies in memory as 1F 90";
}

TEST(ProcessorTimes, NeitherSumsNorProductsWrap) {
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(std::pair(sumOfTimes(most - 1, 1), sumOfTimes(most, 1)),
            std::pair(std::optional(most), std::optional<std::uint64_t>()));
  EXPECT_EQ(ticksFromNanoseconds(125, 24'000'000) + ticksFromNanoseconds(124, 24'000'000), 3U + 2U);
  // Half a thousand years in nanoseconds.
  EXPECT_EQ(ticksFromNanoseconds(16'000'000'000'000'000'000U, 24'000'000), 384'000'000'000'000'000U);
}

}  // namespace
