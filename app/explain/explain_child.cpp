#include "app/explain/explain_child.h"

namespace tarnwick {

std::string explainByChild(ToolRunner& tools, const std::string& executable, const std::string& evidence) {
  ToolOptions options;
  options.seconds = explainSeconds;
  return ToolRunner::finish(tools.start(executable, {"--explain", evidence}, options));
}

}  // namespace tarnwick
