#include "app/panel/qt/tray_application.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QElapsedTimer>
#include <QPainter>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/output.h"
#include "app/panel/panel_controller.h"
#include "app/panel/qt/desktop.h"
#include "app/panel/qt/popup.h"
#include "app/panel/qt/single_instance.h"
#include "app/panel/qt/symbol_views.h"
#include "app/thread_executor.h"

namespace tarnwick::panel {
namespace {

void copyToClipboard(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

constexpr int patienceWithTray = 2000;  // milliseconds; at login the tray may start after the program
constexpr qint64 sameClick = 300;       // milliseconds between losing the focus and the click that took it

// In a colour that can be told from light and from dark bars.
QIcon trayPicture() {
  QIcon icon;
  for (const int side : {16, 22, 24, 32, 48, 64}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawSymbol(painter, picture.rect(), "gauge.with.dots.needle.67percent", side, QColor(0x2f, 0x86, 0xe6));
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

class TrayApplication : public QObject {
 public:
  TrayApplication(const PanelApplication& application, SingleInstance& instance)
      : executor_([this] {
          QMetaObject::invokeMethod(
              this, [this] { executor_.drainMain(); }, Qt::QueuedConnection);
        }),
        appearance_(this),
        tray_(this),
        model_(application.makeModel(executor_, copyToClipboard)),
        popup_(
            appearance_, [this] { return anchor(); },
            [this](const PanelAction& action) { controller_.perform(action); }),
        controller_(*model_, executor_, popup_, *application.settings, application.now) {
    connect(&popup_.widget(), &PopupWidget::focusLeft, this, [this] {
      if (!popup_.isVisible()) return;  // a closed panel loses it too
      focusLeft_.start();
      controller_.close();
    });
    connect(&popup_.widget(), &PopupWidget::dismissed, this, &TrayApplication::dismiss);
    connect(&tray_, &TrayHost::appeared, this, &TrayApplication::showIcon);
    instance.listen([this] { controller_.open(); });
    showIcon();
    if (icon_ == nullptr) QTimer::singleShot(patienceWithTray, this, &TrayApplication::doWithoutTray);
    if (application.exercise) exercise();
  }

 private:
  void showIcon() {
    if (icon_ != nullptr || !tray_.isPresent()) return;
    icon_ = std::make_unique<QSystemTrayIcon>(trayPicture());
    icon_->setToolTip(QStringLiteral("Tarnwick"));
    connect(icon_.get(), &QSystemTrayIcon::activated, this, &TrayApplication::clickIcon);
    icon_->show();
    if (!popup_.isVisible()) popup_.widget().setFramed(false);
  }

  void doWithoutTray() {
    if (icon_ != nullptr) return;
    complain("This desktop shows no tray icons, so the panel opens as a window.");
    if (popup_.isVisible()) controller_.close();
    popup_.widget().setFramed(true);
    controller_.open();
  }

  // A click on the icon takes the focus from the open panel, which closes it; the same click must not
  // open it again.
  void clickIcon() {
    const bool closedByThisClick = focusLeft_.isValid() && focusLeft_.elapsed() < sameClick;
    if (!closedByThisClick) controller_.toggle();
  }

  // Without an icon there would be no way back to a closed panel.
  void dismiss() {
    controller_.close();
    if (icon_ == nullptr && popup_.widget().isFramed()) popup_.quit();
    if (icon_ != nullptr) popup_.widget().setFramed(false);
  }

  // The tray of the session bus does not say where its icons are.
  QRect anchor() const {
    const QRect place = icon_ == nullptr ? QRect() : icon_->geometry();
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
  Popup popup_;
  PanelController controller_;
  std::unique_ptr<QSystemTrayIcon> icon_;  // null: no tray yet
  QElapsedTimer focusLeft_;
};

}  // namespace

int runTrayApplication(const PanelApplication& application) {
  SingleInstance instance(qEnvironmentVariable("XDG_RUNTIME_DIR"));
  if (!instance.isFirst())
    return instance.askToOpen() ? 0 : complain("Tarnwick already runs, but does not answer.");
  if (!prepareDisplay()) return complain("There is no display to show the panel on. Try --print.");

  char name[] = "tarnwick";
  char* words[] = {name, nullptr};
  int count = 1;
  const QApplication toolkit(count, words);
  QApplication::setApplicationName(QStringLiteral("tarnwick"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tarnwick"));
  QApplication::setQuitOnLastWindowClosed(false);
  Theme::install();
  const TrayApplication running(application, instance);
  return QApplication::exec();
}

}  // namespace tarnwick::panel
