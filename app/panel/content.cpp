#include "app/panel/content.h"

#include <algorithm>

#include "app/panel/panel_jobs.h"
#include "app/panel/parts.h"
#include "records/checked.h"
#include "records/wording.h"

namespace tarnwick::panel {
namespace {

constexpr std::size_t alwaysShown = 3;
constexpr double spaceForTheRest = 260;  // of the screen's height: menu bar, verdict, chips, note, footer
constexpr double capWithoutScreen = 540;

struct Groups {
  std::vector<const Finding*> main;
  std::vector<const Finding*> leftovers;
};

Groups groupsOf(const std::vector<Finding>& found) {
  Groups groups;
  for (const Finding& finding : found)
    (finding.bucket == Bucket::leftovers ? groups.leftovers : groups.main).push_back(&finding);
  return groups;
}

Node fold(const std::string& id, const std::string& title, const std::string& count, bool open,
          PanelAction action) {
  Stack line = row(6, {{Symbol{.name = open ? "chevron.down" : "chevron.right",
                               .size = 13,
                               .weight = Symbol::Weight::bold,
                               .colour = ColourRole::secondary}},
                       label(title, FontRole::foldTitle, ColourRole::label),
                       label(count, FontRole::callout, ColourRole::secondary)});
  line.width = listWidth;
  return {Fold{.id = id,
               .open = open,
               .accessibleName = title + ", " + count,
               .action = std::move(action),
               .row = {{line}}}};
}

std::string leftoverCount(const std::vector<const Finding*>& leftovers) {
  std::uint64_t bytes = 0;
  for (const Finding* finding : leftovers) bytes = saturatingAdd(bytes, finding->bytes);
  return std::to_string(leftovers.size()) + " · " + size(bytes);
}

Stack cardList(const PanelView& view, const PanelState& state) {
  const auto [main, leftovers] = groupsOf(view.found);
  Stack list = column(8);
  const auto show = [&](const Finding* finding) { list.children.push_back(card(*finding, view)); };

  const auto first = main.begin() + static_cast<std::ptrdiff_t>(std::min(main.size(), alwaysShown));
  std::for_each(main.begin(), first, show);
  if (first != main.end()) {
    const std::string count = std::to_string(main.size() - alwaysShown);
    list.children.push_back(fold("more", "More causes", count, state.showMore, ToggleMore{}));
    if (state.showMore) std::for_each(first, main.end(), show);
  }
  if (!leftovers.empty()) {
    list.children.push_back(
        fold("leftovers", "Left running", leftoverCount(leftovers), state.showLeftovers, ToggleLeftovers{}));
    if (state.showLeftovers) std::for_each(leftovers.begin(), leftovers.end(), show);
  }
  return list;
}

// A picture shows every card; a window must fit on its screen.
std::optional<double> heightCap(const PanelState& state) {
  if (!state.hasStatusItem) return std::nullopt;
  if (!state.visibleScreenHeight.has_value()) return capWithoutScreen;
  return std::max(0.0, *state.visibleScreenHeight - spaceForTheRest);
}

}  // namespace

Node content(const PanelView& view, const PanelState& state, Timestamp now) {
  Stack all = column(12, {verdictRow(view)});
  all.insets = {panelMargin, panelMargin, panelMargin, panelMargin};
  all.width = panelWidth;

  if (view.snap.has_value()) all.children.push_back(chipRow(view));
  if (view.note.has_value()) all.children.push_back(noteBanner(*view.note, state.noteIsNew));
  Stack list = cardList(view, state);
  all.children.push_back({Scroll{.width = listWidth,
                                 .heightCap = heightCap(state),
                                 .child = nodes(std::move(list)),
                                 .accessibleName = "Causes"}});
  all.children.push_back(footer(view, now));
  return {all};
}

Node pictureContent(const PanelPicture& picture) {
  const std::optional<Snapshot> snap = picture.snapshot;
  const std::optional<Note> note;
  const Guesses guesses;
  std::optional<std::string> openCard;
  if (picture.open && !picture.found.empty()) openCard = picture.found.front().id;
  return content({snap, picture.found, false, note, guesses, openCard}, {.showLeftovers = picture.open},
                 picture.snapshot.now);
}

}  // namespace tarnwick::panel
