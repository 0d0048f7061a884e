#include "records/app_name.h"
#include "records/browsers.h"
#include "records/checked.h"
#include "records/finding.h"
#include "records/one_line.h"
#include "records/snapshot.h"
#include "records/utc_time.h"
#include "records/utf8.h"
#include "records/wording.h"
#include "tests/support/testing.h"

namespace {

TEST(Utf8, InvalidSequencesBecomeOneReplacementEachAndTheRestStays) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"lone continuation", "a\x80z", "a\uFFFDz"},    {"invalid bytes", "\xFF\xFE", "\uFFFD\uFFFD"},
      {"cut at the end", "a\xF0\x9F\x98", "a\uFFFD"}, {"cut in the middle", "a\xE2\x80z", "a\uFFFDz"},
      {"overlong slash", "a\xC0\xAFz", "a\uFFFDz"},   {"surrogate", "a\xED\xA0\x80z", "a\uFFFDz"}};
  for (const auto& [what, bytes, text] : cases) EXPECT_EQ(repairUtf8(bytes), text) << what;
  EXPECT_EQ(repairUtf8(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf8, LongTextsAreCutBetweenCharactersWhichAreCodePoints) {
  const std::tuple<std::string, std::size_t, const char*> cases[] = {{"abcd", 3, "abc"},
                                                                     {"a\u20ac", 4, "a\u20ac"},
                                                                     {"a\u20acb", 4, "a\u20ac"},
                                                                     {"a\u20ac", 3, "a"},
                                                                     {"a\u20ac", 2, "a"},
                                                                     {"😀", 3, ""},
                                                                     {"\xFF\xFF\xFF", 7, "\uFFFD\uFFFD"},
                                                                     {"x", 0, ""}};
  for (const auto& [bytes, most, text] : cases) EXPECT_EQ(repairUtf8(bytes, most), text) << bytes << most;
  EXPECT_EQ(characterCount("aë€😀"), 4U);
  for (const auto& [count, first] : {std::pair{0U, ""}, {3U, "aë€"}, {4U, "aë€😀"}})
    EXPECT_EQ(firstCharacters("aë€😀", count), first);
}

TEST(OneLine, RunsOfLineEndsBecomeOneBlankAndTheRestStays) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"a “b” \t\x1B\u200E\u00A0\u0084\u0086\u2027\u202A é😀",
       "a “b” \t\x1B\u200E\u00A0\u0084\u0086\u2027\u202A é😀"},
      {"a\nb\vc\fd\re", "a b c d e"},
      {"a\u0085b\u2028c\u2029d", "a b c d"},
      {"\r\na\n\u2028\n\nb \n", " a b  "}};
  for (const auto& [text, line] : cases) EXPECT_EQ(oneLine(text), line);
  EXPECT_EQ(Fix{QuitApp{"a\nkill -KILL 1"}}.command(), "Cmd-Q a kill -KILL 1");
}

TEST(AppName, IsTheOutermostBundleBelowAnApplicationFolder) {
  const std::pair<const char*, const char*> cases[] = {
      {"/Applications/Utilities/Foo.app/Contents/MacOS/Foo", "Foo"},
      {"/Applications/Outer.app/Contents/Helpers/Inner.app/Contents/MacOS/Inner", "Outer"},
      {"/Users/x/Applications/Bar.app/Contents/MacOS/Bar", "Bar"},
      {"/Applications/1Password.app/Contents/MacOS/", "1Password"}};
  for (const auto& [path, name] : cases) EXPECT_EQ(appName(path, "/Users/x"), name) << path;
  for (const char* none : {"/Users/y/Applications/Bar.app/Contents/MacOS/Bar", "/Applications/Foo.app",
                           "/Applications/Foo.app/Contents/Resources/foo", "/opt/Foo.app/Contents/MacOS/Foo",
                           "/ApplicationsFoo.app/Contents/MacOS/x"})
    EXPECT_EQ(appName(none, "/Users/x"), std::nullopt) << none;
}

TEST(Wording, SizesChangeUnitAndPrecisionAtTheirLimits) {
  constexpr std::uint64_t gb = 1ULL << 30U;
  const std::pair<std::uint64_t, const char*> cases[] = {{1'048'575, "0 MB"},
                                                         {1'048'576, "1 MB"},
                                                         {gb - 1, "1023 MB"},
                                                         {gb, "1.0 GB"},
                                                         {99 * gb + gb / 10 * 9, "99.9 GB"},
                                                         {100 * gb - 1, "100.0 GB"},
                                                         {100 * gb, "100 GB"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(size(bytes), text) << bytes;
}

TEST(Wording, AgesAreTruncatedToTheirLargestUnit) {
  const std::pair<double, const char*> cases[] = {{0, "0 seconds"},        {1, "1 second"},
                                                  {59.9, "59 seconds"},    {60, "1 minute"},
                                                  {3'599, "59 minutes"},   {3'600, "1 hour"},
                                                  {86'400, "24 hours"},    {169'200, "47 hours"},
                                                  {172'799.9, "47 hours"}, {172'800, "2 days"},
                                                  {864'000, "10 days"},    {-5, "-5 seconds"},
                                                  {-0.5, "0 seconds"},     {-90'000, "-90000 seconds"}};
  for (const auto& [seconds, text] : cases) EXPECT_EQ(ago(seconds), text) << seconds;
}

TEST(WordingDeathTest, NumbersThatAreNoNumbersStopTheProgram) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  for (const double seconds : {infinite, std::nan(""), -1e19}) EXPECT_DEATH(ago(seconds), "fault");
  EXPECT_DEATH(pct(infinite, Snapshot{}), "fault");
}

TEST(Wording, PluralsAndLists) {
  EXPECT_EQ(list({plural(1, "process"), plural(2, "process"), plural(0, "app"), plural(-1, "hour")}),
            "1 process, 2 processes, 0 apps, and -1 hours");
  EXPECT_EQ(list({}) + list({"a"}) + list({"Photos", "Spotlight"}), "aPhotos and Spotlight");
}

TEST(Wording, ProcessorSharesRoundHalvesAwayFromZero) {
  const std::tuple<double, int, const char*> cases[] = {
      {4.0, 8, "50% CPU"},   {0.5, 10, "5% CPU"},   {1.5, 0, "150% CPU"},
      {1.5, -3, "150% CPU"}, {0.125, 1, "13% CPU"}, {-0.001, 1, "0% CPU"},
      {0.005, 1, "1% CPU"},  {0.0049, 1, "0% CPU"}, {0.625, 1, "63% CPU"}};
  for (const auto& [cpu, cores, text] : cases)
    EXPECT_EQ(pct(cpu, Snapshot{.cores = cores}), text) << cpu << " on " << cores;
}

TEST(Snapshot, NameIsTheLastComponentOfTheFirstArgumentElseOfThePath) {
  const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
      {"/bin/python3.11", {"/opt/bin/python", "x"}, "python"},
      {"/usr/bin/node", {}, "node"},
      {"/usr/bin/node", {""}, ""},
      {"/usr/bin/", {}, ""}};
  for (const auto& [path, args, name] : cases) EXPECT_EQ((Proc{.path = path, .args = args}.name()), name);
}

const Timestamp started = timestamp(1'700'000'000);

TEST(Fix, CommandsAndPidsOfNestedLists) {
  EXPECT_EQ(Fix{SimShutdown{"0000-1"}}.command(), "simctl shutdown 0000-1");
  EXPECT_EQ((Fix{Signal{7, 2, started}}.command()), "kill -TERM 7") << "only 9 reads KILL";
  const Fix inner{All{{{Signal{3, 15, started}}, {QuitApp{"x"}}, {Signal{3, 9, started}}}}};
  const Fix outer{All{{{Signal{1, 15, started}}, inner, {All{}}, {Signal{2, 15, started}}}}};
  EXPECT_THAT(outer.pids(), ElementsAre(1, 3, 3, 2));
  EXPECT_EQ(outer.command(), "kill -TERM 1; kill -TERM 3; Cmd-Q x; kill -KILL 3; ; kill -TERM 2");
  EXPECT_THAT(Fix{DockerStop{"c"}}.pids(), IsEmpty());
}

TEST(Fix, HashesLookAtCaseAndWholePayload) {
  const Fix base{Signal{41, 15, started}};
  const Fix all[] = {base,
                     {All{{base}}},
                     {All{{base, base}}},
                     {All{}},
                     {Signal{42, 15, started}},
                     {Signal{41, 9, started}},
                     {Signal{41, 15, started + Seconds{1}}},
                     {QuitApp{"x"}},
                     {DockerStop{"x"}},
                     {SimShutdown{"x"}},
                     {OpenSettings{"x"}},
                     {AskAutomation{"x"}},
                     {CloseDuplicateTabs{"x"}},
                     {OpenTab{"x", "y"}},
                     {OpenTab{"y", "x"}}};
  EXPECT_NE(all[1], all[2]);
  std::set<std::size_t> hashes;
  for (const Fix& fix : all) hashes.insert(std::hash<Fix>{}(fix));
  EXPECT_EQ(hashes.size(), std::size(all));
  EXPECT_EQ(std::hash<Fix>{}(base), std::hash<Fix>{}(Fix{Signal{41, 15, started}}));
}

TEST(Browsers, OneWithoutAnIdentifierCannotBeAsked) {
  EXPECT_EQ(scriptableBrowser(""), nullptr);
  EXPECT_EQ(scriptableBrowser("com.google.Chrome"), browserOfApp("Google Chrome"));
  EXPECT_EQ(browserOfApp("Chrome"), nullptr);
}

TEST(UtcTime, IsTheSecondThatHasBegun) {
  const std::pair<double, const char*> cases[] = {
      {-0.001, "1969-12-31T23:59:59Z"},
      {951'782'400, "2000-02-29T00:00:00Z"},
      {-62'167'219'200, "0000-01-01T00:00:00Z"},
      {-1e18, "0000-01-01T00:00:00Z"},
      {253'402'300'799.9, "9999-12-31T23:59:59Z"},
      {std::numeric_limits<double>::infinity(), "9999-12-31T23:59:59Z"},
      {std::nan(""), "0000-01-01T00:00:00Z"}};
  for (const auto& [moment, text] : cases) EXPECT_EQ(utcTime(timestamp(moment)), text) << moment;
}

}  // namespace
