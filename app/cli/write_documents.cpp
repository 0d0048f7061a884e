// Run while building: writes the manual page and the completions into a folder.
//   tarnwick_write_documents FOLDER DAY
#include <fstream>
#include <iostream>
#include <string>
#include <utility>

#include "app/cli/documents.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::pair<const char*, std::string> documents[] = {
      {"tarnwick.1", tarnwick::manualPage(argv[2])},
      {"tarnwick.bash", tarnwick::bashCompletion()},
      {"_tarnwick", tarnwick::zshCompletion()},
      {"tarnwick.fish", tarnwick::fishCompletion()},
  };
  for (const auto& [name, text] : documents) {
    const std::string path = std::string(argv[1]) + "/" + name;
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file) {
      std::cerr << "write_documents: " << path << " could not be written.\n";
      return 1;
    }
  }
  return 0;
}
