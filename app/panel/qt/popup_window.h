// The bare window of the panel: draws its ground, and tells what the user does to it; whoever made it
// decides. Main thread.
#pragma once

#include <QWidget>

#include "app/panel/qt/theme.h"

namespace tarnwick::panel {

class PopupWindow : public QWidget {
  Q_OBJECT
 public:
  PopupWindow();

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

}  // namespace tarnwick::panel
