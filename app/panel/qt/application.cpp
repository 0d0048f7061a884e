// The running application: tray icon, panel, model and main loop.
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QElapsedTimer>
#include <QTimer>

#include "app/cli/output.h"
#include "app/model/thread_executor.h"
#include "app/panel/panel_controller.h"
#include "app/panel/qt/desktop.h"
#include "app/panel/qt/jobs.h"
#include "app/panel/qt/panel.h"
#include "app/panel/qt/single_instance.h"
#include "app/panel/qt/status_item.h"
#include "app/program/exit_act.h"

namespace tarnwick::panel {
namespace {

void copyToClipboard(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

constexpr int patienceWithTray = 2000;         // milliseconds; at login the tray may start after the program
constexpr int patienceWithComingTray = 10000;  // milliseconds
constexpr qint64 sameClick = 300;  // milliseconds between losing the focus and the click that took it

class RunningApplication : public QObject {
 public:
  // False when a task still runs; then the program must end without destroying anything.
  bool endWithin(double seconds) { return executor_.endWithin(seconds); }

  RunningApplication(const PanelApplication& application, SingleInstance& instance)
      : executor_([this] { drainSoon(); }),
        appearance_(this),
        tray_(this),
        model_(application.makeModel(executor_, copyToClipboard)),
        panel_(appearance_, [this] { return iconPlace(); },
               {.perform = [this](const PanelAction& action) { controller_.perform(action); },
                .focusLeft = [this] { focusLeft(); },
                .dismissed = [this] { dismiss(); }}),
        controller_(*model_, executor_, panel_, *application.settings, application.now),
        settings_(*application.settings) {
    connect(&tray_, &TrayHost::appeared, this, &RunningApplication::showItem);
    instance.listen([this] { openAnywhere(); });
    showItem();
    const int patience = tray_.isComing() ? patienceWithComingTray : patienceWithTray;
    if (!item_) QTimer::singleShot(patience, this, &RunningApplication::doWithoutTray);
    if (application.exercise) exercise();
  }

 private:
  // Any thread.
  void drainSoon() {
    QMetaObject::invokeMethod(
        this, [this] { executor_.drainMain(); }, Qt::QueuedConnection);
  }

  void showItem() {
    if (item_ || !tray_.isPresent()) return;
    item_.emplace(
        StatusItem::Handlers{.clicked = [this] { clickItem(); },
                             .opened = [this] { openBesideItem(); },
                             .lines = [this] { return menu(settings_.opensAtLogin(), settings_.prTitles()); },
                             .perform = [this](const PanelAction& action) { performFromItem(action); }});
  }

  void doWithoutTray() {
    if (item_ || panel_.isVisible()) return;
    complain("This desktop shows no tray icons, so the panel opens as a window.");
    openAnywhere();
  }

  // The tray may have gone since it got the icon.
  void openAnywhere() {
    chooseFrame(!item_ || !tray_.isPresent());
    controller_.open();
  }

  void openBesideItem() {
    chooseFrame(false);
    controller_.open();
  }

  // Where the desktop places the windows itself, a popup could neither be beside its icon nor be moved.
  void chooseFrame(bool framed) {
    if (!panel_.isVisible()) panel_.window().setFramed(framed || !placesWindows());
  }

  void focusLeft() {
    // The second half of a double click takes the focus to some bars.
    if (item_ && item_->wasJustClicked()) return controller_.open();
    controller_.close();
    focusLeftAt_.start();
  }

  // A click on the icon takes the focus from the open panel, which closes it; the same click must not
  // open it again.
  void clickItem() {
    if (panel_.isVisible()) {
      controller_.close();
    } else if (!focusLeftAt_.isValid() || focusLeftAt_.elapsed() >= sameClick) {
      openBesideItem();
    }
  }

  // Nobody sees the report being copied into a closed panel.
  void performFromItem(const PanelAction& action) {
    if (!std::holds_alternative<CopyReport>(action)) return controller_.perform(action);
    chooseFrame(false);
    controller_.copyFreshReport();
  }

  // Where there was never an icon, nothing would be left of a closed panel.
  void dismiss() {
    controller_.close();
    if (!item_ && panel_.window().isFramed()) panel_.quit();
  }

  // The tray of the session bus does not say where its icons are; whoever clicked one is there.
  IconPlace iconPlace() const {
    const QRect place = item_ ? item_->place() : QRect();
    if (!place.isEmpty()) return {place, tray_.bar()};
    return tellsPointer() ? QRect(QCursor::pos(), QSize(1, 1)) : QRect();
  }

  void exercise() {
    QTimer::singleShot(1000, this, [this] { openAnywhere(); });
    QTimer::singleShot(4000, this, [this] { controller_.openFirstCard(); });
    QTimer::singleShot(9000, this, [this] { controller_.close(); });
  }

  ThreadExecutor executor_;
  Appearance appearance_;
  TrayHost tray_;
  std::unique_ptr<Model> model_;
  QtPanel panel_;
  PanelController controller_;
  UserSettings& settings_;
  std::optional<StatusItem> item_;  // absent: no tray yet
  QElapsedTimer focusLeftAt_;
};

}  // namespace

int runApplication(const PanelApplication& application) {
  std::optional<SingleInstance> instance(qEnvironmentVariable("XDG_RUNTIME_DIR"));
  if (!instance->isFirst())
    return instance->askToOpen() ? 0 : complain("Tarnwick already runs, but does not answer.");
  if (instance->isRefused())
    complain("No lock of yours alone can be had in XDG_RUNTIME_DIR: each start opens a panel of its own.");
  if (!findDisplay()) return complain("There is no display to show the panel on. Try --print.");

  char name[] = "tarnwick";
  char* words[] = {name, nullptr};
  int count = 1;
  const QApplication toolkit(count, words);
  QApplication::setApplicationName(QStringLiteral("tarnwick"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tarnwick"));
  QGuiApplication::setDesktopFileName(
      QStringLiteral("org.tarnwick.Tarnwick"));  // Wayland names windows by it
  QApplication::setQuitOnLastWindowClosed(false);
  QGuiApplication::setWindowIcon(iconImage());
  Theme::install();
  RunningApplication running(application, *instance);
  // A signal may end the program, or the toolkit when the display is gone.
  application.atTheEnd(instance->removal());
  const ExitAct displayGone([&application, removal = instance->removal()] {
    removal();
    application.leaveNow(1);
  });
  const int status = QApplication::exec();
  application.atTheEnd({});
  if (running.endWithin(quitSeconds)) return status;
  instance.reset();  // takes its socket and its lock away
  application.leaveNow(status);
  return status;
}

}  // namespace tarnwick::panel
