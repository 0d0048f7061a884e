#include "app/panel/qt/popup.h"

#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <utility>

#include "app/panel/qt/popup_place.h"

namespace tarnwick::panel {
namespace {

constexpr int movementMilliseconds = 160;

QScrollBar* scrollerOf(const QWidget* content) {
  auto* list = content == nullptr ? nullptr : content->findChild<QScrollArea*>(QStringLiteral("list"));
  return list == nullptr ? nullptr : list->verticalScrollBar();
}

}  // namespace

Popup::Popup(const Appearance& appearance, std::function<QRect()> anchor, Perform perform)
    : appearance_(appearance), anchor_(std::move(anchor)), perform_(std::move(perform)) {
  movement_.setDuration(movementMilliseconds);
  movement_.setEasingCurve(QEasingCurve::OutCubic);
  QObject::connect(&movement_, &QVariantAnimation::valueChanged, &widget_,
                   [this](const QVariant& frame) { widget_.setGeometry(frame.toRect()); });
}

void Popup::open() {
  if (!visible_) place_ = anchor_();
  visible_ = true;  // shown with its first content, at its right place
  if (!widget_.isVisible()) return;
  widget_.raise();
  widget_.activateWindow();
}

void Popup::close() {
  visible_ = false;
  movement_.stop();
  widget_.hide();
  if (content_ != nullptr) content_->deleteLater();
  content_ = nullptr;
}

void Popup::show(const Node& content, bool animated) {
  replaceContent(content);
  const bool moves = animated && widget_.isVisible() && !widget_.isFramed();
  moveTo(windowFrame(), moves);
  if (widget_.isVisible()) return;
  widget_.setFocus();
  widget_.show();
  widget_.raise();
  widget_.activateWindow();
}

// The keyboard and the list stay where they were.
void Popup::replaceContent(const Node& content) {
  const Theme theme(appearance_.isDark());
  widget_.setTheme(theme);
  QToolTip::setPalette(theme.palette());
  const QScrollBar* before = scrollerOf(content_);
  const int scrolled = before == nullptr ? 0 : before->value();
  const QWidget* focused = widget_.focusWidget();
  const QString focusedId = focused == nullptr ? QString() : focused->objectName();
  if (content_ != nullptr) {
    content_->hide();
    content_->deleteLater();  // a click on it may be what brought us here
  }
  content_ = paint(content, theme, perform_, &widget_);
  content_->move(widget_.shadow(), widget_.shadow());
  content_->show();
  if (QScrollBar* after = scrollerOf(content_)) after->setValue(scrolled);
  auto* again = focusedId.isEmpty() ? nullptr : content_->findChild<QWidget*>(focusedId);
  (again == nullptr || !again->isEnabled() ? &widget_ : again)->setFocus(Qt::TabFocusReason);
}

QRect Popup::windowFrame() const {
  const QScreen* screen = QGuiApplication::screenAt(place_.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  const int shadow = widget_.shadow();
  if (screen == nullptr)
    return {place_.topLeft(), content_->size().grownBy({shadow, shadow, shadow, shadow})};
  return popupFrame(place_, content_->size(), screen->availableGeometry())
      .adjusted(-shadow, -shadow, shadow, shadow);
}

void Popup::moveTo(const QRect& frame, bool animated) {
  movement_.stop();
  if (widget_.isFramed()) {
    widget_.setFixedSize(content_->size());
  } else if (!animated) {
    widget_.setGeometry(frame);
  } else {
    movement_.setStartValue(widget_.geometry());
    movement_.setEndValue(frame);
    movement_.start();
  }
}

void Popup::openMenu(const std::vector<MenuItem>& items) {
  auto* menu = new QMenu(&widget_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setFont(Theme::buttonFont());
  for (const MenuItem& item : items) {
    if (item.title.empty()) {
      menu->addSeparator();
      continue;
    }
    QAction* line = menu->addAction(QString::fromStdString(item.title));
    line->setCheckable(item.checkable);
    line->setChecked(item.checked);
    QObject::connect(line, &QAction::triggered, &widget_, [this, action = item.action] { perform_(action); });
  }
  const QWidget* button =
      content_ == nullptr ? nullptr : content_->findChild<QWidget*>(QStringLiteral("menu"));
  menu->popup(button == nullptr ? QCursor::pos() : button->mapToGlobal(button->rect().bottomLeft()));
}

std::optional<double> Popup::visibleScreenHeight() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return std::nullopt;
  return screen->availableGeometry().height();
}

// Not quit(): that asks every window first, and the panel refuses to be closed by others.
void Popup::quit() { QCoreApplication::exit(); }

}  // namespace tarnwick::panel
