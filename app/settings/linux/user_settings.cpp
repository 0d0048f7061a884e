// The choices of the Linux user: an autostart entry and a line in the user's defaults.
#include "app/settings/user_settings.h"

#include <filesystem>
#include <system_error>

#include "app/settings/linux/login_item.h"
#include "app/settings/linux/user_defaults.h"
#include "system/environment.h"
#include "system/mutex.h"

namespace tarnwick {
namespace {

// The name of the file, not the link to it: the entry is read by another process, in another run.
std::string executablePath() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

class LinuxSettings final : public UserSettings {
 public:
  LinuxSettings(const std::string& home, Files& files)
      : files_(files),
        loginItem_(files, configFolder(home), executablePath()),
        defaults_(files, configFolder(home)) {}

  bool opensAtLogin() override {
    return alone([this] { return loginItem_.isEnabled(); });
  }
  void setOpensAtLogin(bool on) override {
    alone([this, on] { return loginItem_.setEnabled(on); });
  }
  bool prTitles() override {
    return alone([this] { return defaults_.isTrue("prTitles"); });
  }
  void setPrTitles(bool on) override {
    alone([this, on] { return defaults_.set("prTitles", on); });
  }

 private:
  // The panel and its checks ask, each on its own thread, and seldom.
  template <class Question>
  bool alone(const Question& question) {
    const MutexLock lock(mutex_);
    const bool answer = question();
    files_.rest();
    return answer;
  }

  Mutex mutex_;
  Files& files_ TARNWICK_GUARDED_BY(mutex_);
  LoginItem loginItem_;
  UserDefaults defaults_;
};

}  // namespace

std::unique_ptr<UserSettings> userSettings(const Self& self, Files& files) {
  return std::make_unique<LinuxSettings>(self.home, files);
}

}  // namespace tarnwick
