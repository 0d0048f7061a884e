#include "system/posix/private_folder.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

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
  std::filesystem::create_directory(folder);
  for (const mode_t mode : {0700U, 0755U, 0770U, 0701U, 01700U, 0500U}) {
    ASSERT_EQ(::chmod(folder.c_str(), mode), 0);
    EXPECT_EQ(PrivateFolder::open(folder).has_value(), mode == 0700U) << std::oct << mode;
  }
  ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
  std::filesystem::create_symlink(folder, parent.at("link"));
  const std::string file = parent.write("file", "");
  ASSERT_EQ(::chmod(file.c_str(), 0700), 0);
  for (const std::string& other :
       {parent.at("link"), file, parent.at("none"), std::string("."), std::string()})
    EXPECT_FALSE(PrivateFolder::open(other)) << other;
  if (::chown(folder.c_str(), stranger, 0) == 0) {
    EXPECT_FALSE(PrivateFolder::open(folder));
  }
}

TEST(PrivateFolder, ALockIsOneFileOfTheUsersOwn) {
  const TempFolder place;
  const auto folder = PrivateFolder::open(place.path());
  ASSERT_TRUE(folder);
  ASSERT_EQ(::chmod(place.write("open", "").c_str(), 0666), 0);
  for (const char* name : {"new", "open"}) {
    const auto held = folder->lock(name);
    EXPECT_EQ(held.state, State::held) << name;
    EXPECT_EQ(folder->lock(name).state, State::elsewhere) << name;
    EXPECT_EQ(std::filesystem::status(place.at(name)).permissions(), std::filesystem::perms(0600)) << name;
  }
  EXPECT_EQ(folder->lock("new").state, State::held) << "let go of, it can be had again";

  ASSERT_EQ(::mkfifo(place.at("pipe").c_str(), 0600), 0);
  makeSocket(place.at("socket"), 0600);
  std::filesystem::create_directory(place.at("folder"));
  std::filesystem::create_symlink(place.at("new"), place.at("link"));
  std::filesystem::create_symlink(place.at("target"), place.at("dangling"));
  for (const char* name : {"pipe", "socket", "folder", "link", "dangling"})
    EXPECT_EQ(folder->lock(name).state, State::refused) << name;
  EXPECT_FALSE(std::filesystem::exists(place.at("target")));
  if (::chown(place.at("new").c_str(), stranger, 0) == 0) {
    EXPECT_EQ(folder->lock("new").state, State::refused);
  }
}

TEST(PrivateFolder, ASocketIsTheUsersOwn) {
  const TempFolder place;
  const auto folder = PrivateFolder::open(place.path());
  ASSERT_TRUE(folder);
  makeSocket(place.at("own"), 0700);
  makeSocket(place.at("open"), 0777);
  place.write("file", "");
  std::filesystem::create_symlink(place.at("own"), place.at("link"));
  for (const char* name : {"own", "open", "file", "link", "none"})
    EXPECT_EQ(folder->hasSocket(name), name == std::string("own")) << name;
  if (::chown(place.at("own").c_str(), stranger, 0) == 0) {
    EXPECT_FALSE(folder->hasSocket("own"));
  }
}

}  // namespace
}  // namespace tarnwick
