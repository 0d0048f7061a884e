// Where the panel goes on the screen. A pure function.
#pragma once

#include <QRect>

namespace tarnwick::panel {

// The panel's frame next to the tray icon's rectangle `anchor`: below it in the upper half of the screen,
// above it in the lower half, and wholly inside `available` with a margin. A point works as an anchor too.
QRect popupFrame(const QRect& anchor, const QSize& panel, const QRect& available);

}  // namespace tarnwick::panel
