// Time, who runs the program, and what it asks of its environment.
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <stdexcept>

#include "system/clock.h"
#include "system/environment.h"
#include "system/self.h"
#include "tests/support/testing.h"

namespace {

TEST(SystemClock, SignalsDoNotShortenASleepAndNothingToSleepReturns) {
  struct sigaction heard = {};
  heard.sa_handler = [](int) {};  // a handler without SA_RESTART makes a sleeping call return early
  ASSERT_EQ(sigaction(SIGUSR1, &heard, nullptr), 0);
  SystemClock clock;
  EXPECT_GT(clock.now(), timestamp(1'700'000'000));
  std::atomic<bool> done = false;
  const pthread_t sleeper = pthread_self();
  std::thread disturber([&] {
    while (!done) {
      pthread_kill(sleeper, SIGUSR1);
      usleep(5000);
    }
  });
  const double start = clock.uptime();
  clock.sleep(0.25);
  EXPECT_GE(clock.uptime() - start, 0.25);
  for (const double seconds : {0.0, -1e300, std::nan("")}) clock.sleep(seconds);
  EXPECT_LT(clock.uptime() - start, 30);
  done = true;
  disturber.join();
}

TEST(SystemClock, TellsAMomentAsTheUserReadsIt) {
  ::setenv("TZ", "XYZ-5:30", 1);
  ::tzset();
  EXPECT_EQ(localTime(timestamp(1'700'000'000.9)), "2023-11-15 03:43:20");
}

TEST(Self, HomeFallsBack) {
  const auto database = [](std::string home) { return [home] { return home; }; };
  EXPECT_EQ(homeFolder("relative", database("/b/")), "/b");
  EXPECT_EQ(homeFolder({}, database("")), "/");
  const auto unasked = []() -> std::string { throw std::logic_error("the database was asked"); };
  EXPECT_EQ(homeFolder("/home/a//", unasked), "/home/a");
  EXPECT_EQ(homeFolder("///", unasked), "/");
}

TEST(Self, HomeIsTheFolderBehindTheLinks) {
  const TempFolder folder;
  folder.write("disk/home/ana/x", "");
  std::filesystem::create_directory_symlink(folder.at("disk/home"), folder.at("home"));
  std::filesystem::create_directory_symlink("ana", folder.at("disk/home/alias"));
  for (const char* name : {"disk/home/ana", "home/ana", "home/alias"})
    EXPECT_EQ(resolvedHome(folder.at(name), distantMounts()), folder.at("disk/home/ana")) << name;
  EXPECT_EQ(resolvedHome("/nonexistent/home", distantMounts()), "/nonexistent/home");
}

TEST(Self, CostIsCountedInMilliseconds) {
  const double before = processorMilliseconds();
  EXPECT_TRUE(waitUntil([&] { return processorMilliseconds() > before + 1; }));
  EXPECT_LT(processorMilliseconds() - before, 60'000);
}

// Gives a variable a value, or takes it away, as long as the object lives.
class Variable {
 public:
  Variable(const char* name, const std::optional<std::string>& value)
      : name_(name), before_(environmentVariable(name)) {
    give(value);
  }
  ~Variable() { give(before_); }
  Variable(Variable&&) = delete;  // nor copied

 private:
  void give(const std::optional<std::string>& value) const {
    value ? ::setenv(name_, value->c_str(), 1) : ::unsetenv(name_);
  }
  const char* name_;
  std::optional<std::string> before_;
};

TEST(Environment, FoldersFollowItOnlyToAbsolutePlaces) {
  for (const Text& value : {Text(), Text(""), Text("relative"), Text("/c")}) {
    const Variable configHome("XDG_CONFIG_HOME", value);
    const Variable runtimeHome("XDG_RUNTIME_DIR", value);
    EXPECT_EQ(configFolder("/h") + runtimeFolder(1000), value == "/c" ? "/c/c" : "/h/.config/run/user/1000");
  }
}

TEST(Environment, DataFoldersFollowTheBaseDirectoryRules) {
  const std::tuple<Text, Text, Strings> cases[] = {
      {"relative", "", {"/h/.local/share", "/usr/local/share", "/usr/share"}},
      {"/data/", "/x:relative::/y//", {"/data", "/x", "/y"}}};
  for (const auto& [home, dirs, folders] : cases) {
    const Variable dataHome("XDG_DATA_HOME", home);
    const Variable dataDirs("XDG_DATA_DIRS", dirs);
    EXPECT_EQ(dataFolders("/h"), folders) << home.value_or("unset");
  }
}

TEST(Environment, TheStrongestLocaleThatIsSetCounts) {
  const Variable messages("LC_MESSAGES", "de_AT");
  const Variable dates("LC_TIME", {});
  const Variable language("LANG", "fr_FR");
  for (const auto& [all, locales] : {std::pair{"", "de_AT fr_FR"}, {"C", "C C"}}) {
    const Variable strongest("LC_ALL", all);
    EXPECT_EQ(messageLocale() + " " + dateLocale(), locales);
  }
}

}  // namespace
