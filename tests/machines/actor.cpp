// Plays any program of a made machine, copied to that program's path. Its words are carried out in order, and
// words that it does not know are ignored, so that real command lines can stand between them:
//   as=NAME            leaves its pid in the file NAME of the folder $MACHINE
//   listen=PORT        listens on TCP
//   alloc=MEGABYTES    holds that much memory of its own
//   workers=NUMBER     forks so many: what it holds by now is theirs too
//   share=MEGABYTES    holds a segment of shared memory, and its workers with it
//   burn=PERCENT       keeps one processor busy for that share of the time, from the end of the words on
//   subreaper          adopts orphans, as a user's service manager does
//   [ OPTIONS PATH WORD... ]  starts a program; nested ones are its own words. Options: pty (on a terminal of
//                      its own), setsid, cd=FOLDER, argv0=NAME, in=UNIT (in the control group $UNITS/UNIT),
//                      uid=USER
//   say=LINE           types a line into the youngest of its terminals
//   wait=NAME          waits for the file NAME
//   end                ends without waiting for anybody
//   engine=PATH:KIND   answers on that socket, as a bad engine does (see serve); never ends
//   measure=FILE PATH WORD...  carries the program out; FILE gets its status, seconds and peak in kilobytes
#include <fcntl.h>
#include <netinet/in.h>
#include <pty.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Words = std::vector<std::string>;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

void writeFile(const std::string& path, const std::string& text) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0 || ::write(file, text.data(), text.size()) < 0) std::perror(path.c_str());
  ::close(file);
}

void listenOn(int port) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener, 1) != 0)
    std::perror("listen");
}

// Whoever asks gets nothing, something else, no end, a byte now and then, no answer, or half of one.
void serve(const std::string& path, std::string_view kind) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener, 9) != 0)
    std::perror("engine");
  while (true) {
    const int asked = ::accept(listener, nullptr, nullptr);
    if (::fork() != 0) {
      ::close(asked);
      continue;
    }
    const std::string block = (kind == "huge" ? "HTTP/1.0 200 OK\r\n\r\n[" : "") +
                              std::string(65'536, kind == "huge" ? ' ' : '\xfe');
    if (kind == "garbage") (void)!::send(asked, block.data(), block.size(), MSG_NOSIGNAL);
    while (kind == "huge" && ::send(asked, block.data(), block.size(), MSG_NOSIGNAL) > 0) continue;
    while (kind == "slow" && ::send(asked, "H", 1, MSG_NOSIGNAL) > 0) ::usleep(100'000);
    if (kind == "dying") (void)!::send(asked, "HTTP/1.0 200 OK\r\n\r\n[{\"Id\":", 27, MSG_NOSIGNAL);
    while (kind == "hanging") ::pause();
    ::_exit(0);
  }
}

void measure(const std::string& file, char** words) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    ::execv(*words, words);
    ::_exit(127);
  }
  int status = 0;
  rusage used{};
  while (::wait4(child, &status, 0, &used) < 0) continue;
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start);
  writeFile(file, std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : 256) + " " +
                      std::to_string(seconds.count()) + " " + std::to_string(used.ru_maxrss) + "\n");
}

void burn(int percent) {
  using namespace std::chrono;
  while (true) {
    const auto start = steady_clock::now();
    while (steady_clock::now() < start + milliseconds(percent)) {
    }
    std::this_thread::sleep_until(start + milliseconds(100));
  }
}

class Actor {
 public:
  void play(const Words& words) {
    for (std::size_t at = 1; at < words.size(); ++at) {
      if (words[at] == "[") {
        at = startProgram(words, at + 1);
      } else {
        act(words[at]);
      }
    }
    if (percent_ > 0) burn(percent_);
    while (true) ::pause();
  }

 private:
  void act(std::string_view word) {
    const auto equals = word.find('=');
    const std::string_view verb = word.substr(0, equals);
    const std::string value(equals == std::string_view::npos ? "" : word.substr(equals + 1));
    const std::string file = variable("MACHINE") + "/" + value;
    if (verb == "as") writeFile(file + ".new", std::to_string(::getpid()));
    if (verb == "as") ::rename((file + ".new").c_str(), file.c_str());
    if (verb == "listen") listenOn(std::atoi(value.c_str()));
    if (verb == "alloc") hold(static_cast<std::size_t>(std::atoi(value.c_str())) << 20U);
    if (verb == "share") share(static_cast<std::size_t>(std::atoi(value.c_str())) << 20U);
    if (verb == "workers") startWorkers(std::atoi(value.c_str()));
    if (verb == "burn") percent_ = std::atoi(value.c_str());
    if (verb == "subreaper") ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    if (verb == "say" && ::write(terminal_, (value + "\n").data(), value.size() + 1) < 0) std::perror("say");
    while (verb == "wait" && ::access(file.c_str(), F_OK) != 0) ::usleep(2'000);
    if (verb == "end") ::_exit(0);
  }

  void hold(std::size_t bytes) { std::memset(std::malloc(bytes), 1, bytes); }

  void share(std::size_t bytes) {
    segment_ = static_cast<char*>(
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_POPULATE, -1, 0));
    segmentBytes_ = bytes;
  }

  // They are in the group and folder of their parent and touch every page of its segment, which is waited
  // for.
  void startWorkers(int number) {
    int done[2];
    if (::pipe2(done, O_CLOEXEC) != 0) std::perror("pipe");
    for (int worker = 0; worker < number; ++worker) {
      if (::fork() != 0) continue;
      for (std::size_t at = 0; at < segmentBytes_; at += 4096) segment_[at] = 1;
      ::close(done[1]);
      while (true) ::pause();
    }
    ::close(done[1]);
    char nothing = 0;
    if (::read(done[0], &nothing, 1) < 0) std::perror("workers");
    ::close(done[0]);
  }

  // Starts what stands from `first` to the matching bracket; where that bracket is.
  std::size_t startProgram(const Words& words, std::size_t first) {
    std::size_t last = first;
    for (int depth = 1; last < words.size(); ++last) {
      if (words[last] == "[") ++depth;
      if (words[last] == "]" && --depth == 0) break;
    }
    bool onTerminal = false;
    bool ownSession = false;
    std::string folder, unit, name;
    uid_t user = ::getuid();
    for (; first < last && words[first].front() != '/'; ++first) {
      const std::string& option = words[first];
      if (option == "pty") onTerminal = true;
      if (option == "setsid") ownSession = true;
      if (option.starts_with("cd=")) folder = option.substr(3);
      if (option.starts_with("in=")) unit = option.substr(3);
      if (option.starts_with("argv0=")) name = option.substr(6);
      if (option.starts_with("uid=")) user = static_cast<uid_t>(std::atoi(option.c_str() + 4));
    }
    const pid_t child = onTerminal ? ::forkpty(&terminal_, nullptr, nullptr, nullptr) : ::fork();
    if (child != 0) {
      if (onTerminal) ::fcntl(terminal_, F_SETFD, FD_CLOEXEC);
      return last;
    }
    if (ownSession) ::setsid();
    if (!folder.empty() && ::chdir(folder.c_str()) != 0) std::perror(folder.c_str());
    if (!unit.empty()) writeFile(variable("UNITS") + "/" + unit + "/cgroup.procs", "0");
    if (::setresuid(user, user, user) != 0) std::perror("setresuid");
    std::vector<char*> arguments;
    Words mine(words.begin() + static_cast<std::ptrdiff_t>(first),
               words.begin() + static_cast<std::ptrdiff_t>(last));
    const std::string path = mine.front();
    if (!name.empty()) mine.front() = name;
    for (std::string& word : mine) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(path.c_str(), arguments.data());
    std::perror(path.c_str());
    ::_exit(127);
  }

  int terminal_ = -1;  // the near end of the youngest one
  int percent_ = 0;
  char* segment_ = nullptr;
  std::size_t segmentBytes_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first.starts_with("measure=")) {
    measure(std::string(first.substr(8)), argv + 2);
    return 0;
  }
  std::signal(SIGCHLD, SIG_IGN);
  if (first.starts_with("engine="))
    serve(std::string(first.substr(7, first.rfind(':') - 7)), first.substr(first.rfind(':') + 1));
  Actor().play(Words(argv, argv + argc));
}
