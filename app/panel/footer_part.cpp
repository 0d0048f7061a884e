#include "app/panel/content.h"
#include "app/panel/parts.h"
#include "records/wording.h"

namespace tarnwick::panel {
namespace {

std::string freshness(const PanelView& view, Timestamp now) {
  if (view.busy) return "Checking…";
  if (!view.snap.has_value()) return "";
  const double age = secondsBetween(view.snap->now, now);
  return age < 10 ? "Updated just now" : "Updated " + ago(age) + " ago";
}

}  // namespace

Node footer(const PanelView& view, Timestamp now) {
  const Button again{.id = "refresh",
                     .symbol = "arrow.clockwise",
                     .toolTip = "Check again",
                     .accessibleName = "Check again",
                     .style = Button::Style::borderless,
                     .enabled = !view.busy,
                     .action = CheckAgain{}};
  const Button more{.id = "menu",
                    .symbol = "ellipsis.circle",
                    .accessibleName = "Menu",
                    .style = Button::Style::borderless,
                    .action = OpenMenu{}};
  Stack line = row(
      10, {{Label{.text = freshness(view, now), .font = FontRole::caption, .colour = ColourRole::secondary},
            true},
           {again},
           {more}});
  line.width = listWidth;
  return {line};
}

std::vector<MenuItem> menu(bool opensAtLogin, bool prTitles) {
  return {{.title = "Copy report", .action = CopyReport{}},
          {.title = "Open at login", .checked = opensAtLogin, .checkable = true, .action = ToggleLoginItem{}},
          {.title = "Show pull request titles",
           .checked = prTitles,
           .checkable = true,
           .action = TogglePrTitles{}},
          {},
          {.title = "Quit Tarnwick", .action = Quit{}}};
}

}  // namespace tarnwick::panel
