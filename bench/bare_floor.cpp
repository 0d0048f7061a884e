// The fair floor beside a whole check: a bare program that makes the same system calls for the same
// processes and nothing else, neither lists nor texts.
//   bare_floor
// looks at every process's clock, rests a second as a check does, then asks of each of the caller's
// processes what a check asks: owner, stat, clock once more, statm, command line, executable and working
// directory. Prints how many processes that were; its cost is for the caller to measure.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

constexpr int openFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

std::array<char, 131'072> buffer;  // as large as the longest command line that a check takes

std::vector<pid_t> listProcesses(DIR* folder) {
  std::vector<pid_t> all;
  while (const dirent* entry = readdir(folder)) {
    const char* const end = std::find(entry->d_name, entry->d_name + sizeof entry->d_name, '\0');
    pid_t pid = 0;
    if (std::from_chars(entry->d_name, end, pid).ptr == end) all.push_back(pid);
  }
  return all;
}

// The clock of a whole process, as the kernel names it.
bool readClock(pid_t pid) {
  timespec time{};
  return clock_gettime(static_cast<clockid_t>((~static_cast<std::uint32_t>(pid) << 3U) | 2U), &time) == 0;
}

void readFile(int folder, const char* name) {
  const int file = openat(folder, name, openFlags);
  if (file < 0) return;
  [[maybe_unused]] const ssize_t count = read(file, buffer.data(), buffer.size());
  close(file);
}

void readLink(int folder, const char* name) {
  [[maybe_unused]] const ssize_t length = readlinkat(folder, name, buffer.data(), 4096);
}

// False for a process of somebody else, or one that has ended.
bool lookAt(int proc, pid_t pid, uid_t uid) {
  std::array<char, 16> name{};
  std::to_chars(name.data(), name.data() + name.size() - 1, pid);
  const int folder = openat(proc, name.data(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return false;
  struct stat info {};
  const bool mine = fstat(folder, &info) == 0 && info.st_uid == uid;
  if (mine) {
    readFile(folder, "stat");
    readClock(pid);
    readFile(folder, "statm");
    readLink(folder, "exe");
    readFile(folder, "cmdline");
    readLink(folder, "cwd");
  }
  close(folder);
  return mine;
}

}  // namespace

int main() {
  DIR* const folder = opendir("/proc");
  if (folder == nullptr) return 1;
  const std::vector<pid_t> processes = listProcesses(folder);
  for (const pid_t pid : processes) readClock(pid);
  sleep(1);
  const uid_t uid = getuid();
  const auto looked = std::count_if(processes.begin(), processes.end(),
                                    [&](pid_t pid) { return lookAt(dirfd(folder), pid, uid); });
  std::printf("%td\n", looked);
  return 0;
}
