#include "sampling/decode/engine_json.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "sampling/decode/http_reply.h"
#include "sampling/tools/small_file.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::filesystem::path replies{TARNWICK_SOURCE_DIR "/tests/sampling/fixtures/engine"};

std::string recorded(const std::string& name) {
  return readSmallFile((replies / (name + ".bin")).string(), 1U << 20U).value_or("missing");
}

std::vector<std::string> names(std::string_view body) {
  std::vector<std::string> found;
  for (const Container& container : containersOf(body)) found.push_back(container.name);
  return found;
}

TEST(EngineReplies, EveryRecordedReplyMeansWhatItSays) {
  const std::vector<std::string> four{"d4", "d3", "d2", "d1"};
  const std::map<std::string, std::vector<std::string>> lists{
      {"dockerd-list-all-v141", four},
      {"dockerd-list-http10", four},
      {"dockerd-list-paused", four},
      {"dockerd-list-ports", {"w1"}},
      {"podman-list-all-v141", {"a5", "a1", "a3", "a6", "a2", "web"}},
      {"podman-list-http10", {"a5", "a1", "a3", "a2", "web"}},
      {"podman-list-paused", {"a5", "a1", "web"}},
  };
  const std::map<std::string, std::uint64_t> memory{
      {"dockerd-stats-d1", 471'040},        {"dockerd-stats-d2", 688'128},
      {"dockerd-stats-d2-http11", 688'128}, {"dockerd-stats-d2-two-samples", 688'128},
      {"dockerd-stats-networks", 606'208},  // 610,304 less 4,096 of droppable cache
      {"podman-stats-a1", 323'584},         // this engine tells nothing about caches
      {"podman-stats-a2", 380'928},         {"podman-stats-a2-two-samples", 241'664},
      {"podman-stats-a3", 356'352},         {"podman-stats-web", 532'480},
  };
  std::size_t seen = 0;
  for (const auto& entry : std::filesystem::directory_iterator(replies)) {
    const std::string file = entry.path().stem().string();
    const bool refused = file.find("-404") != std::string::npos || file.find("-400") != std::string::npos;
    const std::string reply = recorded(file);
    const std::optional<std::string_view> body = successfulBody(reply);
    EXPECT_EQ(body.has_value(), !refused) << file;
    // All others are done without an answer, are about something else, or came in chunks nobody asked for.
    EXPECT_EQ(names(body.value_or("")), lists.count(file) != 0 ? lists.at(file) : std::vector<std::string>{})
        << file;
    EXPECT_EQ(memoryOf(body.value_or("")), memory.count(file) != 0 ? memory.at(file) : 0U) << file;
    ++seen;
  }
  EXPECT_EQ(seen, 50U);
}

TEST(EngineList, IdsAndNames) {
  const auto one = [](const std::string& members) {
    const std::vector<Container> list = containersOf("[{" + members + "}]");
    return list.size() == 1 ? list.front().id + "|" + list.front().name : "left out";
  };
  EXPECT_EQ(one(R"("Id":"0123456789abcdef")"), "0123456789ab|0123456789ab");
  EXPECT_EQ(one(R"("Id":"abc","Names":[])"), "abc|abc");
  EXPECT_EQ(one(R"("Id":"abc","Names":"/web")"), "abc|abc");
  EXPECT_EQ(one(R"("Id":"abc","Names":["/web","/other/alias"])"), "abc|web");
  EXPECT_EQ(one(R"("Id":"abc","Names":["//a/b//"])"), "abc|a/b");
  EXPECT_EQ(one(R"("Id":"abc","Names":["/"])"), "abc|");
  EXPECT_EQ(one(R"("Id":7)"), "left out");
  EXPECT_EQ(one(R"("Names":["/web"])"), "left out");
  EXPECT_EQ(one("\"Id\":\"abc\",\"Names\":[\"/caf\xe9\"]"), "abc|caf\xef\xbf\xbd");
  EXPECT_EQ(one(R"("Id":"éééééééééééézz")"), "éééééééééééé|éééééééééééé");
}

TEST(EngineList, WhatIsNoListOfObjectsIsEmpty) {
  for (const std::string body :
       {"", "null", "[1]", R"([{"Id":"a"},7])", R"([{"Id":"a"})", R"({"Id":"a"})", R"([{"Id":"\ud800"}])"}) {
    EXPECT_THAT(containersOf(body), IsEmpty()) << body;
  }
  EXPECT_THAT(containersOf(std::string(1'000'000, '[')), IsEmpty());
  EXPECT_THAT(names(R"([{"Names":["/no-id"]},{"Id":"b"},{"Id":"a","Status":7,"Image":null}])"),
              ElementsAre("b", "a"));
}

TEST(EngineStatistics, DroppableCacheIsTakenOff) {
  const auto mem = [](const std::string& members) {
    return memoryOf(R"({"memory_stats":{)" + members + "}}");
  };
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":999})"), 1U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":1000})"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"total_inactive_file":300})"), 700U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":0,"total_inactive_file":300})"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000)"), 1000U);
  EXPECT_EQ(mem(R"("stats":{"inactive_file":300})"), 0U);
}

TEST(EngineStatistics, ImpossibleNumbersCountAsZero) {
  const auto mem = [](const std::string& usage) {
    return memoryOf(R"({"memory_stats":{"usage":)" + usage + "}}");
  };
  EXPECT_EQ(mem("1152921504606846976"), 1'152'921'504'606'846'976U);
  for (const std::string number :
       {"1152921504606846977", "18446744073709551616", "1e400", "-1", "1.5", "\"1000\"", "null"}) {
    EXPECT_EQ(mem(number), 0U) << number;
  }
  EXPECT_EQ(memoryOf(R"({"memory_stats":{"usage":1000,"stats":{"inactive_file":-5}}})"), 1000U);
  for (const std::string body :
       {"", "[]", "{}", R"({"memory_stats":[]})", R"({"memory_stats":{}})", "{\"memory_stats\""}) {
    EXPECT_EQ(memoryOf(body), 0U) << body;
  }
}

TEST(ContainerIds, OnlyPlainOnesMayStandInAPath) {
  for (const std::string id : {"0123456789ab", "web", "A_b.c-9", "9"})
    EXPECT_TRUE(isPlainContainerId(id)) << id;
  for (const std::string id :
       {"", "..", ".", "-rf", "_x", "a/b", "a b", "a?x=1", "a%2f", "a\r\nX: y", "caf\xc3\xa9", "a#"}) {
    EXPECT_FALSE(isPlainContainerId(id)) << id;
  }
  EXPECT_FALSE(isPlainContainerId(std::string_view("a\0b", 3)));
}

const std::optional<std::string> absent;

std::optional<std::string> body(const std::string& reply) {
  const std::optional<std::string_view> found = successfulBody(reply);
  return found ? std::optional<std::string>(*found) : absent;
}

TEST(HttpReply, StatusDecides) {
  const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
      {"200 OK", "x"},      {"299 Odd", "x"},          {"304 Not Modified", "x"},
      {"204", "x"},         {"199 Low", absent},       {"300 High", absent},
      {"-200 OK", absent},  {" 200 OK", absent},  // two blanks in a row: the second word is empty
      {"200.0 OK", absent}, {"4294967496 OK", absent}, {"", absent},
  };
  for (const auto& [status, expected] : cases) {
    EXPECT_EQ(body("HTTP/1.0 " + status + "\r\n\r\nx"), expected) << status;
  }
}

TEST(HttpReply, BlankLineDividesOnce) {
  EXPECT_EQ(body("HTTP/1.0 304 Not Modified\r\n\r\n"), "");
  EXPECT_EQ(body("HTTP/1.0 200 OK\r\nA: b\r\n\r\none\r\n\r\ntwo"), "one\r\n\r\ntwo");
  EXPECT_EQ(body("HTTP/1.0 200 OK\r\nServer: \xff\xfe caf\xe9\r\n\r\nx"), "x");
  for (const std::string cut :
       {"", "\r\n\r\n", "HTTP/1.0\r\n\r\nx", "HTTP/1.0 200 OK\r\nA: b\r\n\r", "HTTP/1.0 200 OK\n\nx"}) {
    EXPECT_EQ(body(cut), absent) << cut;
  }
}

TEST(HttpReply, HeadersAreBounded) {
  const std::string start = "HTTP/1.0 200 OK\r\nX: ";
  const std::size_t most = std::size_t{1} << 20U;
  const std::string fits = start + std::string(most - start.size(), 'h');
  EXPECT_EQ(body(fits + "\r\n\r\nx"), "x");
  EXPECT_EQ(body(fits + "h\r\n\r\nx"), absent);
}

}  // namespace
}  // namespace tarnwick
