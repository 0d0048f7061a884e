#include "sampling/tools/small_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

TEST(SmallFile, IsReadUpToItsLimitAndNotBeyond) {
  const TempFolder folder;
  const std::string bytes("caf\xC3\xA9 \xFF\0 end", 12);
  const std::string path = folder.write("file", bytes);
  EXPECT_EQ(readSmallFile(path, bytes.size()), bytes);
  EXPECT_EQ(readSmallFile(path, bytes.size() - 1), std::nullopt);
  // Larger than any buffer on the way.
  const std::string large(100'000, 'x');
  EXPECT_EQ(readSmallFile(folder.write("large", large), large.size()), large);
}

TEST(SmallFile, HeadAndTailAreCutAtTheirByteCount) {
  const TempFolder folder;
  const std::string path = folder.write("file", "0123456789");
  EXPECT_EQ(readFileHead(path, 4), "0123");
  EXPECT_EQ(readFileTail(path, 4), "6789");
  for (const std::size_t bytes : {10U, 11U}) {
    EXPECT_EQ(readFileHead(path, bytes), "0123456789");
    EXPECT_EQ(readFileTail(path, bytes), "0123456789");
  }
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
    EXPECT_EQ(readSmallFile(path, 100), std::nullopt) << path;
    EXPECT_EQ(readFileHead(path, 100), std::nullopt) << path;
    EXPECT_EQ(readFileTail(path, 100), std::nullopt) << path;
    EXPECT_FALSE(isRegularFile(path)) << path;
  }
  EXPECT_TRUE(pathExists(pipe));
  EXPECT_FALSE(pathExists(folder.at("dangling")));
  EXPECT_FALSE(pathExists(cutShort));
  EXPECT_TRUE(pathExists(folder.path()));
  EXPECT_TRUE(isDirectory(folder.path()));
  EXPECT_FALSE(isDirectory(file));
  EXPECT_TRUE(isRegularFile(file));
}

TEST(SmallFile, FoldersListTheirNames) {
  const TempFolder folder;
  EXPECT_TRUE(folderEntries(folder.path()).empty());
  folder.write("one", "");
  folder.write(".hidden/inner", "");
  EXPECT_THAT(folderEntries(folder.path()), testing::UnorderedElementsAre("one", ".hidden"));
  EXPECT_TRUE(folderEntries(folder.at("missing")).empty());
}

}  // namespace
}  // namespace tarnwick
