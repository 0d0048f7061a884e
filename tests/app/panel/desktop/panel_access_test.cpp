// The panel for those who use the keyboard or listen.
#include "tests/app/panel/desktop/panel_stage.h"

namespace tarnwick::panel {
namespace {

[[maybe_unused]] const auto* const toolkit = testing::AddGlobalTestEnvironment(new Toolkit);

using PanelAccess = PanelStage;

TEST_F(PanelAccess, KeysOfTheKeyboardReachAndUseTheControls) {
  EXPECT_EQ(focused(), "") << "no remedy is one key press away";
  type("Tab");
  EXPECT_TRUE(await([&] { return focused() == "remedy:docker:Cmd-Q com.docker.docker"; }));
  type("Tab");
  type("Return");
  EXPECT_TRUE(await([&] { return model.openCard() == "docker"; }));
  EXPECT_TRUE(await([&] { return focused() == "details:docker"; }));
  type("Escape");
  EXPECT_TRUE(await([&] { return !panel.isVisible(); }));
}

}  // namespace
}  // namespace tarnwick::panel
