#include "system/check_limits.h"

#include "system/mounts.h"
#include "tests/support/fake_clock.h"
#include "tests/support/testing.h"

namespace {

TEST(CheckLimits, ACheckHasEightSecondsAndItsPartsHaveNoMore) {
  FakeClock clock;
  CheckLimits limits(clock);
  EXPECT_TRUE(std::isinf(limits.deadline().left())) << "between checks nothing is hurried";
  limits.begin();
  const Deadline copy = limits.deadline();
  // Turned by, left of the check, left of a part of three seconds, passed.
  const std::tuple<double, double, double, bool> cases[] = {{0, 8, 3, false},
                                                            {5.5, 2.5, 2.5, false},
                                                            {2.25, 0.25, 0.25, false},
                                                            {0.25, 0, 0, true},
                                                            {9, 0, 0, true}};
  for (const auto& [seconds, left, part, passed] : cases) {
    clock.turn(seconds);
    EXPECT_EQ(std::tuple(copy.left(), limits.within(3).left(), copy.passed()),
              std::tuple(left, part, passed));
  }
  limits.end();
  EXPECT_EQ(limits.within(3).left(), 3);
  limits.begin();
  EXPECT_EQ(limits.deadline().left(), 8);
}

TEST(CheckLimits, WhoIsLeftOutIsNamedOnceInEachCheckAndCountedAlways) {
  FakeClock clock;
  CheckLimits limits(clock);
  limits.begin();
  for (const char* who : {"git", "gh", "git"}) limits.leaveOut(who);
  EXPECT_THAT(limits.leftOut(), ElementsAre("git", "gh"));
  limits.end();
  EXPECT_THAT(limits.leftOut(), SizeIs(2)) << "it is read after the check";
  limits.begin();
  EXPECT_THAT(limits.leftOut(), IsEmpty());
  EXPECT_EQ(limits.misses(), 3U);
}

TEST(Mounts, AreReadFromTheKernelsList) {
  const char* const list =
      "27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n"
      "30 27 0:25 / /mnt/a\\040b\\134 rw shared:1 master:2 - fuse.sshfs me@host rw\n"
      "31 27 0:26 / /home rw - autofs auto rw\n"
      "torn line\n"
      "32 31 0:27 /x /home rw shared:3 - nfs4 host:/x rw\n"
      "33 27 0:28 / /homes rw - tmpfs none rw\n"
      "34 32 0:29 / /home/me/disk rw - xfs /dev/sdb rw";
  const std::vector<Mount> all = mountsIn(list);
  EXPECT_EQ(distantIn(list), distantPoints(all));
  EXPECT_EQ(distantIn("torn line\n"), std::nullopt);
  EXPECT_THAT(all, SizeIs(6));
  const std::tuple<const char*, const char*, const char*, bool> cases[] = {
      // path, the mount that holds it, its kind, local
      {"/", "/", "ext4", true},
      {"/mnt/a b\\/x", "/mnt/a b\\", "fuse.sshfs", false},
      {"/mnt/a b", "/", "ext4", true},
      {"/home", "/home", "nfs4", false},
      {"/home/me", "/home", "nfs4", false},
      {"/homes/me", "/homes", "tmpfs", true},
      {"/home/me/disk/x", "/home/me/disk", "xfs", false}};  // the way to it is not
  for (const auto& [path, point, kind, local] : cases) {
    const Mount& mount = *mountOf(path, all);
    EXPECT_EQ(std::tuple(mount.point, mount.kind, isLocal(path, all)), std::tuple(point, kind, local))
        << path;
  }
  EXPECT_EQ(mountOf("relative", all), nullptr);
  EXPECT_FALSE(isLocal("/", {})) << "nothing is known";
}

}  // namespace
