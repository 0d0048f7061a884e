#include "system/posix/guarded_files.h"

#include <sys/stat.h>

#include "tests/support/fake_clock.h"
#include "tests/support/testing.h"

namespace tarnwick {
namespace {

struct GuardedFilesTest : testing::Test {
  // A worker that counts how often it was started and then does as told.
  std::string worker(const std::string& then) const {
    return folder_.script("worker", "echo >> " + folder_.at("starts") + "\n" + then);
  }
  long starts() const {
    const std::string lines = textOfFile(folder_.at("starts"));
    return std::ranges::count(lines, '\n');
  }

  TempFolder folder_;
  FakeClock clock_;
  CheckLimits limits_{clock_};
};

TEST_F(GuardedFilesTest, TheProgramAsksTheSystemOnOthersBehalf) {
  using Kind = FileQuestion::Kind;
  const std::string file = folder_.write("file", std::string("caf\xE9\0 end", 9) + std::string(100'000, 'x'));
  const std::string tool = folder_.script("sub/tool", "");
  const std::string pipe = folder_.at("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::filesystem::create_symlink(tool, folder_.at("link"));
  GuardedFiles files(TARNWICK_PROGRAM, clock_, limits_);
  DirectFiles direct;
  const Kind kinds[] = {Kind::content, Kind::head,    Kind::tail,  Kind::exists, Kind::directory,
                        Kind::regular, Kind::program, Kind::names, Kind::real};
  int found = 0;
  for (const std::string& path : {file, tool, pipe, folder_.at("link"), folder_.path(), folder_.at("missing"),
                                  folder_.path() + std::string("\0x", 2), std::string(9'000, '/')}) {
    for (const Kind kind : kinds) {
      const FileQuestion question{kind, path, path == file ? 100'009U : 3U};
      const FileAnswer answer = files.ask(question);
      if (path.size() < 9'000) {
        EXPECT_EQ(answer, direct.ask(question)) << path << static_cast<int>(kind);
      }
      if (answer) ++found;
    }
  }
  EXPECT_EQ(found, 6 + 6 + 2 + 6 + 4 + 5) << "what is no folder has an empty list of names";
  EXPECT_EQ(files.volume(folder_.path()).value().blocks, direct.volume(folder_.path()).value().blocks);
  EXPECT_EQ(files.ask({Kind::exists, "usr"}), std::nullopt) << "relative to whose folder?";
  EXPECT_EQ(files.misses(), 0U);
}

TEST_F(GuardedFilesTest, WhoeverDoesNotAnswerIsAbandonedAndItsFolderLeftAloneForTheCheck) {
  GuardedFiles files(worker("exec sleep 1000"), clock_, limits_);
  const auto ask = [&](const std::string& path) { return files.pathExists(folder_.at(path)); };
  limits_.begin();
  EXPECT_FALSE(ask("a/.git"));
  EXPECT_THAT(limits_.leftOut(), ElementsAre(folder_.at("a")));
  EXPECT_FALSE(ask("a/.git") || ask("a/b/script.py") || files.mayVisit(folder_.at("a")));
  EXPECT_EQ(starts(), 1) << "nobody else is sent there";
  EXPECT_TRUE(files.mayVisit(folder_.at("ab")));
  EXPECT_FALSE(ask("ab/.git"));
  EXPECT_EQ(starts(), 2);
  EXPECT_EQ(files.misses(), 5U);

  clock_.turn(8);
  EXPECT_FALSE(ask("c/.git"));
  EXPECT_EQ(starts(), 2) << "there is no time left";
  limits_.begin();
  EXPECT_FALSE(ask("a/.git"));
  EXPECT_EQ(starts(), 3) << "a disk of this machine was only slow";
}

TEST_F(GuardedFilesTest, AWorkerThatEndsIsNoAnswerAndNoDelay) {
  for (const std::string& program : {worker("exit 0"), folder_.at("missing")}) {
    GuardedFiles files(program, clock_, limits_);
    EXPECT_FALSE(files.pathExists(folder_.path()) || files.isDirectory("/"));
    EXPECT_EQ(files.misses(), 2U) << "so nobody remembers that nothing is there";
  }
  EXPECT_THAT(limits_.leftOut(), IsEmpty());
  EXPECT_EQ(starts(), 2);
}

}  // namespace
}  // namespace tarnwick
