// Measures whole commands side by side on a machine with many idle processes:
//   check_cost EXTRA ROUNDS PROGRAM
// starts EXTRA sleeping processes, then runs `ps` and PROGRAM --print in turn, ROUNDS times each, and
// prints the median processor time of each, their ratio and the program's peak memory.
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Cost {
  double milliseconds = 0;  // user + system
  long peakKilobytes = 0;
};

double milliseconds(const timeval& t) {
  return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
}

Cost costOf(std::vector<std::string> words) {
  const pid_t child = fork();
  if (child == 0) {
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(126);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  rusage used{};
  wait4(child, &status, 0, &used);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "check_cost: %s did not end well\n", words.front().c_str());
    std::exit(1);
  }
  return {milliseconds(used.ru_utime) + milliseconds(used.ru_stime), used.ru_maxrss};
}

std::vector<pid_t> startSleepers(int count) {
  std::vector<pid_t> sleepers;
  for (int i = 0; i < count; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      execlp("sleep", "sleep", "100000", nullptr);
      _exit(127);
    }
    sleepers.push_back(child);
  }
  return sleepers;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: check_cost EXTRA ROUNDS PROGRAM\n");
    return 2;
  }
  const int extra = std::max(std::atoi(argv[1]), 0);
  const int rounds = std::max(std::atoi(argv[2]), 1);
  const std::vector<pid_t> sleepers = startSleepers(extra);
  sleep(1);

  const std::vector<std::string> ps{"ps", "axo", "pid,ppid,uid,stat,rss,etimes,args"};
  const std::vector<std::string> check{argv[3], "--print"};
  std::vector<double> psCosts;
  std::vector<double> checkCosts;
  long peak = 0;
  costOf(ps);
  costOf(check);  // both once before measuring: files are in the cache from then on
  for (int round = 0; round < rounds; ++round) {
    psCosts.push_back(costOf(ps).milliseconds);
    const Cost cost = costOf(check);
    checkCosts.push_back(cost.milliseconds);
    peak = std::max(peak, cost.peakKilobytes);
  }
  for (const pid_t sleeper : sleepers) kill(sleeper, SIGKILL);

  std::printf("%d extra idle processes, %d rounds, median processor time (user + system)\n", extra, rounds);
  std::printf("  ps axo ...         %7.2f ms\n", median(psCosts));
  std::printf("  tarnwick --print   %7.2f ms\n", median(checkCosts));
  std::printf("  ratio              %7.2f\n", median(checkCosts) / median(psCosts));
  std::printf("  peak memory        %7.1f MB\n", static_cast<double>(peak) / 1024);
  return 0;
}
