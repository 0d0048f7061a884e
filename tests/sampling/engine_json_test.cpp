#include "sampling/decode/engine_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sampling/decode/http_reply.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::filesystem::path replies{TARNWICK_SOURCE_DIR "/tests/sampling/fixtures/engine"};

std::string recorded(const std::string& name) {
  std::ifstream file(replies / (name + ".bin"), std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> names(std::string_view body) {
  std::vector<std::string> found;
  for (const Container& container : containersOf(body)) found.push_back(container.name);
  return found;
}

TEST(EngineReplies, EveryRecordedReplyMeansWhatItSays) {
  struct Meaning {
    bool success;
    std::vector<std::string> names;
    std::uint64_t mem;
  };
  const std::vector<std::string> four{"d4", "d3", "d2", "d1"};
  const Meaning done{true, {}, 0};
  const Meaning refused{false, {}, 0};
  const std::map<std::string, Meaning> meanings{
      {"dockerd-badpath-404", refused},
      {"dockerd-list-all-v141", {true, four, 0}},
      {"dockerd-list-empty", done},
      {"dockerd-list-http10", {true, four, 0}},
      {"dockerd-list-http11-close", done},  // chunked: never asked for, not understood
      {"dockerd-list-paused", {true, four, 0}},
      {"dockerd-list-ports", {true, {"w1"}, 0}},
      {"dockerd-pause", done},
      {"dockerd-ping", done},
      {"dockerd-restart-204", done},
      {"dockerd-start-204", done},
      {"dockerd-start-304", done},
      {"dockerd-stats-404", refused},
      {"dockerd-stats-d1", {true, {}, 471'040}},
      {"dockerd-stats-d2", {true, {}, 688'128}},
      {"dockerd-stats-d2-http11", {true, {}, 688'128}},
      {"dockerd-stats-d2-two-samples", {true, {}, 688'128}},
      {"dockerd-stats-networks", {true, {}, 606'208}},  // 610,304 less 4,096 of droppable cache
      {"dockerd-stats-stopped", done},
      {"dockerd-stop-204", done},
      {"dockerd-stop-304", done},
      {"dockerd-stop-404", refused},
      {"dockerd-stop-default10s", done},
      {"dockerd-version", done},
      {"dockerd-version-too-new-400", refused},
      {"podman-badpath-404", refused},
      {"podman-list-all-v141", {true, {"a5", "a1", "a3", "a6", "a2", "web"}, 0}},
      {"podman-list-empty", done},
      {"podman-list-http10", {true, {"a5", "a1", "a3", "a2", "web"}, 0}},
      {"podman-list-http11-close", done},
      {"podman-list-paused", {true, {"a5", "a1", "web"}, 0}},
      {"podman-pause", done},
      {"podman-ping", done},
      {"podman-restart-204", done},
      {"podman-start-204", done},
      {"podman-start-304", done},
      {"podman-stats-404", refused},
      {"podman-stats-a1", {true, {}, 323'584}},  // no "stats" at all
      {"podman-stats-a2", {true, {}, 380'928}},
      {"podman-stats-a2-http11", done},
      {"podman-stats-a2-two-samples", {true, {}, 241'664}},
      {"podman-stats-a3", {true, {}, 356'352}},
      {"podman-stats-stopped", done},
      {"podman-stats-web", {true, {}, 532'480}},
      {"podman-stop-204", done},
      {"podman-stop-304", done},
      {"podman-stop-404", refused},
      {"podman-stop-default10s", done},
      {"podman-stop-t2", done},
      {"podman-version", done},
  };
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(replies))
    files.insert(entry.path().stem().string());
  for (const std::string& file : files) EXPECT_EQ(meanings.count(file), 1U) << file << " has no row";
  for (const auto& [file, meaning] : meanings) {
    const std::string reply = recorded(file);
    const std::optional<std::string_view> body = successfulBody(reply);
    EXPECT_EQ(body.has_value(), meaning.success) << file;
    EXPECT_EQ(names(body.value_or("")), meaning.names) << file;
    EXPECT_EQ(memoryOf(body.value_or("")), meaning.mem) << file;
  }
}

TEST(EngineReplies, RecordedContainerHasAllItsFields) {
  const std::string reply = recorded("podman-list-http10");
  EXPECT_EQ(containersOf(*successfulBody(reply)).back(),
            (Container{"f29e5f43f60e", "web", "Up 24 seconds", "localhost/tiny:1", 0}));
}

TEST(EngineList, IdsAndNames) {
  const auto one = [](const std::string& members) {
    const std::vector<Container> list = containersOf("[{" + members + "}]");
    return list.size() == 1 ? list.front().id + "|" + list.front().name : "left out";
  };
  EXPECT_EQ(one(R"("Id":"0123456789abcdef")"), "0123456789ab|0123456789ab");
  EXPECT_EQ(one(R"("Id":"short")"), "short|short");
  EXPECT_EQ(one(R"("Id":"abc","Names":[])"), "abc|abc");
  EXPECT_EQ(one(R"("Id":"abc","Names":"/web")"), "abc|abc");
  EXPECT_EQ(one(R"("Id":"abc","Names":["/web","/other/alias"])"), "abc|web");
  EXPECT_EQ(one(R"("Id":"abc","Names":["//a/b//"])"), "abc|a/b");
  EXPECT_EQ(one(R"("Id":"abc","Names":["/"])"), "abc|");
  EXPECT_EQ(one(R"("Id":7)"), "left out");
  EXPECT_EQ(one(R"("Names":["/web"])"), "left out");
  EXPECT_EQ(one("\"Id\":\"abc\",\"Names\":[\"/caf\xe9\"]"), "abc|caf\xef\xbf\xbd");
  EXPECT_EQ(
      one("\"Id\":\"\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9"
          "\xc3\xa9z\",\"Names\":[\"n\"]"),
      "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9|n");
}

TEST(EngineList, WhatIsNoListOfObjectsIsEmpty) {
  for (const std::string body :
       {"", "{}", "null", "7", "\"x\"", "[", "[1]", R"([{"Id":"a"},7])", R"([{"Id":"a"})",
        R"([{"Id":"a"}] x)", R"({"Id":"a"})", R"([{"Id":"\ud800"}])", "[nan]"}) {
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
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":300})"), 700U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":999})"), 1U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":1000})"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":1001})"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"total_inactive_file":300})"), 700U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":{"inactive_file":0,"total_inactive_file":300})"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000,"stats":null)"), 1000U);
  EXPECT_EQ(mem(R"("usage":1000)"), 1000U);
  EXPECT_EQ(mem(R"("stats":{"inactive_file":300})"), 0U);
}

TEST(EngineStatistics, ImpossibleNumbersCountAsZero) {
  const auto mem = [](const std::string& usage) {
    return memoryOf(R"({"memory_stats":{"usage":)" + usage + "}}");
  };
  EXPECT_EQ(mem("1152921504606846976"), 1'152'921'504'606'846'976U);
  for (const std::string number :
       {"1152921504606846977", "18446744073709551615", "18446744073709551616", "99999999999999999999999999",
        "1e400", "-1", "1.5", "\"1000\"", "true", "null", "[1]"}) {
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

}  // namespace
}  // namespace tarnwick
