#include "sampling/docker.h"

#include <gmock/gmock.h>

#include "tests/support/fake_transport.h"

namespace tarnwick {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

const std::string ok = "HTTP/1.0 200 OK\r\n\r\n";

std::string statsLine(const std::string& id) {
  return "GET /containers/" + id + "/stats?stream=false&one-shot=true";
}

struct DockerTest : testing::Test {
  FakeTransport engine;
  const Docker docker{engine, {"/engine.sock"}};
};

// An engine with containers c1 to cN; each uses 1,000 bytes per number.
void fill(FakeTransport& engine, int count) {
  std::string list;
  for (int i = 1; i <= count; ++i) {
    const std::string id = "c" + std::to_string(i);
    list += (i == 1 ? "[" : ",") + (R"({"Id":")" + id + R"("})");
    engine.replies[statsLine(id)] = ok + R"({"memory_stats":{"usage":)" + std::to_string(i * 1000) + "}}";
  }
  engine.replies["GET /containers/json"] = ok + list + "]";
}

TEST_F(DockerTest, RequestsAreExact) {
  engine.replies["GET /containers/json"] = ok + R"([{"Id":"4711"}])";
  engine.replies["POST /containers/4711/stop"] = "HTTP/1.0 304 Not Modified\r\n\r\n";
  EXPECT_THAT(docker.dockerContainers(), SizeIs(1));
  EXPECT_TRUE(docker.stop("4711"));
  const std::string rest = " HTTP/1.0\r\nHost: docker\r\nContent-Length: 0\r\n\r\n";
  const std::vector<FakeTransport::Asked> asked = engine.asked();
  ASSERT_THAT(asked, SizeIs(3));
  EXPECT_EQ(asked[0].request, "GET /containers/json" + rest);
  EXPECT_EQ(asked[1].request, "GET /containers/4711/stats?stream=false&one-shot=true" + rest);
  EXPECT_EQ(asked[2].request, "POST /containers/4711/stop" + rest);
  const double silences[] = {3, 3, 15};
  for (std::size_t i = 0; i < asked.size(); ++i) {
    EXPECT_EQ(asked[i].limits.silence, silences[i]);
    EXPECT_EQ(asked[i].limits.total, 2 * silences[i]);
    EXPECT_EQ(asked[i].limits.replyBytes, 67'108'864U);
  }
}

TEST_F(DockerTest, TimeoutIsNeverEndless) {
  EXPECT_EQ(docker.dockerAPI("GET", "/x", 0), std::nullopt);
  EXPECT_EQ(docker.dockerAPI("GET", "/x", -7), std::nullopt);
  for (const FakeTransport::Asked& asked : engine.asked()) EXPECT_EQ(asked.limits.silence, 1);
}

TEST_F(DockerTest, ContainersKeepTheEnginesOrderAndAreAskedAboutSideBySide) {
  fill(engine, 40);
  engine.crowd = 5;
  const std::vector<Container> containers = docker.dockerContainers();
  ASSERT_THAT(containers, SizeIs(40));
  for (std::size_t i = 0; i < containers.size(); ++i) {
    EXPECT_EQ(containers[i].id, "c" + std::to_string(i + 1));
    EXPECT_EQ(containers[i].mem, (i + 1) * 1000);
  }
  EXPECT_THAT(engine.asked(), SizeIs(41));
  EXPECT_THAT(engine.mostAtOnce(), AllOf(Ge(5U), Le(8U)));
}
TEST_F(DockerTest, OddIdsNeverReachARequest) {
  engine.replies["GET /containers/json"] =
      ok + R"([{"Id":"../../x"},{"Id":""},{"Id":"a b"},{"Id":"a\r\nX: y"}])";
  EXPECT_THAT(docker.dockerContainers(), SizeIs(4));
  for (const std::string id : {"../../x", "", "a b", "a\r\nX: y", "x/kill?"})
    EXPECT_FALSE(docker.stop(id)) << id;
  EXPECT_EQ(docker.dockerAPI("GET", "/a b", 3), std::nullopt);
  EXPECT_EQ(docker.dockerAPI("GET", "", 3), std::nullopt);
  EXPECT_EQ(docker.dockerAPI("GET /x", "/y", 3), std::nullopt);
  EXPECT_THAT(engine.asked(), SizeIs(1));
}

TEST_F(DockerTest, FailedStatisticsCostOnlyTheirFigure) {
  fill(engine, 3);
  engine.replies[statsLine("c1")] = "HTTP/1.0 404 Not Found\r\n\r\n{\"memory_stats\":{\"usage\":5}}";
  engine.replies.erase(statsLine("c3"));
  const std::vector<Container> containers = docker.dockerContainers();
  EXPECT_THAT(containers, ElementsAre(Field(&Container::mem, 0U), Field(&Container::mem, 2000U),
                                      Field(&Container::mem, 0U)));
}

TEST_F(DockerTest, AnEngineThatStopsAnsweringIsAskedNoMore) {
  fill(engine, 200);
  const std::string list = engine.replies["GET /containers/json"];
  engine.replies = {{"GET /containers/json", list}};
  EXPECT_THAT(docker.dockerContainers(), SizeIs(200));
  EXPECT_THAT(engine.asked(), SizeIs(AllOf(Ge(17U), Le(24U))));  // the list, 16, and those under way
}

TEST_F(DockerTest, FirstPlaceWithASocketIsAsked) {
  engine.sockets = {"/second.sock", "/third.sock"};
  engine.replies["POST /containers/c1/stop"] = "HTTP/1.0 204 No Content\r\n\r\n";
  const Docker three(engine, {"/first.sock", "/second.sock", "/third.sock"});
  EXPECT_TRUE(three.present());
  EXPECT_TRUE(three.stop("c1"));
  EXPECT_EQ(engine.asked().back().socket, "/second.sock");
  engine.sockets.clear();
  EXPECT_FALSE(three.present());
  EXPECT_FALSE(three.stop("c1"));
  EXPECT_THAT(three.dockerContainers(), IsEmpty());
  EXPECT_THAT(engine.asked(), SizeIs(1));
}

}  // namespace
}  // namespace tarnwick
