#include "app/panel/qt/panel.h"

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <cmath>
#include <utility>

#include "app/panel/arrangement.h"
#include "app/panel/qt/menu.h"
#include "app/panel/qt/text_views.h"

namespace tarnwick::panel {
namespace {

constexpr int movementMilliseconds = 160;

QScrollBar* scrollerOf(const QWidget* content) {
  auto* list = content == nullptr ? nullptr : content->findChild<QScrollArea*>(QStringLiteral("list"));
  return list == nullptr ? nullptr : list->verticalScrollBar();
}

Area areaOf(const QRect& rect) {
  return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
          static_cast<double>(rect.height())};
}

QRect likelyPlace() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  const Spot spot = likelyIcon(areaOf(screen->geometry()), areaOf(screen->availableGeometry()));
  return {static_cast<int>(spot.x), static_cast<int>(spot.y), 1, 1};
}

}  // namespace

QtPanel::QtPanel(const Appearance& appearance, std::function<IconPlace()> icon, Handlers handlers)
    : appearance_(appearance), icon_(std::move(icon)), handlers_(std::move(handlers)) {
  movement_.setDuration(movementMilliseconds);
  movement_.setEasingCurve(QEasingCurve::OutCubic);
  QObject::connect(&movement_, &QVariantAnimation::valueChanged, &window_,
                   [this](const QVariant& frame) { window_.setGeometry(frame.toRect()); });
  later_.setSingleShot(true);
  later_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&later_, &QTimer::timeout, &window_, [this] {
    const std::function<void()> task = std::exchange(task_, {});
    if (task) task();
  });
  QObject::connect(&window_, &PopupWindow::focusLeft, &window_, [this] {
    if (visible_) handlers_.focusLeft();  // a closed panel loses it too
  });
  QObject::connect(&window_, &PopupWindow::dismissed, &window_, [this] { handlers_.dismissed(); });
}

void QtPanel::open() {
  if (!visible_) place_ = icon_();
  if (place_.frame.isEmpty()) place_.frame = likelyPlace();
  visible_ = true;  // shown with its first content, at its right place
  if (window_.isVisible()) bringToFront();
}

void QtPanel::close() {
  visible_ = false;
  movement_.stop();
  later_.stop();
  window_.hide();
  if (content_ != nullptr) content_->deleteLater();
  content_ = nullptr;
}

void QtPanel::show(const Node& content, bool animated) {
  replaceContent(content);
  const bool moves = animated && window_.isVisible() && !window_.isFramed();
  moveTo(frameFor(content_->size()), moves);
  if (window_.isVisible()) return;
  window_.setFocus();
  window_.show();
  bringToFront();
}

// The keyboard and the list stay where they were.
void QtPanel::replaceContent(const Node& content) {
  const Theme theme(appearance_.isDark());
  window_.setTheme(theme);
  QToolTip::setPalette(theme.palette());
  const QScrollBar* before = scrollerOf(content_);
  const int scrolled = before == nullptr ? 0 : before->value();
  const QWidget* focused = window_.focusWidget();
  const QString focusedId = focused == nullptr ? QString() : focused->objectName();
  if (content_ != nullptr) {
    content_->hide();
    content_->deleteLater();  // a click on it may be what brought us here
  }
  content_ = paint(content, theme, handlers_.perform, &window_);
  content_->move(window_.shadow(), window_.shadow());
  content_->show();
  if (QScrollBar* after = scrollerOf(content_)) after->setValue(scrolled);
  auto* again = focusedId.isEmpty() ? nullptr : content_->findChild<QWidget*>(focusedId);
  (again == nullptr || !again->isEnabled() ? &window_ : again)->setFocus(Qt::TabFocusReason);
}

const QScreen* QtPanel::screen() const {
  const QScreen* screen = QGuiApplication::screenAt(place_.frame.center());
  return screen == nullptr ? QGuiApplication::primaryScreen() : screen;
}

QRect QtPanel::frameFor(const QSize& size) const {
  const QScreen* screen = this->screen();
  const QRect visible = screen == nullptr ? place_.frame : screen->availableGeometry();
  const Extent panel{static_cast<double>(size.width()), static_cast<double>(size.height())};
  const Spot spot = besideIcon(areaOf(place_.frame), panel, areaOf(visible), place_.bar);
  const int shadow = window_.shadow();
  return QRect(QPoint(static_cast<int>(spot.x), static_cast<int>(spot.y)), size)
      .adjusted(-shadow, -shadow, shadow, shadow);
}

void QtPanel::moveTo(const QRect& frame, bool animated) {
  movement_.stop();
  if (window_.isFramed()) {
    window_.setFixedSize(content_->size());
  } else if (!animated) {
    window_.setGeometry(frame);
  } else {
    movement_.setStartValue(window_.geometry());
    movement_.setEndValue(frame);
    movement_.start();
  }
}

void QtPanel::bringToFront() {
  window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
  window_.raise();
  window_.activateWindow();
}

void QtPanel::setText(const std::string& id, const std::string& text) {
  auto* view = content_ == nullptr ? nullptr : content_->findChild<TextView*>(QString::fromStdString(id));
  if (view != nullptr) view->replaceText(QString::fromStdString(text));
}

void QtPanel::callAfter(double seconds, std::function<void()> task) {
  task_ = std::move(task);
  later_.start(static_cast<int>(std::ceil(seconds * 1000)));
}

void QtPanel::openMenu(const std::vector<MenuItem>& items) {
  auto* menu = new QMenu(&window_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setFont(Theme::buttonFont());
  addLines(*menu, items, handlers_.perform);
  const QWidget* button =
      content_ == nullptr ? nullptr : content_->findChild<QWidget*>(QStringLiteral("menu"));
  menu->popup(button == nullptr ? QCursor::pos() : button->mapToGlobal(button->rect().bottomLeft()));
}

std::optional<double> QtPanel::visibleScreenHeight() const {
  const QScreen* screen = this->screen();
  if (screen == nullptr) return std::nullopt;
  return screen->availableGeometry().height();
}

// Not quit(): that asks every window first, and the panel refuses to be closed by others.
void QtPanel::quit() { QCoreApplication::exit(); }

}  // namespace tarnwick::panel
