#include "app/panel/qt/popup_place.h"

#include <algorithm>

namespace tarnwick::panel {
namespace {

constexpr int gap = 6;     // between icon and panel
constexpr int margin = 8;  // to the screen's edges, and of the panel beyond the icon's left edge

// The screen may be smaller than the panel: its leading edge is the one that stays visible.
int within(int value, int lowest, int highest) { return std::max(std::min(value, highest), lowest); }

}  // namespace

QRect popupFrame(const QRect& anchor, const QSize& panel, const QRect& available) {
  const bool below = anchor.center().y() < available.center().y();
  const int x = anchor.x() - margin;
  const int y = below ? anchor.y() + anchor.height() + gap : anchor.y() - gap - panel.height();
  const int right = available.x() + available.width();
  const int bottom = available.y() + available.height();
  return {{within(x, available.x() + margin, right - panel.width() - margin),
           within(y, available.y(), bottom - panel.height())},
          panel};
}

}  // namespace tarnwick::panel
