#include "sampling/engine/docker.h"
#include "sampling/engine/engine_json.h"
#include "sampling/engine/http_reply.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_transport.h"

namespace {

const std::filesystem::path replies{TARNWICK_SOURCE_DIR "/tests/sampling/fixtures/engine"};

// What each means lies beside them: names of containers, or bytes. All others are done without an answer, are
// about something else, or came in chunks nobody asked for.
TEST(EngineReplies, EveryRecordedReplyMeansWhatItSays) {
  std::map<std::string, std::string> meanings;
  std::ifstream lines(replies.string() + ".meanings");
  for (std::string file; lines >> file;) std::getline(lines, meanings[file]);
  std::size_t seen = 0;
  for (const auto& entry : std::filesystem::directory_iterator(replies)) {
    const std::string file = entry.path().stem().string();
    const std::string reply = textOfFile(entry.path());
    const std::optional<std::string_view> body = successfulBody(reply);
    EXPECT_EQ(body.has_value(),
              file.find("-404") == std::string::npos && file.find("-400") == std::string::npos)
        << file;
    std::string meaning;
    for (const Container& container : containersOf(body.value_or(""))) meaning += " " + container.name;
    if (const std::uint64_t bytes = memoryOf(body.value_or(""))) meaning += " " + std::to_string(bytes);
    EXPECT_EQ(meaning, meanings[file]) << file;
    ++seen;
  }
  EXPECT_EQ(seen, 50U);
}

TEST(EngineList, IdsAndNames) {
  const std::pair<std::string, const char*> cases[] = {
      {R"("Id":"0123456789abcdef")", "0123456789ab|0123456789ab"},
      {R"("Id":"abcdef012345","Names":"/web")", "abcdef012345|abcdef012345"},
      {R"("Id":"abcdef012345","Names":["/web","/other/alias"],"Status":7,"Image":null)", "abcdef012345|web"},
      {R"("Id":"abcdef012345","Names":["//a/b//"])", "abcdef012345|a/b"},
      {"\"Id\":\"ABCDEF012345\",\"Names\":[\"/caf\xe9\"]", "ABCDEF012345|caf\xef\xbf\xbd"},
      {"\"Id\":\"" + std::string(64, 'f') + "\"", "ffffffffffff|ffffffffffff"},
      {"\"Id\":\"" + std::string(65, 'f') + "\"", "left out"},
      {R"("Id":"abcdef01234")", "left out"},
      {R"("Id":"abcdef012345\n")", "left out"},
      {R"("Id":"éééééééééééézz")", "left out"},
      {R"("Names":["/web"])", "left out"}};
  for (const auto& [members, expected] : cases) {
    const std::vector<Container> list = containersOf("[{" + members + "}]");
    EXPECT_EQ(list.size() == 1 ? list.front().id + "|" + list.front().name : "left out", expected) << members;
  }
}

TEST(EngineList, TextsAndTheListItselfHaveALongestLength) {
  const auto most = [](std::size_t bytes) { return std::string(bytes, 'x'); };
  const std::string entry = R"({"Id":"0123456789ab","Names":["//)" + most(300) + R"("],"Status":")" +
                            most(300) + R"(","Image":")" + most(600) + "\"},";
  const std::vector<Container> one = containersOf("[" + entry + R"({"Id":"bbbbbbbbbbbb"}])");
  EXPECT_THAT(one, ElementsAre(Container{"0123456789ab", most(255), most(255), most(512)},
                               Container{"bbbbbbbbbbbb", "bbbbbbbbbbbb"}))
      << "nothing is left of the one before";
  std::string many = R"([{"Id":"bbbbbbbbbbbb"})";
  for (int i = 0; i < 40'000; ++i) many += R"(,{"Id":"bbbbbbbbbbbb"})";
  EXPECT_THAT(containersOf(many + "]"), SizeIs(32'768));
}

TEST(EngineList, OfAMemberThatRepeatsTheLastCounts) {
  const auto one = containersOf(
      R"([{"Id":"aaaaaaaaaaaa","Names":["/n"],"Status":"Up","Id":7},{"Id":7,"Id":"bbbbbbbbbbbb","Names":["/n"],"Names":[8,"/m"],"Names":["/o","/p"]}])");
  ASSERT_THAT(one, SizeIs(1));
  EXPECT_EQ(one[0].id + " " + one[0].name, "bbbbbbbbbbbb o");
  EXPECT_EQ(memoryOf(R"({"memory_stats":{"usage":9,"usage":8,"stats":{"inactive_file":3},"stats":{"x":1}}})"),
            8U);
  EXPECT_EQ(memoryOf(R"({"memory_stats":{"usage":9},"memory_stats":7})"), 0U);
  EXPECT_EQ(memoryOf(R"({"memory_stats":{"stats":{"usage":5},"x":[{"usage":6}]},"usage":7})"), 0U);
}

TEST(EngineList, WhatIsNoListOfObjectsOrIsNestedTooDeeplyIsEmpty) {
  for (const std::size_t levels : {62U, 63U})
    EXPECT_THAT(containersOf(R"([{"Id":"aaaaaaaaaaaa","Labels":)" + std::string(levels, '[') +
                             std::string(levels, ']') + "}]"),
                SizeIs(63 - levels));
  for (const std::string& body :
       Strings{"", "null", "[1]", R"([{"Id":"abcdef012345"},7])", R"([{"Id":"abcdef012345"})",
               R"({"Id":"abcdef012345"})", R"([{"Id":"\ud800"}])", std::string(1'000'000, '[')})
    EXPECT_THAT(containersOf(body), IsEmpty()) << body.substr(0, 99);
}

TEST(EngineStatistics, DroppableCacheIsTakenOffAndImpossibleNumbersCountAsZero) {
  const std::pair<std::string, std::uint64_t> cases[] = {
      {R"("usage":1000,"stats":{"inactive_file":999})", 1},
      {R"("usage":1000,"stats":{"inactive_file":1000})", 1000},
      {R"("usage":1000,"stats":{"total_inactive_file":300})", 700},
      {R"("usage":1000,"stats":{"inactive_file":0,"total_inactive_file":300})", 1000},
      {R"("usage":1000,"stats":{"inactive_file":-5})", 1000},
      {R"("usage":1000)", 1000},
      {R"("stats":{"inactive_file":300})", 0},
      {R"("usage":281474976710656)", 281'474'976'710'656}};
  for (const auto& [members, bytes] : cases)
    EXPECT_EQ(memoryOf(R"({"memory_stats":{)" + members + "}}"), bytes) << members;
  for (const std::string number : {"281474976710657", "1152921504606846976", "18446744073709551616", "1e400",
                                   "-1", "1.5", "\"1000\"", "null"})
    EXPECT_EQ(memoryOf(R"({"memory_stats":{"usage":)" + number + "}}"), 0U) << number;
  for (const char* body : {"", "[]", "{}", R"({"memory_stats":[]})", "{\"memory_stats\""})
    EXPECT_EQ(memoryOf(body), 0U) << body;
}

TEST(HttpReply, ABodyStandsBehindTheBlankLineOfASuccess) {
  const std::string most =
      "HTTP/1.0 200 OK\r\nX: " + std::string((1U << 20U) - 20, 'h');  // all that headers may have
  const std::pair<std::string, const char*> bodies[] = {
      {"HTTP/1.0 304 Not Modified\r\n\r\n", ""},
      {"HTTP/1.0 299 Odd\r\nA: \xff\xfe\r\n\r\none\r\n\r\ntwo", "one\r\n\r\ntwo"},
      {"HTTP/1.0 204\r\n\r\nx", "x"},
      {most + "\r\n\r\nx", "x"}};
  for (const auto& [reply, body] : bodies) EXPECT_EQ(successfulBody(reply), body) << reply.substr(0, 99);
  // Two blanks in a row: the second word is empty.
  for (const std::string status :
       {"199 Low", "300 High", "-200 OK", " 200 OK", "200.0 OK", "4294967496 OK", ""})
    EXPECT_EQ(successfulBody("HTTP/1.0 " + status + "\r\n\r\nx"), std::nullopt) << status;
  for (const std::string& cut : Strings{"", "\r\n\r\n", "HTTP/1.0\r\n\r\nx", "HTTP/1.0 200 OK\r\nA: b\r\n\r",
                                        "HTTP/1.0 200 OK\n\nx", most + "h\r\n\r\nx"})
    EXPECT_EQ(successfulBody(cut), std::nullopt) << cut.substr(0, 99);
}

const std::string ok = "HTTP/1.0 200 OK\r\n\r\n";

std::string statsLine(const std::string& id) {
  return "GET /containers/" + id + "/stats?stream=false&one-shot=true";
}

struct DockerTest : testing::Test {
  FakeTransport engine;
  const Docker docker{engine, {"/engine.sock"}};
};

// "c10000000001" for 1.
std::string idOf(std::size_t number) { return "c" + std::to_string(10'000'000'000 + number); }

// An engine with containers 1 to N; each uses 1,000 bytes per number.
void fill(FakeTransport& engine, int count) {
  std::string list;
  for (int i = 1; i <= count; ++i) {
    const std::string id = idOf(static_cast<std::size_t>(i));
    list += (i == 1 ? "[" : ",") + (R"({"Id":")" + id + R"("})");
    engine.replies[statsLine(id)] = ok + R"({"memory_stats":{"usage":)" + std::to_string(i * 1000) + "}}";
  }
  engine.replies["GET /containers/json"] = ok + list + "]";
}

TEST_F(DockerTest, RequestsAreExactAndNeverEndless) {
  engine.replies["GET /containers/json"] = ok + R"([{"Id":"471147114711"}])";
  engine.replies["POST /containers/471147114711/stop"] = "HTTP/1.0 304 Not Modified\r\n\r\n";
  EXPECT_THAT(docker.dockerContainers(), SizeIs(1));
  EXPECT_TRUE(docker.stop("471147114711"));
  for (const int limit : {0, -7}) EXPECT_EQ(docker.dockerAPI("GET", "/x", limit), std::nullopt);
  const std::string rest = " HTTP/1.0\r\nHost: docker\r\nContent-Length: 0\r\n\r\n";
  const std::pair<std::string, double> expected[] = {{"GET /containers/json", 3},
                                                     {statsLine("471147114711"), 3},
                                                     {"POST /containers/471147114711/stop", 15},
                                                     {"GET /x", 1},
                                                     {"GET /x", 1}};
  const auto asked = engine.asked();
  ASSERT_THAT(asked, SizeIs(std::size(expected)));
  for (std::size_t i = 0; i < asked.size(); ++i) {
    const auto& [line, silence] = expected[i];
    const ExchangeLimits& limits = asked[i].limits;
    EXPECT_EQ(std::tie(asked[i].request, limits.silence, limits.total, limits.replyBytes),
              std::tuple(line + rest, silence, 2 * silence, i == 0 ? 4'194'304U : 524'288U));
  }
}

TEST_F(DockerTest, ContainersKeepTheEnginesOrderAndAreAskedAboutSideBySide) {
  fill(engine, 40);
  engine.crowd = 5;
  std::size_t number = 0;
  for (const Container& container : docker.dockerContainers()) {
    ++number;
    EXPECT_EQ(std::tie(container.id, container.mem), std::tuple(idOf(number), number * 1000));
  }
  EXPECT_THAT(engine.asked(), SizeIs(41));
  EXPECT_THAT(engine.mostAtOnce(), AllOf(testing::Ge(5U), testing::Le(8U)));
}

TEST_F(DockerTest, OnlyPlainIdsReachARequest) {
  for (const std::string& id : Strings{"", "..", ".", "-rf", "_x", "a/b", "a b", "a?x=1", "a%2f", "a\r\nX: y",
                                       "caf\xc3\xa9", "a#", "../../x", "x/kill?", std::string("a\0b", 3)})
    EXPECT_FALSE(isPlainContainerId(id) || docker.stop(id)) << id;
  for (const auto& [method, path] : {std::pair{"GET", "/a b"}, {"GET", ""}, {"GET /x", "/y"}})
    EXPECT_EQ(docker.dockerAPI(method, path, 3), std::nullopt);
  EXPECT_THAT(engine.asked(), IsEmpty());
  for (const char* id : {"0123456789ab", "web", "A_b.c-9", "9"}) EXPECT_TRUE(isPlainContainerId(id)) << id;
}

TEST_F(DockerTest, FailedStatisticsCostOnlyTheirFigure) {
  fill(engine, 3);
  engine.replies[statsLine(idOf(1))] = "HTTP/1.0 404 Not Found\r\n\r\n{\"memory_stats\":{\"usage\":5}}";
  engine.replies.erase(statsLine(idOf(3)));
  const auto mem = [](std::uint64_t bytes) { return testing::Field(&Container::mem, bytes); };
  EXPECT_THAT(docker.dockerContainers(), ElementsAre(mem(0), mem(2000), mem(0)));
}

TEST_F(DockerTest, AnEngineThatStopsAnsweringIsAskedNoMore) {
  fill(engine, 200);
  const std::string list = engine.replies["GET /containers/json"];
  engine.replies = {{"GET /containers/json", list}};
  EXPECT_THAT(docker.dockerContainers(), SizeIs(200));
  EXPECT_THAT(engine.asked(),
              SizeIs(AllOf(testing::Ge(17U), testing::Le(24U))));  // the list, 16, and those under way
}

TEST_F(DockerTest, ACheckWaitsFiveSecondsForAllAnswersTogether) {
  const char* broken = "HTTP/1.0 200 OK\r\n\r\n[{\"Id\":\"c1\"";
  const std::tuple<double, const char*, std::size_t, double, std::size_t> cases[] = {
      // seconds that each answer takes, the list if it is another one, containers, what their statistics may
      // take (0: they are not asked), how many are left out
      {0, "", 1, 5, 0},      {2, "", 1, 3, 0},      {3.5, "", 1, 1.5, 0}, {6, "", 1, 0, 1},
      {2, nullptr, 0, 0, 0}, {3, nullptr, 0, 0, 1}, {2, broken, 0, 0, 0}, {5, broken, 0, 0, 1}};
  for (const auto& [seconds, list, containers, statistics, leftOut] : cases) {
    FakeTransport slow;
    fill(slow, 1);
    if (list == nullptr) slow.replies.erase("GET /containers/json");
    if (list == broken) slow.replies["GET /containers/json"] = broken;
    FakeClock clock;
    CheckLimits limits(clock);
    slow.onAsked = [&clock, taken = seconds] { clock.turn(taken); };
    limits.begin();
    EXPECT_THAT(Docker(slow, {"/engine.sock"}).dockerContainers({}, &limits), SizeIs(containers)) << seconds;
    const auto asked = slow.asked();
    EXPECT_EQ(asked.size() == 2 ? asked[1].limits.total : 0, statistics) << seconds;
    EXPECT_THAT(limits.leftOut(), SizeIs(leftOut)) << seconds;
  }
}

// Docker Desktop leaves its socket behind. The engine that was listed is the one that stops, even when the
// other has come back.
TEST_F(DockerTest, TheFirstPlaceThatAnswersIsAsked) {
  engine.replies["GET /containers/json"] = ok + R"([{"Id":"c00000000001"}])";
  engine.replies["POST /containers/c1/stop"] = "HTTP/1.0 204 No Content\r\n\r\n";
  const Docker four(engine, {"/none.sock", "/desktop.sock", "/rootless.sock", "/system.sock"});
  const auto stoppedAt = [&] { return four.stop("c1") ? engine.asked().back().socket : "nowhere"; };
  engine.sockets = {"/desktop.sock", "/rootless.sock", "/system.sock"};
  EXPECT_EQ(stoppedAt(), "/desktop.sock") << "the first with a socket";
  engine.silent = {"/desktop.sock"};
  EXPECT_THAT(four.dockerContainers(), SizeIs(1));
  engine.silent.clear();
  EXPECT_EQ(stoppedAt(), "/rootless.sock");
  EXPECT_THAT(four.dockerContainers(), SizeIs(1));
  EXPECT_EQ(stoppedAt(), "/desktop.sock");
  EXPECT_TRUE(four.present());
  engine.sockets.clear();
  const std::size_t before = engine.asked().size();
  EXPECT_FALSE(four.present() || four.stop("c1"));
  EXPECT_THAT(four.dockerContainers(), IsEmpty());
  EXPECT_THAT(engine.asked(), SizeIs(before));
}

}  // namespace
