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
#include "app/program/exit_act.h"

namespace tarnwick::panel {
namespace {

void copyToClipboard(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

constexpr int patienceWithTray = 2000;  // milliseconds; at login the tray may start after the program
constexpr qint64 sameClick = 300;       // milliseconds between losing the focus and the click that took it

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
        controller_(*model_, executor_, panel_, *application.settings, application.now) {
    connect(&tray_, &TrayHost::appeared, this, &RunningApplication::showItem);
    instance.listen([this] { controller_.open(); });
    showItem();
    if (!item_) QTimer::singleShot(patienceWithTray, this, &RunningApplication::doWithoutTray);
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
    item_.emplace([this] { clickItem(); });
    if (!panel_.isVisible()) panel_.window().setFramed(false);
  }

  void doWithoutTray() {
    if (item_) return;
    complain("This desktop shows no tray icons, so the panel opens as a window.");
    if (panel_.isVisible()) controller_.close();
    panel_.window().setFramed(true);
    controller_.open();
  }

  void focusLeft() {
    focusLeftAt_.start();
    controller_.close();
  }

  // A click on the icon takes the focus from the open panel, which closes it; the same click must not
  // open it again.
  void clickItem() {
    const bool closedByThisClick = focusLeftAt_.isValid() && focusLeftAt_.elapsed() < sameClick;
    if (!closedByThisClick) controller_.toggle();
  }

  // Without an icon there would be no way back to a closed panel.
  void dismiss() {
    controller_.close();
    if (!item_ && panel_.window().isFramed()) panel_.quit();
    if (item_) panel_.window().setFramed(false);
  }

  // The tray of the session bus does not say where its icons are.
  QRect iconPlace() const {
    const QRect place = item_ ? item_->place() : QRect();
    return place.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : place;
  }

  void exercise() {
    QTimer::singleShot(1000, this, [this] { controller_.toggle(); });
    QTimer::singleShot(4000, this, [this] { controller_.openFirstCard(); });
    QTimer::singleShot(9000, this, [this] { controller_.close(); });
  }

  ThreadExecutor executor_;
  Appearance appearance_;
  TrayHost tray_;
  std::unique_ptr<Model> model_;
  QtPanel panel_;
  PanelController controller_;
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
