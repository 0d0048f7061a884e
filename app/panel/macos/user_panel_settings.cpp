// The menu's two choices of the macOS user. The login item comes with the painter.
#include "app/macos/applications.h"
#include "app/panel/panel_window.h"

namespace tarnwick {
namespace {

class DefaultsPanelSettings final : public PanelSettings {
 public:
  bool opensAtLogin() override { return false; }
  void setOpensAtLogin(bool /*on*/) override {}
  bool prTitles() override { return isDefaultTrue("prTitles"); }
  void setPrTitles(bool on) override { setDefault("prTitles", on); }
};

}  // namespace

std::unique_ptr<PanelSettings> userPanelSettings(const Self& /*self*/) {
  return std::make_unique<DefaultsPanelSettings>();
}

}  // namespace tarnwick
