// Starts a program that has nothing to do with this one any more: it lives on when this one ends, in a
// session of its own, and whoever collects orphans collects it. It gets this program's environment, the root
// as its folder, nothing on its standard streams and no other descriptor; no signal is ignored or blocked.
// Never through a shell. Any thread.
#pragma once

#include <string>
#include <vector>

namespace tarnwick {

// `words`: those behind the path. False when the system did not start it, or not within ten seconds.
bool startDetached(const std::string& path, std::vector<std::string> words);

}  // namespace tarnwick
