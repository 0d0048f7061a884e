// A file system of our own that stops answering when it is told to, spoken over /dev/fuse. Its only folder is
// its root, whose list of names breaks off behind the first. Mounted where only this thread, and whoever it
// starts from then on, can see it. Takes root.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/support/testing.h"

namespace tarnwick {

class FuseMount {
 public:
  enum class Kind {
    stopped,    // nobody takes the questions
    swallowing  // they are taken and never answered: not even a kill ends whoever asked
  };

  FuseMount(const std::string& folder, Kind kind) : kind_(kind) {
    device_ = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options =
        "fd=" + std::to_string(device_) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
    mounted_ = device_ >= 0 && ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("dead", folder.c_str(), "fuse.dead", MS_NOSUID | MS_NODEV, options.c_str()) == 0;
    if (mounted_) server_ = std::thread([this] { serve(); });
  }
  // Closing the device fails every question that still waits.
  ~FuseMount() {
    over_ = true;
    if (server_.joinable()) server_.join();
    if (device_ >= 0) ::close(device_);
  }
  FuseMount(FuseMount&&) = delete;  // nor copied

  bool isMounted() const { return mounted_; }

  // From now on nothing is answered, until so many seconds have passed: then everything fails, so that a
  // program that hangs does not do so for ever.
  void die(double seconds) {
    diesUntil_ =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
    dead_ = true;
  }

  // How many questions were taken since it died, the kernel's word that one is not wanted any more left out.
  int swallowed() const { return swallowed_; }

 private:
  void serve() {
    while (!over_) {
      if (dead_ && std::chrono::steady_clock::now() > diesUntil_) {
        ::close(std::exchange(device_, -1));
        return;
      }
      pollfd one{device_, POLLIN, 0};
      if ((dead_ && kind_ == Kind::stopped) || ::poll(&one, 1, 20) <= 0) {
        ::usleep(dead_ ? 20'000 : 0);
        continue;
      }
      const ssize_t got = ::read(device_, question_.data(), question_.size());
      if (got < static_cast<ssize_t>(sizeof(fuse_in_header))) continue;
      fuse_in_header head{};
      std::memcpy(&head, question_.data(), sizeof head);
      if (!dead_) {
        answer(head);
      } else if (head.opcode != FUSE_INTERRUPT) {
        ++swallowed_;
      }
    }
  }

  void answer(const fuse_in_header& head) {
    fuse_init_out init{.major = FUSE_KERNEL_VERSION, .minor = FUSE_KERNEL_MINOR_VERSION, .max_write = 4'096};
    fuse_attr_out attributes{.attr = {.ino = 1, .mode = S_IFDIR | 0755U, .nlink = 2}};
    if (head.opcode == FUSE_FORGET || head.opcode == FUSE_BATCH_FORGET) return;
    if (head.opcode == FUSE_INIT) return reply(head, 0, &init, sizeof init);
    if (head.opcode == FUSE_GETATTR) return reply(head, 0, &attributes, sizeof attributes);
    if (head.opcode == FUSE_READDIR) return list(head);
    reply(head, head.opcode == FUSE_LOOKUP ? -ENOENT : -ENOSYS, nullptr, 0);
  }

  void list(const fuse_in_header& head) const {
    fuse_read_in asked{};
    std::memcpy(&asked, question_.data() + sizeof head, sizeof asked);
    alignas(8) std::array<char, FUSE_NAME_OFFSET + 8> entry{};
    const fuse_dirent only{.ino = 2, .off = 1, .namelen = 1, .type = DT_DIR};
    std::memcpy(entry.data(), &only, FUSE_NAME_OFFSET);
    entry[FUSE_NAME_OFFSET] = '7';
    reply(head, asked.offset == 0 ? 0 : -EIO, entry.data(), asked.offset == 0 ? entry.size() : 0);
  }

  void reply(const fuse_in_header& question, int error, void* body, std::size_t bytes) const {
    fuse_out_header head{.len = static_cast<std::uint32_t>(sizeof(fuse_out_header) + bytes),
                         .error = error,
                         .unique = question.unique};
    const std::array<iovec, 2> parts{{{&head, sizeof head}, {body, bytes}}};
    EXPECT_GE(::writev(device_, parts.data(), bytes == 0 ? 1 : 2), 0) << std::strerror(errno);
  }

  const Kind kind_;
  bool mounted_ = false;
  int device_ = -1;
  std::array<char, 65'536> question_{};
  std::atomic<bool> over_ = false;
  std::atomic<bool> dead_ = false;
  std::atomic<int> swallowed_ = 0;
  std::chrono::steady_clock::time_point diesUntil_;
  std::thread server_;
};

}  // namespace tarnwick
