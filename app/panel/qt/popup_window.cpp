#include "app/panel/qt/popup_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>

#include "app/panel/qt/access.h"
#include "app/panel/qt/desktop.h"

namespace tarnwick::panel {
namespace {

constexpr double popupCorner = 14;
constexpr int shadowWidth = 8;  // the popup keeps as much distance to the screen's edge

QAbstractSlider::SliderAction movementOf(int key) {
  switch (key) {
    case Qt::Key_Up:
      return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
      return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
      return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
      return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
      return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
      return QAbstractSlider::SliderToMaximum;
    default:
      return QAbstractSlider::SliderNoAction;
  }
}

}  // namespace

PopupWindow::PopupWindow() {
  giveRole(this, QAccessible::Dialog);
  setAttribute(Qt::WA_TranslucentBackground);
  setWindowTitle(QStringLiteral("Tarnwick"));
  // The window itself takes the keyboard first: Return must not run a remedy that nobody has chosen.
  setFocusPolicy(Qt::StrongFocus);
  setFramed(false);
}

void PopupWindow::setTheme(const Theme& theme) {
  theme_ = theme;
  setPalette(theme.palette());
  update();
}

void PopupWindow::setFramed(bool framed) {
  framed_ = framed;
  setWindowFlags(framed ? Qt::Window | Qt::MSWindowsFixedSizeDialogHint
                        : Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                              Qt::NoDropShadowWindowHint);
  shadow_ = !framed && isComposited() ? shadowWidth : 0;
}

void PopupWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (framed_) {
    painter.fillRect(rect(), theme_.window());
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF panel = QRectF(rect()).adjusted(shadow_, shadow_, -shadow_, -shadow_);
  painter.setPen(Qt::NoPen);
  for (int ring = shadow_; ring > 0; --ring) {
    painter.setBrush(QColor(0, 0, 0, 3 + 2 * (shadow_ - ring)));
    painter.drawRoundedRect(panel.adjusted(-ring, -ring + 2, ring, ring), popupCorner + ring,
                            popupCorner + ring);
  }
  painter.setBrush(theme_.window());
  painter.drawRoundedRect(panel, popupCorner, popupCorner);
  painter.setPen(QPen(theme_.outline(), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), popupCorner, popupCorner);
}

// Without a compositor the corners would be black: they are cut out of the window.
void PopupWindow::resizeEvent(QResizeEvent* /*event*/) {
  if (framed_ || shadow_ > 0) {
    clearMask();
    return;
  }
  QPainterPath outline;
  outline.addRoundedRect(rect(), popupCorner, popupCorner);
  setMask(QRegion(outline.toFillPolygon().toPolygon()));
}

// Arrows and pages that no control wants move the list, so that long details can be read without a pointer.
void PopupWindow::keyPressEvent(QKeyEvent* event) {
  auto* list = findChild<QScrollArea*>(QStringLiteral("list"));
  const QAbstractSlider::SliderAction movement = movementOf(event->key());
  if (event->key() == Qt::Key_Escape) {
    Q_EMIT dismissed();
  } else if (list != nullptr && movement != QAbstractSlider::SliderNoAction) {
    list->verticalScrollBar()->triggerAction(movement);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PopupWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // whoever listens hides it
  Q_EMIT dismissed();
}

bool PopupWindow::event(QEvent* event) {
  // The panel's own menu takes the keyboard only for a while.
  if (event->type() == QEvent::WindowDeactivate && !framed_ && QApplication::activePopupWidget() == nullptr)
    Q_EMIT focusLeft();
  return QWidget::event(event);
}

}  // namespace tarnwick::panel
