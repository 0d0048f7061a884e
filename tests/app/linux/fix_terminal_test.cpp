// Remedies as somebody at a terminal meets them: a real pseudo terminal, the program, and a real process that
// it may end.
#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <regex>

#include "tests/support/posix/child_process.h"
#include "tests/support/testing.h"

namespace {

// A shell called caffeinate that reads its few words from a file and then waits for more.
struct Culprit {
  explicit Culprit(bool deaf) {
    const std::string end = folder.at("end");
    const std::string words = folder.write(
        "words", std::string(deaf ? "trap '' TERM\n" : "") + "echo x >" + end + "\nread x <" + end + "\n");
    ::mkfifo(end.c_str(), 0600);
    child.emplace([&] {
      ::dup2(::open(words.c_str(), O_RDONLY), STDIN_FILENO);
      ::execl("/bin/sh", "caffeinate", nullptr);
    });
    if (std::ifstream(end).get() != 'x') fault("the shell did not become ready");
  }

  std::string pid() const { return std::to_string(child->pid()); }

  // 0 while it lives; else what ended it.
  int fate() {
    siginfo_t end{};
    ::waitid(P_PID, static_cast<id_t>(child->pid()), &end, WEXITED | WNOWAIT | WNOHANG);
    return end.si_pid == 0 ? 0 : end.si_status;
  }

  TempFolder folder;
  std::optional<ChildProcess> child;
};

// The program at a terminal of 200 columns, thirteen hours later.
class Session {
 public:
  explicit Session(const Strings& words) {
    std::filesystem::copy_file(TARNWICK_CLOCK, clock_);
    winsize size{.ws_row = 24, .ws_col = 200, .ws_xpixel = 0, .ws_ypixel = 0};
    pid_ = ::forkpty(&screen_, nullptr, nullptr, &size);
    if (pid_ != 0) return;
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) ::unsetenv(variable);
    ::setenv("LD_PRELOAD", clock_.c_str(), 1);
    ::setenv("TERM", "dumb", 1);
    std::vector<char*> line{const_cast<char*>("tarnwick")};
    for (const std::string& word : words) line.push_back(const_cast<char*>(word.c_str()));
    line.push_back(nullptr);
    ::execv(TARNWICK_PROGRAM, line.data());
    ::_exit(127);
  }
  ~Session() {
    ::close(screen_);
    if (!ended_) ::kill(pid_, SIGKILL), ::waitpid(pid_, nullptr, 0);
  }
  Session(Session&&) = delete;  // nor copied

  // What appeared since the last time, up to that text; everything when the program ended without it.
  std::string until(const std::string& text) {
    std::string seen;
    for (char byte = 0; !seen.ends_with(text) && ::read(screen_, &byte, 1) == 1;) seen += byte;
    return seen;
  }
  void type(const std::string& keys) const {
    if (::write(screen_, keys.data(), keys.size()) < 0) ADD_FAILURE() << "nobody takes " << keys;
  }

  // Its status, or the number of the signal that ended it with a minus.
  int end() {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    ended_ = true;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
  }

 private:
  TempFolder folder_;
  const std::string clock_ = folder_.at("clock.so");  // a blank in the build's own place would end the name
  int screen_ = -1;
  pid_t pid_ = 0;
  bool ended_ = false;
};

// "#" is the number that the culprit's remedy has last got on the screen, "@" the culprit's pid.
std::string filled(const std::string& text, const std::string& screen, const std::string& pid) {
  const std::regex offer("\\(([0-9]+)\\) \\[[A-Za-z ]+\\]  kill -[A-Z]+ " + pid + "\r");
  std::string number;
  for (std::sregex_iterator found(screen.begin(), screen.end(), offer), none; found != none; ++found)
    number = (*found)[1];
  return std::regex_replace(std::regex_replace(text, std::regex("#"), number), std::regex("@"), pid);
}

struct Story {
  Strings words;
  std::vector<std::pair<std::string, std::string>> steps;  // what is typed, and what stands there then
  int status = 0;
  int fate = 0;
  bool deaf = false;
};

void play(const Story& story) {
  Culprit culprit(story.deaf);
  Strings words;
  for (const std::string& word : story.words) words.push_back(filled(word, "", culprit.pid()));
  Session session(words);
  std::string screen;
  for (const auto& [keys, expected] : story.steps) {
    session.type(filled(keys, screen, culprit.pid()));
    const std::string text = filled(expected, screen, culprit.pid());
    screen += session.until(text);
    EXPECT_THAT(screen, EndsWith(text)) << "after “" << keys << "”";
  }
  session.until("no such text");
  EXPECT_EQ(session.end(), story.status) << screen;
  EXPECT_EQ(culprit.fate(), story.fate) << screen;
}

TEST(FixAtATerminal, DoesWhatWasShownAndConfirmedAndNothingElse) {
  if (std::string_view(TARNWICK_CLOCK).empty())
    GTEST_SKIP() << "sanitizers are to be loaded before any clock";
  const std::string choose = "Number of a remedy, r to check again, Enter to leave: ";
  const std::string calm = "Let the Mac sleep (caffeinate): kill -TERM @ Do it? [y/N] ";
  const std::string force = "Force quit (caffeinate): kill -KILL @ Do it? [y/N] ";
  const std::string nothing = "Nothing was done.\r\n" + choose;
  const std::string unknown = "There is no remedy of the number “";
  const std::string wouldDo = "Would do: Let the Mac sleep (caffeinate): kill -TERM @\r\n";
  const std::string freed = "Done. Freed 0 MB.\r\n";
  const std::string still = "Done, but it is still there. Refresh in a few seconds.\r\n";
  const std::string odd = unknown + "␛[A”.\r\n" + choose;
  const Story stories[] = {{{"--fix"},
                            {{"", choose},
                             {"99\n", unknown + "99”.\r\n" + choose},
                             {"\x1B[A\n", odd},
                             {"#\n", calm},
                             {"n\n", nothing},
                             {"#\n", calm},
                             {"\n", nothing},
                             {"r\n", choose},
                             {"\n", ""}}},
                           {{"--fix"}, {{"", choose}, {"#\n", calm}, {"\x04", nothing}, {"\x04", ""}}},
                           {{"--fix"}, {{"", choose}, {"#\n", calm}, {"\x03", ""}}, -SIGINT},
                           {{"--fix"}, {{"", choose}, {"#\n", calm}, {"y\n", freed}, {"\n", ""}}, 0, SIGTERM},
                           {{"--fix", "--dry-run"}, {{"", choose}, {"#\n", wouldDo + choose}, {"\n", ""}}},
                           {{"--fix", "kill -TERM @"}, {{"", calm}, {"no\n", "Nothing was done.\r\n"}}, 1},
                           {{"--fix"},
                            {{"", choose},
                             {"#\n", calm},
                             {"y\n", still},
                             {"", choose},
                             {"#\n", force},
                             {"y\n", freed},
                             {"\n", ""}},
                            0,
                            SIGKILL,
                            true}};
  for (const Story& story : stories) play(story);
}

}  // namespace
