// The one owner of what the kernel hands out by number or handle: open files, folders, sockets, pipes,
// process handles. It closes what it holds; moving passes that on.
#pragma once

#include <dirent.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <span>
#include <utility>

namespace tarnwick {

class Descriptor {
 public:
  // Takes over an open descriptor; a negative number, the system's word for failure, is not open.
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }  // below 0 when not open
  void close() {
    if (isOpen()) ::close(std::exchange(number_, -1));
  }

  // One read, begun anew when a signal interrupts it. The number of bytes; 0 at the end, below 0 on failure,
  // with the reason in errno.
  ssize_t read(std::span<char> buffer) const {
    ssize_t count = -1;
    do {
      count = ::read(number_, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count;
  }

 private:
  int number_;
};

struct FolderCloser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// A folder whose entries are read.
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

}  // namespace tarnwick
