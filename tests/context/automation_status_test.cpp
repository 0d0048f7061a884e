#include "context/automation_status.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarnwick {
namespace {

TEST(AutomationStatus, OnlyThreeAnswersAreClear) {
  const std::pair<std::int32_t, Access> cases[] = {
      {0, Access::allowed},
      {-1743, Access::denied},
      {-1744, Access::notAsked},
      {-600, Access::unknown},  // the browser does not run
      {1743, Access::unknown},
      {1, Access::unknown},
      {std::numeric_limits<std::int32_t>::min(), Access::unknown},
  };
  for (const auto& [status, access] : cases) EXPECT_EQ(accessFromStatus(status), access) << status;
}

}  // namespace
}  // namespace tarnwick
