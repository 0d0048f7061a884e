#include "app/panel/qt/status_item.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QPainter>
#include <utility>

#include "app/panel/qt/desktop.h"
#include "app/panel/qt/menu.h"
#include "app/panel/qt/symbol_views.h"

namespace tarnwick::panel {

QIcon iconImage() {
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

StatusItem::StatusItem(Handlers handlers) : handlers_(std::move(handlers)), icon_(iconImage()) {
  makeMenu();
  icon_.setToolTip(QStringLiteral("Tarnwick"));
  icon_.setContextMenu(&menu_);
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                   [this](QSystemTrayIcon::ActivationReason reason) { activate(reason); });
  icon_.show();
}

void StatusItem::makeMenu() {
  const auto mark = [this] { markLines(menu_, handlers_.lines()); };
  QObject::connect(menu_.addAction(QStringLiteral("Open Tarnwick")), &QAction::triggered, &menu_,
                   [this] { handlers_.opened(); });
  menu_.addSeparator();
  addLines(menu_, handlers_.lines(), [this, mark](const PanelAction& action) {
    handlers_.perform(action);
    mark();  // the toolkit has flipped it, whether or not the setting could be written
  });
  menu_.setFont(Theme::buttonFont());
  QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, mark);
}

bool StatusItem::wasJustClicked() const {
  return clickedAt_.isValid() && clickedAt_.elapsed() < QApplication::doubleClickInterval();
}

// X tells of a double click as of a click and a double one, the session bus as of two clicks.
void StatusItem::activate(QSystemTrayIcon::ActivationReason reason) {
  switch (reason) {
    case QSystemTrayIcon::Trigger:
    case QSystemTrayIcon::MiddleClick:
      if (wasJustClicked()) return;
      handlers_.clicked();
      clickedAt_.start();  // a busy machine may take longer to draw than a user to click again
      return;
    case QSystemTrayIcon::Context:
      showMenu();
      return;
    case QSystemTrayIcon::DoubleClick:
    case QSystemTrayIcon::Unknown:
      return;
  }
}

// Most bars have shown the menu, some only say that somebody wants it.
void StatusItem::showMenu() {
  if (menu_.isVisible()) return;
  if (placesWindows()) {
    menu_.popup(QCursor::pos());
  } else {
    handlers_.opened();  // a menu must belong to a window there; the panel has the same lines
  }
}

}  // namespace tarnwick::panel
