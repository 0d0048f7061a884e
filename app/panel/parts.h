// The parts of the panel's content, one source file for each group. Only content.cpp puts them together.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/panel/content.h"

namespace tarnwick::panel {

inline constexpr double panelWidth = 400;
inline constexpr double panelMargin = 14;
inline constexpr double listWidth = panelWidth - 2 * panelMargin;  // cards, banner, folds
inline constexpr double cardInset = 10;
inline constexpr double cardTextWidth = listWidth - 2 * cardInset;

// These nodes, moved: a list in braces would copy each with all that is in it.
template <class... Views>
std::vector<Node> nodes(Views... views) {
  std::vector<Node> all;
  all.reserve(sizeof...(views));
  (all.push_back(Node{std::move(views)}), ...);
  return all;
}

// Leading-aligned.
inline Stack column(double spacing, std::vector<Node> children = {}) {
  return {.direction = Stack::Direction::vertical, .spacing = spacing, .children = std::move(children)};
}

// Centred vertically.
inline Stack row(double spacing, std::vector<Node> children = {}) {
  return {.direction = Stack::Direction::horizontal,
          .spacing = spacing,
          .alignment = Stack::Alignment::centre,
          .children = std::move(children)};
}

inline Node label(std::string text, FontRole font, ColourRole colour) {
  return {Label{.text = std::move(text), .font = font, .colour = colour}};
}

// frame_parts.cpp: the answer at the top, the three chips, the last action's outcome; the footer.
Node verdictRow(const PanelView& view);
Node chipRow(const PanelView& view);
Node noteBanner(const Note& note, bool isNew);
Node footer(const PanelView& view, Timestamp now);

// card_part.cpp: one finding, closed or open.
Node card(const Finding& finding, const PanelView& view);

}  // namespace tarnwick::panel
