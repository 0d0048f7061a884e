// Where a path leads once its links are followed, found out without a question to any file system that may
// not answer: the links on the way are read one by one, and none beyond the last local mount. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Way {
  std::string path;    // without links and dots as far as it is local; beyond that as written
  bool local = false;  // everything on the way, and what stands at its end, is this machine's own
};

// `path` is absolute. Nothing need stand there. Links that go round in circles are not local. `distant`: the
// points of mounts that need somebody else to answer.
Way wayTo(const std::string& path, const std::vector<std::string>& distant);

// The same for what lies in a folder to which the way is known, and local.
Way wayFrom(const Way& folder, std::string_view rest, const std::vector<std::string>& distant);

}  // namespace tarnwick
