// Symbols, file icons and the sign of work in progress as widgets. System symbols are drawn with the glyphs
// of the Material Icons font: sharp at any scale, coloured like text. Where it is not installed, those that
// carry a meaning are drawn as signs of a text font, and the others as a plain ring.
#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>
#include <string_view>

#include "app/panel/panel_tree.h"

namespace tarnwick::panel {

// The glyph for a symbol name; the one for "app" when the name is not in the table.
QString glyphOf(std::string_view symbol);

// Draws a symbol centred in `area`.
void drawSymbol(QPainter& painter, const QRectF& area, std::string_view name, double pixels,
                const QColor& colour, bool bold = false);

// Does nobody else have to answer for that place? The panel's thread asks no other file system: one that
// stopped answering would stop the panel.
bool isNear(const QString& path);

// The icon of a file: the picture itself, or what a desktop entry names. Null when there is none, or none
// near.
QIcon fileIcon(const QString& path);

class SymbolView : public QWidget {
  Q_OBJECT
 public:
  SymbolView(const Symbol& symbol, const QColor& colour, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Symbol symbol_;
  QColor colour_;
  QIcon file_;
};

// Turns while it can be seen, and costs nothing otherwise.
class SpinnerView : public QWidget {
  Q_OBJECT
 public:
  SpinnerView(const Spinner& spinner, const QColor& colour, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QColor colour_;
  int timer_ = 0;
  int turn_ = 0;  // in twelfths
};

}  // namespace tarnwick::panel
