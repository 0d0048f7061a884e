#include <string>
#include <vector>

#include "app/cli/command_line.h"
#include "app/program/own_process.h"
#include "app/run.h"

int main(int argc, char** argv) {
  tarnwick::leaveSymbolicLink(argv);
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  return tarnwick::run(tarnwick::parseCommandLine(words));
}
