#include "sampling/decode/argument_block.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Words = std::vector<std::string>;

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
  const std::tuple<const char*, std::string, Words> cases[] = {
      {"the usual block", block(3, path + zeros(4) + words + environment), {"python", "-m", "http.server"}},
      {"much padding", block(1, path + zeros(4'000) + ended("python")), {"python"}},
      {"an empty argument stays", block(3, ended(path) + "a" + zeros(2) + ended("b")), {"a", "", "b"}},
      {"a count beyond all memory",
       block(std::numeric_limits<std::int32_t>::max(), ended(path) + ended("a") + ended("b")),
       {"a", "b"}},
      {"no argument", block(0, ended(path) + words), {}},
      {"the lowest count", block(std::numeric_limits<std::int32_t>::min(), ended(path) + words), {}},
      {"a path without an end", block(1, path), {}},
      {"an empty path", block(1, zeros(3) + ended("a")), {"a"}},
      {"a cut count", std::string("\1\0\0", 3), {}},
      {"bytes that are no UTF-8", block(1, ended(path) + ended("a\xFF\x62")), {"a\xEF\xBF\xBD\x62"}},
  };
  for (const auto& [what, bytes, arguments] : cases) EXPECT_EQ(argumentsInBlock(bytes), arguments) << what;
}

// The kernel's side of an argument buffer: one block, cut where the buffer ends.
class FakeKernel {
 public:
  explicit FakeKernel(std::string bytes) : bytes_(std::move(bytes)) {}

  ArgumentBuffer::Query query() {
    return [this](std::span<char> buffer) -> std::optional<std::size_t> {
      asked.push_back(buffer.size());
      if (asked.size() > answers) return std::nullopt;
      const std::size_t size = std::min(bytes_.size(), buffer.size());
      std::copy_n(bytes_.begin(), size, buffer.begin());
      return size;
    };
  }

  std::vector<std::size_t> asked;  // the room that each question offered
  std::size_t answers = 99;        // so many questions succeed

 private:
  std::string bytes_;
};

// A block of exactly that many bytes with one argument.
std::string blockOfSize(std::size_t bytes) {
  const std::string start = block(1, ended("/p"));
  return start + std::string(bytes - start.size() - 1, 'x') + '\0';
}

TEST(ArgumentBuffer, ABlockThatFillsTheBufferIsReadAgainIntoALargeOne) {
  const std::tuple<std::size_t, std::vector<std::size_t>, std::size_t> cases[] = {
      {65'535, {65'536}, 65'535 - 8},
      {65'536, {65'536, 1'048'576}, 65'536 - 8},
      {1'048'577, {65'536, 1'048'576}, 1'048'576 - 7},  // cut, its end is lost
  };
  for (const auto& [blockBytes, asked, argumentBytes] : cases) {
    FakeKernel kernel(blockOfSize(blockBytes));
    ArgumentBuffer buffer;
    const Words arguments = buffer.read(kernel.query());
    EXPECT_EQ(kernel.asked, asked) << blockBytes;
    ASSERT_THAT(arguments, SizeIs(1)) << blockBytes;
    EXPECT_EQ(arguments[0].size(), argumentBytes) << blockBytes;
  }
}

TEST(ArgumentBuffer, TheLargeOneStaysForTheRestOfThePass) {
  FakeKernel large(blockOfSize(70'000));
  FakeKernel small(block(1, ended("/p") + ended("a")));
  ArgumentBuffer buffer;
  buffer.read(large.query());
  EXPECT_THAT(buffer.read(small.query()), ElementsAre("a"));
  buffer.beginPass();
  EXPECT_THAT(buffer.read(small.query()), ElementsAre("a"));
  EXPECT_THAT(small.asked, ElementsAre(1'048'576, 65'536));
}

TEST(ArgumentBuffer, AFailedQuestionGivesNoArguments) {
  FakeKernel refusing(blockOfSize(100));
  refusing.answers = 0;
  ArgumentBuffer buffer;
  EXPECT_THAT(buffer.read(refusing.query()), IsEmpty());

  FakeKernel gone(blockOfSize(70'000));
  gone.answers = 1;  // the process ends between the two questions
  EXPECT_THAT(buffer.read(gone.query()), IsEmpty());

  FakeKernel tiny(block(1, ""));
  EXPECT_THAT(buffer.read(tiny.query()), IsEmpty());
  const auto lying = [](std::span<char> room) -> std::optional<std::size_t> { return room.size() + 1; };
  EXPECT_THAT(buffer.read(lying), IsEmpty());  // and no byte beyond the buffer is read
}

}  // namespace
}  // namespace tarnwick
