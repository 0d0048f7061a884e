// The git reader on real repositories, friendly and hostile ones.
#include "context/git_reader.h"

#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/fake_clock.h"
#include "tests/support/posix/git_world.h"

namespace {

namespace fs = std::filesystem;

struct GitReaderTest : testing::Test {
  void SetUp() override {
    ::unsetenv("TARNWICK_NO_TOOLS");
    ::setenv("LC_ALL", "C", 1);                         // git's words in one language
    ::setenv("HOME", world_.folder.path().c_str(), 1);  // nothing of this machine's own configuration
    ::unsetenv("XDG_CONFIG_HOME");
    if (!world_.places.gitBin()) GTEST_SKIP() << "this machine has no git";
  }

  // Empty members where nothing could be read.
  Git read(const std::string& dir) {
    const auto git = reader_.readGit(dir);
    EXPECT_TRUE(git) << dir;
    return git.value_or(Git{});
  }

  GitWorld world_;
  FakeClock clock_;
  DirectFiles files_;
  GitReader reader_{world_.runner,       world_.places, clock_, files_, world_.folder.at("home"),
                    [] { return false; }};
};

TEST_F(GitReaderTest, AMainCheckoutOnABranchAndDetached) {
  const std::string dir = world_.repository("shop", "Add \"cart\" caf\xC3\xA9");
  Git git = read(dir);
  EXPECT_THAT(git.lastCommitAgo, EndsWith(" ago"));
  EXPECT_EQ(git, (Git{"shop", "main", "Add \"cart\" caf\xC3\xA9", git.lastCommitAgo, false, std::nullopt}));
  world_.git(dir, {"remote", "add", "origin", "git@github.com:acme/web-shop.git"});
  world_.git(dir, {"checkout", "-q", "-b", "fix/cart"});
  git = read(dir);
  EXPECT_EQ(std::tie(git.repo, git.slug, git.branch), std::tuple("web-shop", "acme/web-shop", "fix/cart"));

  world_.git(dir, {"checkout", "-q", "--detach"});
  EXPECT_EQ(read(dir).branch, world_.git(dir, {"rev-parse", "HEAD"}).substr(0, 7));
  EXPECT_EQ(reader_.readGit(world_.folder.path()), std::nullopt);
}

TEST_F(GitReaderTest, ALinkedWorkTreeIsACopyAndASubmoduleHasItsOwnOrigin) {
  const std::string dir = world_.repository("shop", "First");
  world_.git(dir, {"remote", "add", "origin", "https://github.com/acme/web-shop"});
  const std::string copy = world_.folder.at("elsewhere/copy");
  world_.git(dir, {"worktree", "add", "-q", "-b", "side", copy});
  world_.git(copy, {"commit", "-q", "--allow-empty", "-m", "On the side"});
  Git git = read(copy);
  EXPECT_EQ(git, (Git{"web-shop", "side", "On the side", git.lastCommitAgo, true, "acme/web-shop"}));

  const std::string inner = world_.repository("inner", "Inner");
  world_.git(dir, {"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", inner, "part"});
  git = read(dir + "/part");
  EXPECT_EQ(std::tie(git.repo, git.lastCommit, git.isCopy), std::tuple("inner", "Inner", true));
}

TEST_F(GitReaderTest, AnEmptyMarkerFolderIsNotTheRepositoryAboveIt) {
  const std::string inner = world_.repository("outer", "Secret of the parent") + "/inner";
  fs::create_directories(inner + "/.git");
  EXPECT_EQ(read(inner), (Git{"inner", "", "", "", false, std::nullopt}));
  world_.folder.write("outer/pointing/.git", "gitdir: ../inner/.git");
  EXPECT_EQ(read(world_.folder.at("outer/pointing")).lastCommit, "");
}

TEST_F(GitReaderTest, GitDoesNotReadOurInput) {
  const std::string dir = world_.repository("shop", "First");
  world_.git(dir, {"config", "include.path", "/dev/stdin"});
  std::array<int, 2> input{};
  ASSERT_EQ(::pipe(input.data()), 0);
  const int before = ::dup(STDIN_FILENO);
  ::dup2(input[0], STDIN_FILENO);
  const std::string typed = "[user]\n\tname = typed\n";
  EXPECT_EQ(::write(input[1], typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  ::close(input[1]);
  EXPECT_EQ(read(dir).lastCommit, "First");
  std::string left(100, '\0');
  left.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(input[0], left.data(), left.size()), 0)));
  EXPECT_EQ(left, typed);
  ::dup2(before, STDIN_FILENO);
  for (const int end : {before, input[0]}) ::close(end);
}

TEST_F(GitReaderTest, WordsComeInEnglishAndSubjectsInUtf8AndWithAnEnd) {
  const std::string dir = world_.repository("shop", "First");
  world_.git(dir, {"config", "i18n.commitEncoding", "ISO-8859-1"});
  world_.git(dir, {"commit", "-q", "--allow-empty", "-F", world_.folder.write("subject", "Caf\xE9\n")});
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::setenv("LANGUAGE", "de", 1);
  const Git git = read(dir);
  ::unsetenv("LANGUAGE");
  EXPECT_THAT(git.lastCommitAgo, EndsWith(" ago"));
  EXPECT_EQ(git.lastCommit, "Café");
  world_.folder.write("subject", std::string(70'000, 's'));
  world_.git(dir, {"commit", "-q", "--allow-empty", "-F", world_.folder.at("subject")});
  EXPECT_EQ(read(dir).lastCommit, "");
}

// As git itself, where it finds the repository by searching.
TEST_F(GitReaderTest, SomebodyElsesRepositoryIsNotAskedAbout) {
  const std::string dir = world_.repository("shop", "First");
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to give files away";
  for (const std::string& theirs : {dir, dir + "/.git"}) {
    ASSERT_EQ(::chown(theirs.c_str(), 65'534, 65'534), 0);
    const Git git = read(dir);
    EXPECT_EQ(std::tie(git.branch, git.lastCommit), std::tuple("main", "")) << theirs;
    ASSERT_EQ(::chown(theirs.c_str(), ::geteuid(), 0), 0);
  }
  EXPECT_EQ(read(dir).lastCommit, "First");
}

TEST_F(GitReaderTest, GhGetsNamesAndNoOtherHost) {
  const std::string log = world_.folder.at("log");
  ToolCandidates tools;
  tools.gh = {world_.folder.script("gh", "(printf '<%s> ' \"$@\"; cat; env) > " + log + "; echo Title")};
  ToolPlaces places(tools);
  GitReader asking(world_.runner, places, clock_, files_, "/home", [] { return true; });
  const char* others[] = {"GH_HOST", "GH_ENTERPRISE_TOKEN", "GITHUB_ENTERPRISE_TOKEN", "GH_REPO"};
  for (const char* name : others) ::setenv(name, "evil", 1);
  ::setenv("GH_TOKEN", "own", 1);
  EXPECT_EQ(asking.prTitle("acme/shop", "fix/cart"), "Title");
  for (const char* name : others) ::unsetenv(name);
  ::unsetenv("GH_TOKEN");
  const std::string seen = textOfFile(log);
  EXPECT_THAT(
      seen, StartsWith("<pr> <view> <--repo> <acme/shop> <--json> <title> <--jq> <.title> <--> <fix/cart> "));
  EXPECT_THAT(seen, AllOf(Not(HasSubstr("evil")), HasSubstr("GH_TOKEN=own")));
}

TEST_F(GitReaderTest, NeitherOurOwnEnvironmentNorAWorkTreeElsewhereRedirectsGit) {
  const std::string dir = world_.repository("shop", "Right");
  ASSERT_EQ(::mkfifo((dir + "/.mailmap").c_str(), 0600), 0);  // nor does the work tree's map of names
  const std::string other = world_.repository("other", "Wrong");
  const std::string trace = world_.folder.at("trace");
  const std::pair<const char*, std::string> variables[] = {
      {"GIT_DIR", other + "/.git"},
      {"GIT_TRACE", trace},
      {"GIT_CONFIG_PARAMETERS", "'log.showsignature=true'"}};
  for (const auto& [name, value] : variables) ::setenv(name, value.c_str(), 1);
  const Git git = read(dir);
  for (const auto& [name, value] : variables) ::unsetenv(name);
  EXPECT_EQ(git.lastCommit, "Right");
  EXPECT_FALSE(fs::exists(trace));
  world_.git(dir, {"config", "core.worktree", "../../gone"});
  EXPECT_EQ(read(dir).lastCommit, "Right");
}

// A repository whose configuration names a program for every occasion; the program leaves a mark.
struct HostileRepositoryTest : GitReaderTest {
  void SetUp() override {
    GitReaderTest::SetUp();
    if (IsSkipped()) return;
    program_ = world_.folder.script("program", "echo \"$@\" >> " + mark_ + "; exit 1");
    dir_ = world_.repository("hostile", "Signed");
  }

  void configure(const std::vector<std::pair<std::string, std::string>>& settings) {
    for (const auto& [key, value] : settings) world_.git(dir_, {"config", key, value});
  }

  // Does git, run without protection, start the program? If not, the test would prove nothing.
  bool plainGitStartsIt() {
    world_.run(dir_, {"log", "-1", "--format=%cr%n%s"});
    return fs::remove(mark_);
  }

  std::string mark_ = world_.folder.at("mark");
  std::string program_;
  std::string dir_;
};

TEST_F(HostileRepositoryTest, NoSignatureIsChecked) {
  const std::string commit = world_.git(dir_, {"cat-file", "commit", "HEAD"});
  const std::size_t blank = commit.find("\n\n");
  const std::string signature = "\ngpgsig -----BEGIN PGP SIGNATURE-----\n \n x\n -----END PGP SIGNATURE-----";
  const std::string file =
      world_.folder.write("signed", commit.substr(0, blank) + signature + commit.substr(blank) + "\n");
  const std::string id = world_.git(dir_, {"hash-object", "-t", "commit", "-w", file});
  world_.git(dir_, {"update-ref", "HEAD", id});
  configure({{"log.showSignature", "true"},
             {"gpg.program", program_},
             {"core.fsmonitor", program_},
             {"alias.log", "!" + program_}});
  ASSERT_TRUE(plainGitStartsIt());
  EXPECT_EQ(read(dir_).lastCommit, "Signed");
  EXPECT_FALSE(fs::exists(mark_));
}

TEST_F(HostileRepositoryTest, NoMissingCommitIsFetched) {
  const std::string id = world_.git(dir_, {"rev-parse", "HEAD"});
  fs::remove(dir_ + "/.git/objects/" + id.substr(0, 2) + "/" + id.substr(2));
  configure({{"core.repositoryFormatVersion", "1"},
             {"extensions.partialClone", "origin"},
             {"remote.origin.promisor", "true"},
             {"remote.origin.url", world_.folder.path()},
             {"remote.origin.uploadpack", program_},
             {"protocol.allow", "always"}});
  ASSERT_TRUE(plainGitStartsIt());
  EXPECT_EQ(read(dir_).lastCommit, "");
  EXPECT_FALSE(fs::exists(mark_));

  configure({{"remote.origin.url", "ext::" + program_ + " %S"}});
  ASSERT_TRUE(plainGitStartsIt());
  EXPECT_EQ(read(dir_).branch, "main");
  EXPECT_FALSE(fs::exists(mark_));
}

}  // namespace
