#include "system/small_file.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "system/posix/guarded_files.h"
#include "system/posix/private_folder.h"
#include "tests/support/fake_clock.h"
#include "tests/support/posix/child_process.h"
#include "tests/support/testing.h"

namespace {

namespace fs = std::filesystem;

std::string pipeAt(const std::string& path) {
  EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
  return path;
}

TEST(SmallFile, IsReadUpToItsLimitAndHeadAndTailAreCutThere) {
  const TempFolder folder;
  const std::string whole = std::string("caf\xC3\xA9 \xFF\0 end", 12) + std::string(100'000, 'x');
  const std::string large = folder.write("large", whole);  // than any buffer on the way
  EXPECT_EQ(readSmallFile(large, whole.size()), whole);
  EXPECT_EQ(readSmallFile(large, whole.size() - 1), std::nullopt);
  const std::string path = folder.write("file", "0123456789");
  const std::tuple<std::size_t, const char*, const char*> cases[] = {
      {4, "0123", "6789"}, {10, "0123456789", "0123456789"}, {11, "0123456789", "0123456789"}};
  for (const auto& [bytes, head, tail] : cases)
    EXPECT_EQ(readFileHead(path, bytes).value() + readFileTail(path, bytes).value(),
              std::string(head) + tail);
  const std::string sparse = folder.write("sparse", "start");
  fs::resize_file(sparse, 2'147'483'648U + 5U);
  EXPECT_EQ(readSmallFile(sparse, 1'000), std::nullopt);
  EXPECT_EQ(readFileHead(sparse, 6), std::string("start\0", 6));
  EXPECT_EQ(readFileTail(sparse, 3), std::string(3, '\0'));
}

TEST(SmallFile, OnlyRegularFilesAreRead) {
  const TempFolder folder;
  const std::string pipe = pipeAt(folder.at("pipe"));
  const std::string file = folder.write("file", "text");
  fs::create_symlink(pipe, folder.at("link to pipe"));
  fs::create_symlink(folder.at("nothing"), folder.at("dangling"));
  const std::string cutShort = file + std::string("\0tail", 5);
  for (const std::string& path : {pipe, folder.at("link to pipe"), folder.at("dangling"), folder.path(),
                                  folder.at("missing"), std::string("/dev/zero"), std::string(), cutShort}) {
    EXPECT_FALSE(readSmallFile(path, 100) || readFileHead(path, 100) || readFileTail(path, 100)) << path;
    EXPECT_FALSE(isRegularFile(path)) << path;
  }
  EXPECT_TRUE(pathExists(pipe) && pathExists(folder.path()));
  EXPECT_FALSE(pathExists(folder.at("dangling")) || pathExists(cutShort));
  EXPECT_TRUE(isDirectory(folder.path()) && !isDirectory(file) && isRegularFile(file));
}

TEST(SmallFile, FoldersListTheirNames) {
  const TempFolder folder;
  folder.write("one", "");
  folder.write(".hidden/inner", "");
  EXPECT_THAT(folderEntries(folder.path()), UnorderedElementsAre("one", ".hidden"));
  EXPECT_TRUE(folderEntries(folder.at("missing")).empty());
  for (int name = 0; name < 65'535; ++name)
    ASSERT_EQ(::symlink("x", folder.at(std::to_string(name)).c_str()), 0);
  EXPECT_THAT(folderEntries(folder.path()), SizeIs(65'536)) << "of 65,537";
}

// Under one name, now a file and now a pipe without a writer, which would read as an empty file.
TEST(SmallFile, OneThatTurnsIntoAPipeBetweenLookAndOpenIsNotRead) {
  const TempFolder folder;
  folder.write("file", "text");
  pipeAt(folder.at("pipe"));
  const std::string name = folder.write("name", "text");
  std::atomic<bool> done = false;
  std::thread exchanger([&] {
    for (bool pipe = true; !done; pipe = !pipe) {
      fs::create_symlink(folder.at(pipe ? "pipe" : "file"), folder.at("next"));
      fs::rename(folder.at("next"), name);
    }
  });
  std::map<Text, int> answers;
  Text last;
  for (int reads = 0, changes = 0; changes < 500 && reads < 2'000'000; ++reads) {
    const Text answer = readSmallFile(name, 100);
    if (answer != last) ++changes;
    last = answer;
    ++answers[answer];
  }
  done = true;
  exchanger.join();
  EXPECT_THAT(answers, UnorderedElementsAre(Pair(Text(), testing::_), Pair(Text("text"), testing::_)));
}

using State = PrivateFolder::Lock::State;
constexpr uid_t stranger = 65'534;

void makeSocket(const std::string& path, mode_t mode) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::chmod(path.c_str(), mode), 0);
}

TEST(PrivateFolder, BelongsToTheUserAlone) {
  const TempFolder parent;
  const std::string folder = parent.at("folder");
  fs::create_directory(folder);
  for (const mode_t mode : std::initializer_list<mode_t>{0700, 0755, 0770, 0701, 01700, 0500}) {
    ASSERT_EQ(::chmod(folder.c_str(), mode), 0);
    EXPECT_EQ(PrivateFolder::open(folder).has_value(), mode == 0700) << std::oct << mode;
  }
  ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
  fs::create_symlink(folder, parent.at("link"));
  const std::string file = parent.write("file", "");
  ASSERT_EQ(::chmod(file.c_str(), 0700), 0);
  for (const std::string& other :
       {parent.at("link"), file, parent.at("none"), std::string("."), std::string()})
    EXPECT_FALSE(PrivateFolder::open(other)) << other;
  if (::chown(folder.c_str(), stranger, 0) == 0) {
    EXPECT_FALSE(PrivateFolder::open(folder));
  }
}

TEST(PrivateFolder, ALockIsOneFileOfTheUsersOwnAndASocketTheUsersOwnToo) {
  const TempFolder place;
  const auto folder = PrivateFolder::open(place.path());
  ASSERT_TRUE(folder);
  ASSERT_EQ(::chmod(place.write("readable", "").c_str(), 0666), 0);
  for (const char* name : {"new", "readable"}) {
    const auto held = folder->lock(name);
    EXPECT_EQ(held.state, State::held) << name;
    EXPECT_EQ(folder->lock(name).state, State::elsewhere) << name;
    EXPECT_EQ(fs::status(place.at(name)).permissions(), fs::perms(0600)) << name;
  }
  EXPECT_EQ(folder->lock("new").state, State::held) << "let go of, it can be had again";

  pipeAt(place.at("pipe"));
  makeSocket(place.at("socket"), 0700);
  makeSocket(place.at("open"), 0777);
  fs::create_directory(place.at("folder"));
  for (const auto& [to, name] : {std::pair{"new", "link"}, {"socket", "socket link"}, {"target", "dangling"}})
    fs::create_symlink(place.at(to), place.at(name));
  for (const char* name : {"pipe", "socket", "folder", "link", "dangling"})
    EXPECT_EQ(folder->lock(name).state, State::refused) << name;
  EXPECT_FALSE(fs::exists(place.at("target")));
  for (const char* name : {"socket", "open", "new", "socket link", "none"})
    EXPECT_EQ(folder->hasSocket(name), name == std::string("socket")) << name;
  if (::chown(place.at("new").c_str(), stranger, 0) == 0 &&
      ::chown(place.at("socket").c_str(), stranger, 0) == 0) {
    EXPECT_EQ(folder->lock("new").state, State::refused);
    EXPECT_FALSE(folder->hasSocket("socket"));
  }
}

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
  const std::string pipe = pipeAt(folder_.at("pipe"));
  makeSocket(folder_.at("socket"), 0600);
  fs::create_symlink(tool, folder_.at("link"));
  GuardedFiles files(TARNWICK_PROGRAM, clock_, limits_);
  DirectFiles direct;
  int found = 0;
  for (const std::string& path : {file, tool, pipe, folder_.at("link"), folder_.at("socket"), folder_.path(),
                                  folder_.at("missing"), folder_.path() + std::string("\0x", 2)}) {
    for (const Kind kind : {Kind::content, Kind::head, Kind::tail, Kind::exists, Kind::directory,
                            Kind::regular, Kind::program, Kind::names, Kind::real, Kind::socket}) {
      const FileQuestion question{kind, path, path == file ? 100'009U : 3U};
      const FileAnswer answer = files.ask(question);
      EXPECT_EQ(answer, direct.ask(question)) << path << static_cast<int>(kind);
      if (answer) ++found;
    }
  }
  EXPECT_EQ(found, 6 + 6 + 2 + 6 + 4 + 5 + 4) << "what is no folder has an empty list of names";
  EXPECT_EQ(files.volume(folder_.path()).value().blocks, direct.volume(folder_.path()).value().blocks);
  for (const std::string& nowhere : Strings{"usr", std::string(9'000, '/')})
    EXPECT_EQ(files.ask({Kind::exists, nowhere}), std::nullopt) << "relative to whose folder?";
  EXPECT_EQ(files.misses(), 0U);
}

TEST_F(GuardedFilesTest, FilesAreReplacedAsTheyAreFound) {
  GuardedFiles files(TARNWICK_PROGRAM, clock_, limits_);
  const std::string old = folder_.write("sub/old", "old");
  fs::permissions(old, fs::perms(0640));
  const std::string large(3'000'000, 'x');
  fs::create_symlink("sub/old", folder_.at("link"));
  fs::create_symlink("sub/new", folder_.at("dangling"));
  pipeAt(folder_.at("pipe"));
  for (const char* name : {"link", "dangling", "sub/other"}) {
    EXPECT_TRUE(files.replaceFile(folder_.at(name), large)) << name;
    EXPECT_EQ(textOfFile(folder_.at(name)), large) << name;
  }
  for (const char* name : {"sub", "pipe", "no/file"})
    EXPECT_FALSE(files.replaceFile(folder_.at(name), large)) << name;
  EXPECT_TRUE(fs::is_symlink(folder_.at("link")) && fs::is_symlink(folder_.at("dangling")));
  EXPECT_EQ(fs::status(old).permissions(), fs::perms(0640));
  EXPECT_TRUE(files.removeFile(folder_.at("sub/other")) && files.makeFolder(folder_.at("a/b")));
  EXPECT_FALSE(files.removeFile(folder_.at("sub/other")) || files.makeFolder(old));
  EXPECT_THAT(folderEntries(folder_.at("sub")), UnorderedElementsAre("old", "new"));
}

// Whoever wants a file replaced is ended at some moment of it; the settings of the panel, and its picture.
TEST_F(GuardedFilesTest, WhatIsBegunIsFinishedAfterTheEndOfWhoeverWantedIt) {
  const std::string small(1'000'000, 'a');
  const std::string large(2'000'000, 'b');
  const std::string file = folder_.write("folder/file", small);
  for (int round = 0; round < 30; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      GuardedFiles files(TARNWICK_PROGRAM, clock_, limits_);
      for (bool grows = true;; grows = !grows) files.replaceFile(file, grows ? large : small);
    }
    ChildProcess wants = ChildProcess::adopt(child);
    ::usleep(static_cast<useconds_t>(4'000 + 700 * round));
    wants.killed();
  }
  EXPECT_TRUE(waitUntil([&] { return folderEntries(folder_.at("folder")) == Strings{"file"}; }));
  EXPECT_THAT(textOfFile(file), testing::AnyOf(small, large));
}

TEST_F(GuardedFilesTest, WhoeverDoesNotAnswerIsAbandonedAndItsFolderLeftAloneForTheCheck) {
  GuardedFiles files(worker("exec sleep 4"), clock_, limits_);  // one that was waited for would have ended
  const auto ask = [&](const std::string& path) { return files.pathExists(folder_.at(path)); };
  limits_.begin();
  EXPECT_FALSE(ask("a/.git"));
  EXPECT_THAT(limits_.leftOut(), ElementsAre(folder_.at("a")));
  EXPECT_FALSE(ask("a/.git") || ask("a/b/script.py") || files.mayVisit(folder_.at("a")));
  EXPECT_EQ(starts(), 1) << "nobody else is sent there";
  EXPECT_TRUE(files.mayVisit(folder_.at("ab")) && !ask("ab/.git"));
  EXPECT_EQ(starts(), 2);
  EXPECT_EQ(files.misses(), 5U);

  clock_.turn(8);
  EXPECT_FALSE(ask("c/.git"));
  EXPECT_EQ(starts(), 2) << "there is no time left";
  limits_.begin();
  EXPECT_FALSE(ask("a/.git"));
  EXPECT_EQ(starts(), 3) << "a disk of this machine was only slow";
}

TEST_F(GuardedFilesTest, AListOfMountsIsGoodForHalfAMinute) {
  GuardedFiles nobody(folder_.at("missing"), clock_, limits_);
  HomeFiles files(nobody, clock_, Strings{folder_.path()});
  for (const auto& [seconds, local] : {std::pair(0.0, false), {30.0, false}, {1.0, true}}) {
    clock_.turn(seconds);
    EXPECT_EQ(files.isDirectory(folder_.path()), local) << seconds;
  }
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
