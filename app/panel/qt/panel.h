// The panel's window on the screen: a borderless popup beside the tray icon, or, where there is no tray, a
// plain window. Main thread.
#pragma once

#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>
#include <QWindow>
#include <functional>
#include <map>
#include <optional>

#include "app/panel/panel_tree.h"
#include "app/panel/panel_window.h"
#include "app/panel/qt/appearance.h"
#include "app/panel/qt/painter.h"
#include "app/panel/qt/popup_window.h"

namespace tarnwick::panel {

// Where the tray icon is.
struct IconPlace {
  IconPlace(const QRect& onScreen = {}, std::optional<Stack::Direction> direction = {})
      : frame(onScreen), bar(direction) {}

  QRect frame;                          // empty: nobody knows
  std::optional<Stack::Direction> bar;  // of the bar that it lies in; absent: nobody knows
};

class QtPanel final : public PanelWindow {
 public:
  struct Handlers {
    Perform perform;                  // gets the clicks
    std::function<void()> focusLeft;  // another window took the keyboard from the open panel
    std::function<void()> dismissed;  // the user wants the panel gone
  };

  // `icon` says where the tray icon is whenever the panel opens. `appearance` must outlive the panel.
  QtPanel(const Appearance& appearance, std::function<IconPlace()> icon, Handlers handlers);

  PopupWindow& window() { return window_; }

  bool isVisible() const override { return visible_; }
  void open() override;
  void close() override;
  void show(const Node& content, bool animated) override;
  void setText(const std::string& id, const std::string& text) override;
  void callAfter(double seconds, std::function<void()> task) override;
  void openMenu(const std::vector<MenuItem>& items) override;
  std::optional<double> visibleScreenHeight() const override;
  void quit() override;

 private:
  void redraw();
  void followScreen();
  void replaceContent();
  QWidget* painted(const Theme& theme);
  std::optional<QRect> visibleScreen() const;
  Theme themeHere() const;
  QRect frameFor(const QSize& size) const;
  void moveTo(const QRect& frame, bool animated);
  void bringToFront();

  const Appearance& appearance_;
  std::function<IconPlace()> icon_;
  Handlers handlers_;
  PopupWindow window_;
  Node node_;                                      // what is shown, or was last
  std::map<std::string, std::string> laterTexts_;  // those set since, by the ids of their labels
  TextBlocks texts_;
  QPointer<QWidget> content_;
  QPointer<QWindow> followed_;  // whose change of screen is listened to
  QVariantAnimation movement_;
  QTimer later_;
  std::function<void()> task_;  // for when it has run out
  IconPlace place_;             // when the panel was opened
  bool visible_ = false;        // open; the window follows with its first content
};

}  // namespace tarnwick::panel
