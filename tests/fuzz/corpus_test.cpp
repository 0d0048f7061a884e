// Every input that once broke something, and the seeds, through their targets.
#include <filesystem>

#include "fuzz/targets.h"
#include "tests/support/testing.h"

namespace {

TEST(Corpus, NothingInItBreaksItsTargetAgain) {
  for (const FuzzTarget& target : fuzzTargets()) {
    const std::filesystem::path folder =
        std::string(TARNWICK_SOURCE_DIR "/fuzz/corpus/") + std::string(target.name);
    ASSERT_TRUE(std::filesystem::is_directory(folder)) << folder;
    for (const auto& seed : std::filesystem::directory_iterator(folder)) {
      SCOPED_TRACE(seed.path());
      target.run(textOfFile(seed.path()));
    }
    target.run("");
  }
}

}  // namespace
