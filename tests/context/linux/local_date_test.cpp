#include "system/port.h"

#include "tests/support/testing.h"

namespace {

using Language = std::array<const char*, 3>;  // LC_ALL, LC_TIME and LANG

constexpr double november = 1'795'239'840;  // 2026-11-21 05:44 UTC, nine hours less than in Tokyo

std::string dateIn(const Language& language, double moment = november) {
  ::setenv("TZ", "Asia/Tokyo", 1);
  ::setenv("LC_ALL", language[0], 1);
  ::setenv("LC_TIME", language[1], 1);
  ::setenv("LANG", language[2], 1);
  return localMediumDate(timestamp(moment));
}

TEST(LocalDate, FollowsTheUsersLanguageAndTimeZone) {
  const std::string american = "Nov 21, 2026, 2:44\xE2\x80\xAFPM";
  const std::string german = "21.11.2026, 14:44";
  const std::pair<Language, std::string> cases[] = {
      {{"en_US.UTF-8", "", ""}, american}, {{"", "de_DE.UTF-8", "en_US.UTF-8"}, german},
      {{"", "", "de_DE"}, german},         {{"C.UTF-8", "de_DE", ""}, american},
      {{"", "", "POSIX"}, american},       {{"", "", ""}, american}};
  for (const auto& [language, text] : cases)
    EXPECT_EQ(dateIn(language), text) << testing::PrintToString(language);
}

// ICU takes "zz" for a language without words, and would say "2026 M11 21"; long ones have crashed others.
TEST(LocalDate, OnlyAKnownLanguageAndMomentsInTheCalendarReachTheLibrary) {
  const std::string american = dateIn({"en_US", "", ""});
  for (const std::string& odd :
       Strings{"zz", "zz_ZZ", "de_de", "DE", "d", "de-DE", "de_DE_DE", "de_", "_DE", "root", "i-klingon",
               "x-", "\xff\xfe", "../../etc/passwd", "%s%n", std::string(100'000, 'd')})
    EXPECT_EQ(dateIn({odd.c_str(), "", ""}), american) << odd.substr(0, 20);
  EXPECT_THAT(dateIn({"de_419", "", ""}), StartsWith("21.11.2026, ")) << "the hour's form is the region's";
  EXPECT_FALSE(dateIn({"zh_TW", "", ""}).empty());
  for (const double moment : {-std::numeric_limits<double>::infinity(), -1e300, 1e300, std::nan("")})
    EXPECT_FALSE(dateIn({"en_US", "", ""}, moment).empty()) << moment;
}

}  // namespace
