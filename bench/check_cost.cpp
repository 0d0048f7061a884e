// Measures whole commands side by side on a machine with many idle processes:
//   check_cost EXTRA ROUNDS PROGRAM
// starts EXTRA sleeping processes, then runs `ps`, bare_floor (the system calls of a check and nothing else;
// it lies beside this program) and PROGRAM --print in turn, ROUNDS times each. Prints the median processor
// time of each, in all and for each of the user's processes, the check's ratio to both and its peak memory.
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

// How many processes the floor looks at, which it says; at least 1.
double processesOf(const std::string& floor) {
  double count = 0;
  FILE* output = popen(("'" + floor + "'").c_str(), "r");
  if (output == nullptr || std::fscanf(output, "%lf", &count) != 1) std::exit(1);
  pclose(output);
  return std::max(count, 1.0);
}

void printRow(const char* what, double cost, double processes) {
  std::printf("  %-17s %8.2f ms %7.1f us a process\n", what, cost, cost * 1e3 / processes);
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

  const std::string self = argv[0];
  const std::string floorPath = self.substr(0, self.rfind('/') + 1) + "bare_floor";
  const std::vector<std::vector<std::string>> commands{
      {"ps", "axo", "pid,ppid,uid,stat,rss,etimes,args"}, {floorPath}, {argv[3], "--print"}};
  std::vector<std::vector<double>> costs(commands.size());
  long peak = 0;                                         // of the last command, the check
  for (const auto& command : commands) costOf(command);  // files are in the cache from then on
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < commands.size(); ++i) {
      const Cost cost = costOf(commands[i]);
      costs[i].push_back(cost.milliseconds);
      if (i + 1 == commands.size()) peak = std::max(peak, cost.peakKilobytes);
    }
  }
  const double processes = processesOf(floorPath);
  for (const pid_t sleeper : sleepers) kill(sleeper, SIGKILL);

  const double ps = median(costs[0]);
  const double floor = median(costs[1]);
  const double check = median(costs[2]);
  std::printf(
      "%d extra idle processes, %.0f of the user's, %d rounds, median processor time (user + system)\n",
      extra, processes, rounds);
  printRow("ps axo ...", ps, processes);
  printRow("bare_floor", floor, processes);
  printRow("tarnwick --print", check, processes);
  std::printf("  %-17s %8.2f of ps, %.2f of the floor\n", "ratio", check / ps, check / floor);
  std::printf("  %-17s %8.1f MB\n", "peak memory", static_cast<double>(peak) / 1024);
  return 0;
}
