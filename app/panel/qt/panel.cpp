#include "app/panel/qt/panel.h"

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/panel/arrangement.h"
#include "app/panel/qt/menu.h"
#include "app/panel/qt/text_views.h"

namespace tarnwick::panel {
namespace {

constexpr int movementMilliseconds = 160;

// With less room than this the texts do not grow: the panel between the margins of the screen, and a list of
// a hundred points below everything else.
constexpr QSizeF leastScreen(416, 360);

QScrollArea* listOf(const QWidget* content) {
  return content == nullptr ? nullptr : content->findChild<QScrollArea*>(QStringLiteral("list"));
}

QScrollBar* scrollerOf(const QWidget* content) {
  const QScrollArea* list = listOf(content);
  return list == nullptr ? nullptr : list->verticalScrollBar();
}

void relabel(Node& node, const std::string& id, const std::string& text) {
  if (auto* label = std::get_if<Label>(&node.view); label != nullptr && label->id == id) label->text = text;
  if (auto* stack = std::get_if<Stack>(&node.view)) {
    for (Node& child : stack->children) relabel(child, id, text);
  }
}

// The same panel with a lower list.
Node withListCap(Node panel, double height) {
  if (auto* all = std::get_if<Stack>(&panel.view)) {
    for (Node& child : all->children) {
      if (auto* list = std::get_if<Scroll>(&child.view)) list->heightCap = height;
    }
  }
  return panel;
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
  QObject::connect(&appearance_, &Appearance::changed, &window_, [this] { redraw(); });
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
  node_ = content;
  laterTexts_.clear();
  replaceContent();
  const bool moves = animated && window_.isVisible() && !window_.isFramed();
  moveTo(frameFor(content_->size()), moves);
  if (window_.isVisible()) return;
  window_.setFocus();
  window_.show();
  followScreen();
  bringToFront();
}

// What is shown stays; the desktop wants it to look otherwise.
void QtPanel::redraw() {
  if (content_ == nullptr) return;
  replaceContent();
  for (const auto& [id, text] : laterTexts_) setText(id, text);
  moveTo(frameFor(content_->size()), false);
}

// The native window may be a new one each time that the panel opens.
void QtPanel::followScreen() {
  QWindow* handle = window_.windowHandle();
  if (handle == nullptr || handle == followed_) return;
  followed_ = handle;
  QObject::connect(
      handle, &QWindow::screenChanged, &window_, [this] { redraw(); }, Qt::QueuedConnection);
}

// The keyboard and the list stay where they were.
void QtPanel::replaceContent() {
  const Theme theme = themeHere();
  window_.setTheme(theme);
  QToolTip::setPalette(theme.palette());
  QToolTip::setFont(Theme::buttonFont(theme.scale()));
  const QScrollBar* before = scrollerOf(content_);
  const int scrolled = before == nullptr ? 0 : before->value();
  const QWidget* focused = window_.focusWidget();
  const QString focusedId = focused == nullptr ? QString() : focused->objectName();
  if (content_ != nullptr) {
    content_->hide();
    content_->deleteLater();  // a click on it may be what brought us here
  }
  content_ = painted(theme);
  content_->move(window_.shadow(), window_.shadow());
  content_->show();
  if (QScrollBar* after = scrollerOf(content_)) after->setValue(scrolled);
  auto* again = focusedId.isEmpty() ? nullptr : content_->findChild<QWidget*>(focusedId);
  (again == nullptr || !again->isEnabled() ? &window_ : again)->setFocus(Qt::TabFocusReason);
}

// Where the panel would be higher than the screen, the list gives way.
QWidget* QtPanel::painted(const Theme& theme) {
  texts_.beginPainting();
  QWidget* whole = paint(node_, theme, handlers_.perform, &window_, &texts_);
  const std::optional<QRect> visible = visibleScreen();
  const QScrollArea* list = listOf(whole);
  const int excess = visible ? whole->height() - visible->height() : 0;
  if (excess <= 0 || list == nullptr) return whole;
  const double rest = std::max(list->height() - excess, 0) / theme.scale();
  delete whole;
  return paint(withListCap(node_, rest), theme, handlers_.perform, &window_, &texts_);
}

// The screen that the panel is on, without its bars; absent when there is none.
std::optional<QRect> QtPanel::visibleScreen() const {
  const QScreen* screen =
      window_.isFramed() ? window_.screen() : QGuiApplication::screenAt(place_.frame.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? std::nullopt : std::optional(screen->availableGeometry());
}

// Texts are no larger than the screen has room for.
Theme QtPanel::themeHere() const {
  Look look = appearance_.look();
  if (const std::optional<QRect> visible = visibleScreen()) {
    const double room =
        std::min(visible->width() / leastScreen.width(), visible->height() / leastScreen.height());
    look.scale = std::clamp(look.scale, 1.0, std::max(room, 1.0));
  }
  return Theme(look);
}

QRect QtPanel::frameFor(const QSize& size) const {
  const QRect visible = visibleScreen().value_or(place_.frame);
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
  relabel(node_, id, text);  // for when it is drawn anew
  auto* view = content_ == nullptr ? nullptr : content_->findChild<TextView*>(QString::fromStdString(id));
  if (view == nullptr) return;
  laterTexts_[id] = text;
  view->replaceText(QString::fromStdString(text));
}

void QtPanel::callAfter(double seconds, std::function<void()> task) {
  task_ = std::move(task);
  later_.start(static_cast<int>(std::ceil(seconds * 1000)));
}

void QtPanel::openMenu(const std::vector<MenuItem>& items) {
  auto* menu = new QMenu(&window_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const Theme theme = themeHere();
  menu->setFont(Theme::buttonFont(theme.scale()));
  menu->setPalette(theme.palette());
  addLines(*menu, items, handlers_.perform);
  const QWidget* button =
      content_ == nullptr ? nullptr : content_->findChild<QWidget*>(QStringLiteral("menu"));
  menu->popup(button == nullptr ? QCursor::pos() : button->mapToGlobal(button->rect().bottomLeft()));
}

std::optional<double> QtPanel::visibleScreenHeight() const {
  const std::optional<QRect> visible = visibleScreen();
  if (!visible) return std::nullopt;
  return visible->height() / themeHere().scale();
}

// Not quit(): that asks every window first, and the panel refuses to be closed by others.
void QtPanel::quit() { QCoreApplication::exit(); }

}  // namespace tarnwick::panel
