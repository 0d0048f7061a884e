#include "system/small_file.h"

#include <sys/stat.h>

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

TEST(SmallFile, IsReadUpToItsLimitAndHeadAndTailAreCutThere) {
  const TempFolder folder;
  for (const std::string& bytes : {std::string("caf\xC3\xA9 \xFF\0 end", 12), std::string(100'000, 'x')}) {
    folder.write("whole", bytes);  // the second larger than any buffer on the way
    EXPECT_EQ(readSmallFile(folder.at("whole"), bytes.size()), bytes);
    EXPECT_EQ(readSmallFile(folder.at("whole"), bytes.size() - 1), std::nullopt);
  }
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
  const std::string pipe = folder.at("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
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
  EXPECT_TRUE(folderEntries(folder.path()).empty());
  folder.write("one", "");
  folder.write(".hidden/inner", "");
  EXPECT_THAT(folderEntries(folder.path()), UnorderedElementsAre("one", ".hidden"));
  EXPECT_TRUE(folderEntries(folder.at("missing")).empty());
}

// Under one name, now a file and now a pipe without a writer, which would read as an empty file.
TEST(SmallFile, OneThatTurnsIntoAPipeBetweenLookAndOpenIsNotRead) {
  const TempFolder folder;
  folder.write("file", "text");
  ASSERT_EQ(::mkfifo(folder.at("pipe").c_str(), 0600), 0);
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

}  // namespace
}  // namespace tarnwick
