#include "sampling/decode/http_reply.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

const std::optional<std::string> absent;

std::optional<std::string> body(const std::string& reply) {
  const std::optional<std::string_view> found = successfulBody(reply);
  return found ? std::optional<std::string>(*found) : absent;
}

TEST(HttpReply, StatusDecides) {
  const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
      {"200 OK", "x"},           {"299 Odd", "x"},
      {"304 Not Modified", "x"}, {"204", "x"},
      {"199 Low", absent},       {"300 High", absent},
      {"-200 OK", absent},       {" 200 OK", absent},  // two blanks in a row: the second word is empty
      {"4294967496 OK", absent}, {"", absent},
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
