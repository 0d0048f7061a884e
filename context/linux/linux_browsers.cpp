#include "context/linux/linux_browsers.h"

namespace tarnwick {

std::unique_ptr<Browsers> systemBrowsers(ToolRunner& /*tools*/) { return std::make_unique<LinuxBrowsers>(); }

}  // namespace tarnwick
