#include "context/git_files.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(GitFiles, HeadNamesABranchOrACommit) {
  const std::pair<std::string, std::string> cases[] = {
      {"ref: refs/heads/main\n", "main"},
      {"  ref: refs/heads/feature/a b \r\n", "feature/a b"},
      {"ref: refs/heads/caf\xC3\xA9\xFF\n", "caf\xC3\xA9\xEF\xBF\xBD"},
      {"0123456789abcdef0123456789abcdef01234567\n", "0123456"},
      {"ref: refs/remotes/origin/x\n", "ref: re"},
      {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9",
       "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"},
      {"", ""},
  };
  for (const auto& [head, branch] : cases) EXPECT_EQ(branchFrom(head), branch) << head;
}

TEST(GitFiles, AMarkerFilePointsToTheGitDirectory) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"gitdir: /a/.git/worktrees/w\n", "/a/.git/worktrees/w"},
      {"\n gitdir: ../a/./.git/modules/m \r\n", "/home/me/a/.git/modules/m"},
      {"gitdir: ../../../../../x", "/x"},
      {"gitdir:/a/.git", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [marker, directory] : cases) {
    EXPECT_EQ(gitDirectoryFrom(marker, "/home/me/work"), directory) << marker;
  }
}

TEST(GitFiles, TheCommonDirectoryIsResolvedAgainstTheGitDirectory) {
  const std::string gitDirectory = "/r/.git/worktrees/w";
  EXPECT_EQ(commonDirectoryFrom("../..\n", gitDirectory), "/r/.git/");
  EXPECT_EQ(commonDirectoryFrom("/elsewhere/.git\n", gitDirectory), "/elsewhere/.git");
  EXPECT_EQ(commonDirectoryFrom(" \n", gitDirectory), gitDirectory);
}

TEST(GitFiles, TheFirstAddressOfOriginIsTaken) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"[core]\n\tbare = false\n[remote \"origin\"]\n\turl = https://h/o/r.git\n\tfetch = +x\n",
       "https://h/o/r.git"},
      {"[remote \"up\"]\nurl = a\n[remote \"origin\"]\n  url=b=c \n  url = d\n[x]\nurl = e", "b=c"},
      {"[remote \"origin\"]\r\n\r\n\turl = win\r\n", "win"},
      {"[remote \"origin\"]\n[branch \"x\"]\nurl = wrong\n[remote \"origin\"]\nurl = again", "again"},
      {"[remote \"origin\"] # note\nurl = a", std::nullopt},
      {"[remote \"origin\"]\npushurl = a\nurls = b\n", "b"},
      {"[remote \"origin\"]\nurl\nurl = later", std::nullopt},
      {"[remote \"origin\"]\nurl = caf\xE9", "caf\xEF\xBF\xBD"},
      {"", std::nullopt},
  };
  for (const auto& [config, url] : cases) EXPECT_EQ(originUrl(config), url) << config;
}

TEST(GitFiles, AnAddressNamesTheRepositoryAndItsOwner) {
  const std::tuple<std::string, std::string, std::optional<std::string>> cases[] = {
      {"https://github.com/owner/name.git", "name", "owner/name"},
      {"git@github.com:owner/name.git", "name", "owner/name"},
      {"ssh://git@github.com:22/owner/na.me", "na.me", "owner/na.me"},
      {"ssh://git@ssh.github.com:443/owner/name.git", "name", "owner/name"},
      {"github.com:name", "name", "github.com/name"},
      {"github.com", "github.com", std::nullopt},
      {"https://gitlab.com/owner/name.git", "name", std::nullopt},
      {"host:path/name.git.git", "name.git", std::nullopt},
      {"https://github.com/owner/.git", "", std::nullopt},
      {"", "", std::nullopt},
  };
  for (const auto& [url, repo, slug] : cases) {
    EXPECT_EQ(remoteParts(url).repo, repo) << url;
    EXPECT_EQ(remoteParts(url).slug, slug) << url;
  }
  EXPECT_EQ(folderName("/a/b"), "b");
  EXPECT_EQ(folderName("/a/b//"), "b");
  EXPECT_EQ(folderName("/"), "");
}

}  // namespace
}  // namespace tarnwick
