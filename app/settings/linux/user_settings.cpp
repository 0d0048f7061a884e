// The choices of the Linux user: an autostart entry and a line in the user's defaults.
#include "app/settings/user_settings.h"

#include <filesystem>
#include <system_error>

#include "app/settings/linux/login_item.h"
#include "app/settings/linux/user_defaults.h"
#include "system/environment.h"

namespace tarnwick {
namespace {

// The name of the file, not the link to it: the entry is read by another process, in another run.
std::string executablePath() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

class LinuxSettings final : public UserSettings {
 public:
  explicit LinuxSettings(const std::string& home)
      : loginItem_(configFolder(home), executablePath()), defaults_(configFolder(home)) {}

  bool opensAtLogin() override { return loginItem_.isEnabled(); }
  void setOpensAtLogin(bool on) override { loginItem_.setEnabled(on); }
  bool prTitles() override { return defaults_.isTrue("prTitles"); }
  void setPrTitles(bool on) override { defaults_.set("prTitles", on); }

 private:
  LoginItem loginItem_;
  UserDefaults defaults_;
};

}  // namespace

std::unique_ptr<UserSettings> userSettings(const Self& self) {
  return std::make_unique<LinuxSettings>(self.home);
}

}  // namespace tarnwick
