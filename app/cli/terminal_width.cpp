#include "app/cli/terminal_width.h"

#include <utf8cpp/utf8.h>

#include <algorithm>

#include "app/cli/cell_widths.h"

namespace tarnwick {
namespace {

template <typename Ranges>
bool isIn(char32_t character, const Ranges& ranges) {
  const auto range = std::ranges::lower_bound(ranges, character, {}, &CharacterRange::last);
  return range != ranges.end() && range->first <= character;
}

std::size_t cellsOf(char32_t character) {
  if (character < zeroCells.front().first) return 1;
  if (isIn(character, zeroCells)) return 0;
  return isIn(character, twoCells) ? 2 : 1;
}

}  // namespace

std::size_t cellWidth(std::string_view utf8) {
  std::size_t cells = 0;
  for (auto at = utf8.begin(); at != utf8.end();) cells += cellsOf(utf8::unchecked::next(at));
  return cells;
}

std::string cutToCells(std::string_view utf8, std::size_t cells) {
  if (cellWidth(utf8) <= cells) return std::string(utf8);
  if (cells == 0) return {};
  std::size_t taken = 0;
  auto end = utf8.begin();
  for (auto at = end; at != utf8.end(); end = at) {
    taken += cellsOf(utf8::unchecked::next(at));
    if (taken > cells - 1) break;
  }
  return std::string(utf8.begin(), end) + "…";
}

}  // namespace tarnwick
