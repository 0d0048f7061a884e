// What stands around the list of cards: verdict, chips and note above it, the footer below.
#include <algorithm>
#include <array>
#include <cmath>

#include "app/panel/content.h"
#include "app/panel/panel_jobs.h"
#include "app/panel/parts.h"
#include "diagnosis/detect.h"
#include "diagnosis/verdict.h"
#include "records/wording.h"

namespace tarnwick::panel {
namespace {

// `measure`: what the figure is of. `users`: the biggest of it; may be empty.
Node chip(const std::string& symbol, const std::string& measure, const std::string& text, bool warning,
          const std::string& users = "") {
  Stack inside = row(8);
  inside.children.push_back(
      {Symbol{.name = symbol, .size = 12, .colour = warning ? ColourRole::orange : ColourRole::secondary}});
  inside.children.push_back(label(text, FontRole::caption, ColourRole::label));
  Spoken spoken{text, warning ? measure + ", a warning" : measure};
  if (!users.empty()) {
    inside.toolTip = "Most of it: " + users;
    spoken.description += ". " + inside.toolTip;
  }
  return {Box{.insets = {3, 8, 3, 8},
              .background = warning ? ColourRole::orange : ColourRole::label,
              .opacity = warning ? 0.18 : 0.05,
              .child = {{inside}},
              .spoken = std::move(spoken)}};
}

std::string memoryWord(std::int32_t pressure) {
  constexpr std::array<const char*, 5> words{"OK", "OK", "tight", "tight", "full"};
  return words.at(static_cast<std::size_t>(std::clamp(pressure, 0, 4)));
}

ColourRole roleOf(NoteColor color) {
  switch (color) {
    case NoteColor::green:
      return ColourRole::green;
    case NoteColor::orange:
      return ColourRole::orange;
    case NoteColor::secondary:
      break;
  }
  return ColourRole::secondary;
}

// For so many seconds a check is of just now.
constexpr double justNow = 10;

}  // namespace

std::string age(const PanelView& view, Timestamp now) {
  if (view.busy) return "Checking…";
  if (!view.snap.has_value()) return "";
  const double seconds = secondsBetween(view.snap->now, now);
  return seconds < justNow ? "Updated just now" : "Updated " + ago(seconds) + " ago";
}

// A minute at most: the user's clock may be set meanwhile.
std::optional<double> secondsToNextAge(const PanelView& view, Timestamp now) {
  constexpr double minute = 60;
  if (view.busy || !view.snap.has_value()) return std::nullopt;
  const double seconds = secondsBetween(view.snap->now, now);
  if (seconds < justNow) return std::min(justNow - seconds, minute);
  const double unit = seconds < minute ? 1 : minute;
  return unit - std::fmod(seconds, unit);
}

Node verdictRow(const PanelView& view) {
  if (!view.snap.has_value() && !view.busy && view.note.has_value()) {
    return {row(
        10,
        {{Symbol{
             .name = "exclamationmark.circle.fill", .size = 17, .frame = 19, .colour = ColourRole::orange}},
         label("This machine cannot be seen.", FontRole::headline, ColourRole::label)})};
  }
  if (!view.snap.has_value()) {
    const std::string checking = "Checking your Mac…";
    return {row(8, {{Spinner{.accessibleName = "Checking"}},
                    label(checking, FontRole::headline, ColourRole::label)})};
  }
  const Verdict answer = verdict(*view.snap, view.found);
  Stack words = column(2, {label(answer.headline, FontRole::headline, ColourRole::label)});
  if (answer.cause.has_value())
    words.children.push_back(label(*answer.cause, FontRole::subheadline, ColourRole::secondary));
  Stack line = row(10, {{Symbol{.name = answer.ok ? "checkmark.circle.fill" : "exclamationmark.circle.fill",
                                .size = 17,
                                .frame = 19,
                                .colour = answer.ok ? ColourRole::green : ColourRole::orange}},
                        {words, true}});
  line.spoken = {answer.headline, answer.cause.value_or("")};
  return {line};
}

Node chipRow(const PanelView& view) {
  const Snapshot& snapshot = *view.snap;
  const auto biggest = [&](Scarce kind) {
    return view.users == nullptr ? "" : biggestOf(*view.users, kind, namedUsers, snapshot);
  };
  const auto diskFree = static_cast<std::uint64_t>(std::max<std::int64_t>(snapshot.diskFree, 0));
  return {row(6, {chip("memorychip", "Memory pressure", "Memory " + memoryWord(snapshot.pressure),
                       snapshot.pressure >= 2, biggest(Scarce::memory)),
                  chip("cpu", "Share of the processor that is busy",
                       "Processor " + wholePercent(snapshot.cpuBusy) + "%", snapshot.cpuBusy > 0.8,
                       biggest(Scarce::processor)),
                  chip("internaldrive", "Free space on the disk", size(diskFree) + " free",
                       snapshot.diskFree <= lowDiskBytes)})};
}

Node noteBanner(const Note& note, bool isNew) {
  const ColourRole colour = roleOf(note.color);
  constexpr double textWidth = 356;
  constexpr double symbolSide = 15;
  constexpr double distance = 7;
  constexpr double inset = 8;
  const Label text{.text = note.text, .font = FontRole::body, .wrapWidth = textWidth, .selectable = true};
  const Symbol icon{.name = note.icon, .size = symbolSide, .colour = colour};
  return {Box{.insets = {inset, inset, inset, inset},
              .cornerRadius = 8,
              .background = colour,
              .opacity = 0.12,
              .width = listWidth,
              .widest = inset + symbolSide + distance + textWidth + inset,
              .child = {{row(distance, {{icon}, {text}})}},
              .spoken = {note.text, "Outcome of the last action", isNew}}};
}

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
  Stack line = row(10, {{Label{.text = age(view, now),
                               .font = FontRole::caption,
                               .colour = ColourRole::secondary,
                               .id = ageLabel},
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
