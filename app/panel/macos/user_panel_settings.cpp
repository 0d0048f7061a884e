// The menu's two choices of the macOS user: the system's login items and the user's defaults.
#include "app/macos/applications.h"
#include "app/panel/macos/login_item.h"
#include "app/panel/panel_window.h"

namespace tarnwick::panel {
namespace {

class UserPanelSettings final : public PanelSettings {
 public:
  bool opensAtLogin() override { return isLoginItem(); }
  void setOpensAtLogin(bool on) override { setLoginItem(on); }
  bool prTitles() override { return isDefaultTrue("prTitles"); }
  void setPrTitles(bool on) override { setDefault("prTitles", on); }
};

}  // namespace

std::unique_ptr<PanelSettings> userPanelSettings(const Self& /*self*/) {
  return std::make_unique<UserPanelSettings>();
}

}  // namespace tarnwick::panel
