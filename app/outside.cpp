#include "app/outside.h"

#include "system/port.h"

namespace tarnwick {
namespace {

// The home folder may lie on a file system that does not answer: then nothing is looked for in it.
Self withFiles(Self self, Files& files) {
  constexpr const char* nowhere = "/dev/null";
  const std::size_t before = files.misses();
  if (!files.isDirectory(self.home) && files.misses() != before) self.home = nowhere;
  return self;
}

}  // namespace

RealOutside::RealOutside(const Self& self, const std::string& program, const DistantPoints& distant)
    : self_(self),
      files_(program, clock_, limits_),
      homeFiles_(files_, clock_, distant),
      settingsFiles_(program, clock_, unlimited_),
      placed_(withFiles(self, homeFiles_)),
      settings_(userSettings(placed_, settingsHome_)),
      sources_(liveMachine(placed_, homeFiles_, limits_)),
      browsers_(systemBrowsers(limitedTools_)),
      targets_(systemTargets(*sources_, homeFiles_, self)) {}

void RealOutside::beforeTheEnd() {
  tools_.endAll();
  const MutexLock lock(endMutex_);
  if (endAct_) endAct_();
}

Outside RealOutside::parts() {
  return {.self = self_,
          .settings = *settings_,
          .clock = clock_,
          .limits = limits_,
          .files = files_,
          .homeFiles = homeFiles_,
          .tools = tools_,
          .toolCandidates = toolCandidates(placed_.home),
          .transport = transport_,
          .engineSockets = engineSocketPlaces(placed_),
          .sources = *sources_,
          .browsers = *browsers_,
          .targets = *targets_};
}

}  // namespace tarnwick
