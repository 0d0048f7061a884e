#include "system/unix_socket.h"

#include <poll.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/support/posix/fake_engine.h"

namespace {

constexpr double brief = 0.05;     // seconds: a limit that is meant to pass
constexpr double endless = 3'000;  // seconds: a limit that must not be what ends the call
constexpr std::size_t muchRoom = 1'000'000;
const std::string question = "GET / HTTP/1.0\r\n\r\n";
const Text absent;

struct UnixSocket : testing::Test {
  std::string path() const { return folder_.path() + "/s"; }
  std::optional<std::string> ask(double silence, double total, const std::string& request = question) {
    return transport_.exchange(path(), request, {silence, total, muchRoom});
  }

  TempFolder folder_;
  UnixSocketTransport transport_;
};

TEST_F(UnixSocket, ReadsToTheEnd) {
  std::string reply;
  for (int i = 0; i < 60'000; ++i) reply += std::to_string(i);
  const FakeEngine engine(
      path(), [&](int connection, const std::string& request) { sendAll(connection, request + reply); });
  EXPECT_EQ(ask(endless, endless), question + reply);
}

TEST_F(UnixSocket, SilenceEndsTheCallAndWhatCameBeforeItCounts) {
  std::string said;
  const FakeEngine engine(path(), [&](int connection, const std::string&) {
    sendAll(connection, said);
    waitForClose(connection);
  });
  EXPECT_EQ(ask(brief, endless), absent);
  EXPECT_EQ(engine.connections(), 1);
  said = "HTTP/1.0 204 No Content\r\n\r\n";
  EXPECT_EQ(ask(2, endless), said);
}

TEST_F(UnixSocket, DrippingEngineEndsWithTheTotal) {
  const FakeEngine engine(path(), [](int connection, const std::string&) {
    while (sendAll(connection, "x")) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  });
  const std::optional<std::string> reply = ask(endless, 0.3);
  EXPECT_TRUE(!reply || reply->find_first_not_of('x') == std::string::npos);
}

TEST_F(UnixSocket, EngineThatAcceptsNobodyEndsTheConnect) {
  const Descriptor listener = listenAt(path(), 0);
  // Each call leaves one connection that nobody accepts; soon there is no room for the next.
  for (int i = 0; i < 4; ++i) EXPECT_EQ(ask(brief, endless), absent);
}

TEST_F(UnixSocket, RequestNotTakenWholeIsAbsent) {
  const FakeEngine engine(path(), [](int connection, const std::string&) {
    sendAll(connection, "HTTP/1.0 200 OK\r\n\r\n");
    pollfd one{connection, POLLHUP, 0};
    ::poll(&one, 1, 60'000);
  });
  EXPECT_EQ(ask(brief, endless, question + std::string(32U << 20U, 'x')), absent);
}

TEST_F(UnixSocket, ReplyIsBounded) {
  const FakeEngine engine(
      path(), [](int connection, const std::string&) { sendAll(connection, std::string(1000, 'x')); });
  EXPECT_EQ(transport_.exchange(path(), question, {endless, endless, 1000}), std::string(1000, 'x'));
  EXPECT_EQ(transport_.exchange(path(), question, {endless, endless, 999}), absent);
}

TEST_F(UnixSocket, PathThatDoesNotFitConnectsNowhere) {
  const std::size_t room = sizeof(sockaddr_un{}.sun_path) - 1;
  ASSERT_LT(folder_.path().size() + 1, room);
  const std::string longest = folder_.path() + "/" + std::string(room - folder_.path().size() - 1, 'p');
  const FakeEngine engine(longest, [](int connection, const std::string&) { sendAll(connection, "hello"); });
  const ExchangeLimits limits{endless, endless, muchRoom};
  EXPECT_EQ(transport_.exchange(longest, question, limits), "hello");
  for (const std::string& none : {longest + "p", longest.substr(0, 40) + '\0', std::string()})
    EXPECT_EQ(transport_.exchange(none, question, limits), absent) << none;
  EXPECT_EQ(engine.connections(), 1);
}

TEST_F(UnixSocket, OnlySocketsAreReachable) {
  for (const std::string& none : {path(), folder_.write("file", "text"), folder_.path()})
    EXPECT_FALSE(transport_.reachable(none)) << none;
  const FakeEngine engine(path(), [](int, const std::string&) {});
  EXPECT_TRUE(transport_.reachable(path()));
  EXPECT_EQ(engine.connections(), 0);
}

}  // namespace
