#include "context/tabs.h"

#include <iterator>

#include "context/browsers.h"
#include "tests/support/testing.h"

namespace {

std::vector<std::string> pages(const std::vector<std::pair<std::string, int>>& hosts) {
  std::vector<std::string> urls;
  for (const auto& [host, count] : hosts) {
    for (int i = 0; i < count; ++i) urls.push_back("https://" + host + "/" + std::to_string(i));
  }
  return urls;
}

TEST(Condense, DuplicatesAreExactRepeatsAndPilesTheThreeLargestOfThreeOrMore) {
  EXPECT_EQ(condense({"https://a.com/", "https://a.com", "https://A.com/", "https://a.com/#x"}).duplicates,
            0);
  EXPECT_EQ(condense({"about:blank", "x", "about:blank", "", "x", ""}).duplicates, 3);

  EXPECT_THAT(condense(pages({{"two.com", 2}, {"three.com", 3}})).piles, ElementsAre(Pair("three.com", 3)));
  EXPECT_THAT(condense(pages({{"www.a.com", 1}, {"a.com", 2}})).piles, ElementsAre(Pair("a.com", 3)));
  EXPECT_THAT(condense(pages({{"d.com", 5}, {"b.com", 5}, {"c.com", 5}, {"a.com", 5}})).piles,
              ElementsAre(Pair("a.com", 5), Pair("b.com", 5), Pair("c.com", 5)));
  EXPECT_THAT(condense(pages({{"a.com", 3}, {"b.com", 4}, {"c.com", 3}, {"z.com", 9}})).piles,
              ElementsAre(Pair("z.com", 9), Pair("b.com", 4), Pair("a.com", 3)));
  EXPECT_THAT(condense({"about:blank", "about:blank", "about:blank", "file:///a"}).piles, IsEmpty());
}

TEST(TabHost, IsWhatTheAddressNamesAndAbsentForWhatHasNoneOrIsMalformed) {
  std::istringstream cases(R"(
      https://example.com/a?b#c               example.com      http://www.www.com/           www.com
      https://example.com?q=http://b.com/     example.com      http://a.com:80@b.com/        b.com
      https://example.com#@evil.com           example.com      http://127.0.0.1:5173/        127.0.0.1
      http://example.com:99999999999999999999 example.com      http://user@[fe80::1%25en0]   fe80::1%25en0
      http://user:p@ss@example.com/           example.com      http://[::1]:3000/x           ::1
      http://www.example.com:8080/            example.com      http://caf%C3%A9.com/         caf%C3%A9.com
      HTTP://WWW.Example.COM/                 WWW.Example.COM  http://café.com/              café.com
      chrome-extension://abcdef/page.html     abcdef           http://localhost:3000         localhost)");
  for (std::string url, host; cases >> url >> host;) EXPECT_EQ(tabHost(url), host) << url;

  std::istringstream urls(R"(
      example.com about:blank file:///etc/hosts blob:https://a.com/1 javascript:void(0)//x https:/a.com https:///a
      ://a.com 1http://a.com http://a\b.com/ http://a.com:80x/ http://a:b:80/ http://user@:80/ http://[::1 http://[]/
      http://[::1]x/ http://[::1]:x/ http://[a/b]/ http://%4/ http://%zz/ http://www./ http://]/)");
  Strings none{std::istream_iterator<std::string>(urls), {}};
  none.insert(none.end(), {"", "ht tp://a.com", "http://a b.com/", "http://a\nb/",
                           std::string("http://a\0b/", 11), "http://" + std::string(256, 'h') + "/",
                           "http://" + std::string(1'000'000, '@'), std::string(1'000'000, '/')});
  for (const std::string& url : none) EXPECT_EQ(tabHost(url), std::nullopt) << url.substr(0, 99);
  EXPECT_EQ(tabHost("http://" + std::string(255, 'h') + "/"), std::string(255, 'h'));
}

TEST(TabScripts, ForeignTextStaysInsideItsQuotes) {
  const std::string hostile = R"(x"} \ end)";
  const std::string quoted = R"("x\"} \\ end")";
  const std::string told = "tell application id " + quoted;
  EXPECT_THAT(tabUrlsScript(hostile), HasSubstr(told + " to set urls to URL of every tab of every window\n"));
  EXPECT_THAT(closeDuplicatesScript(hostile), StartsWith(told + "\n"));
  EXPECT_THAT(openPageScript(hostile, "b"), HasSubstr("{URL:" + quoted + "}\nend tell"));
}

TEST(TabScripts, OutputIsSplitAtLineEnds) {
  EXPECT_THAT(urlsOfLines("\na\nb\r\n\n\rc\n"), ElementsAre("a", "b", "c"));
  std::string many;
  for (int line = 0; line < 10'001; ++line) many += "a\n";
  EXPECT_THAT(urlsOfLines(many), SizeIs(10'000));
}

TEST(AutomationStatus, OnlyThreeAnswersAreClear) {
  EXPECT_EQ(fourCharCode("UR \xff"), 0x555220FFU) << "as their events are named";
  EXPECT_EQ(accessFromStatus(0), Access::allowed);
  EXPECT_EQ(accessFromStatus(-1743), Access::denied);
  EXPECT_EQ(accessFromStatus(-1744), Access::notAsked);
  for (const int other : {-600, 1743}) EXPECT_EQ(accessFromStatus(other), Access::unknown) << other;
}

}  // namespace
