// Makes widgets of a panel tree. Decides nothing: sizes follow from the tree, the fonts and the width.
#pragma once

#include <QWidget>
#include <functional>

#include "app/panel/panel_tree.h"
#include "app/panel/qt/text_views.h"
#include "app/panel/qt/theme.h"

namespace tarnwick::panel {

using Perform = std::function<void(const PanelAction&)>;

// The tree as one widget at its final size, a child of `parent`. `perform` is called from clicks, and must
// outlive the widget. `texts` remembers texts from one painting to the next; null: this one stands alone.
QWidget* paint(const Node& node, const Theme& theme, const Perform& perform, QWidget* parent,
               TextBlocks* texts = nullptr);

}  // namespace tarnwick::panel
