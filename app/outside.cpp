#include "app/outside.h"

#include "system/port.h"

namespace tarnwick {

RealOutside::RealOutside(const Self& self)
    : self_(self),
      settings_(userSettings(self)),
      sources_(liveMachine(self)),
      browsers_(systemBrowsers(tools_)),
      targets_(systemTargets(*sources_, self)) {}

Outside RealOutside::parts() {
  return {.self = self_,
          .settings = *settings_,
          .clock = clock_,
          .tools = tools_,
          .toolCandidates = toolCandidates(self_.home),
          .transport = transport_,
          .engineSockets = engineSocketPlaces(self_),
          .sources = *sources_,
          .browsers = *browsers_,
          .targets = *targets_};
}

}  // namespace tarnwick
