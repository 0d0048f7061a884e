// The panel's window on the screen: a borderless popup beside the tray icon, or, where there is no tray, a
// plain window. Main thread.
#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>
#include <functional>

#include "app/panel/panel_window.h"
#include "app/panel/qt/appearance.h"
#include "app/panel/qt/painter.h"

namespace tarnwick::panel {

// The bare window: draws its ground, and tells when the user wants it gone.
class PopupWidget : public QWidget {
  Q_OBJECT
 public:
  PopupWidget();

  void setTheme(const Theme& theme);
  void setFramed(bool framed);  // true: a window with the desktop's own frame
  int shadow() const { return shadow_; }
  bool isFramed() const { return framed_; }

 Q_SIGNALS:
  void focusLeft();  // another window has the keyboard
  void dismissed();  // Escape, or the frame's close button

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;

 private:
  Theme theme_{false};
  bool framed_ = false;
  int shadow_ = 0;  // width of the shadow around the panel; 0 where windows cannot be translucent
};

class Popup : public PanelWindow {
 public:
  // `anchor` says where the tray icon is; `perform` gets the clicks. `appearance` must outlive the popup.
  Popup(const Appearance& appearance, std::function<QRect()> anchor, Perform perform);

  PopupWidget& widget() { return widget_; }

  bool isVisible() const override { return visible_; }
  void open() override;
  void close() override;
  void show(const Node& content, bool animated) override;
  void openMenu(const std::vector<MenuItem>& items) override;
  std::optional<double> visibleScreenHeight() const override;
  void quit() override;

 private:
  void replaceContent(const Node& content);
  QRect windowFrame() const;
  void moveTo(const QRect& frame, bool animated);

  const Appearance& appearance_;
  std::function<QRect()> anchor_;
  Perform perform_;
  PopupWidget widget_;
  QPointer<QWidget> content_;
  QVariantAnimation movement_;
  QRect place_;  // of the icon, when the panel was opened
  bool visible_ = false;
};

}  // namespace tarnwick::panel
