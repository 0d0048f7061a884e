// How well a colour can be read on another, as WCAG 2 reckons it. Pure functions.
#pragma once

#include <QColor>

namespace tarnwick::panel {

inline constexpr double plainContrast = 4.5;  // the least of any text against its ground
inline constexpr double highContrast = 7;     // the same where the desktop wants a high contrast

// 1 for two equal colours, 21 for black on white. Both are taken as opaque.
double contrast(const QColor& one, const QColor& other);

// `above` as it shows over an opaque ground.
QColor laidOver(const QColor& ground, const QColor& above);

// That colour, or the nearest darker or lighter one that has at least this contrast to the ground.
QColor legible(const QColor& colour, const QColor& ground, double least);

}  // namespace tarnwick::panel
