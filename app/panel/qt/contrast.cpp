#include "app/panel/qt/contrast.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::panel {
namespace {

constexpr double middle = 0.18;  // the luminance on which black and white read equally well

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

QColor laidOver(const QColor& ground, const QColor& above) {
  const float share = above.alphaF();
  const auto mixed = [share](float below, float over) { return below + (over - below) * share; };
  return QColor::fromRgbF(mixed(ground.redF(), above.redF()), mixed(ground.greenF(), above.greenF()),
                          mixed(ground.blueF(), above.blueF()));
}

QColor legible(const QColor& colour, const QColor& ground, double least) {
  constexpr int steps = 100;
  float hue = 0;
  float saturation = 0;
  float lightness = 0;
  colour.getHslF(&hue, &saturation, &lightness);
  const float end = luminance(ground) > middle ? 0 : 1;
  QColor nearest = colour;
  for (int step = 1; step <= steps && contrast(nearest, ground) < least; ++step) {
    const float share = static_cast<float>(step) / steps;
    nearest = QColor::fromHslF(hue, saturation, lightness + (end - lightness) * share).toRgb();
  }
  return nearest;
}

}  // namespace tarnwick::panel
