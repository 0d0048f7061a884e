#include "app/help.h"

namespace tarnwick {

std::string helpText() {
  return "Tarnwick tells why this machine is slow right now.\n"
         "\n"
         "Usage: tarnwick [words]\n"
         "\n"
         "  --print               check this machine and print the report\n"
         "  --print --ai          the same, with the on-device model's guesses where it has any\n"
         "  --demo                print the report of an invented machine\n"
         "  --scenario NAME       with --demo, --print or --snapshot: memory, calm or developer\n"
         "  --snapshot PATH       draw the panel of the invented machine into a PNG file\n"
         "      --live            of this machine instead\n"
         "      --dark            in the dark appearance\n"
         "      --open            with the first card and the leftovers open\n"
         "  --explain TEXT        ask the on-device model what a process does, given facts about it\n"
         "  --bench               measure what a check costs\n"
         "  --selftest            check the rules against the invented machine\n"
         "  --pr                  look up pull-request titles (asks the code host over the network)\n"
         "  --exercise            with the application: open and close the panel on a timed script\n"
         "  --help, --version     this text; the version\n"
         "\n"
         "Without any of these words the application starts in the menu bar.\n"
         "TARNWICK_NO_TOOLS in the environment: run no outside tool.\n";
}

std::string versionText() { return "tarnwick " TARNWICK_VERSION "\n"; }

}  // namespace tarnwick
