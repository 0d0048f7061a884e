#include "app/cli/terminal_text.h"
#include "app/panel/parts.h"

namespace tarnwick::panel {
namespace {

constexpr double iconSide = 28;
constexpr double titleWidth = 314;  // the metric and the gap before it included
constexpr double metricWidth = 120;
constexpr double linkRoom = 80;  // that a button leaves for the link beside it

Node header(const Finding& finding) {
  Stack heading = row(12);
  heading.width = titleWidth;
  heading.children.push_back({Label{.text = finding.title, .font = FontRole::cardTitle}, true});
  if (finding.metric.has_value())
    heading.children.push_back({Label{.text = *finding.metric,
                                      .font = FontRole::metric,
                                      .colour = ColourRole::secondary,
                                      .wrapWidth = metricWidth,
                                      .description = finding.title}});
  const Symbol icon{.name = finding.icon, .size = 17, .frame = iconSide, .colour = ColourRole::secondary};
  return {row(cardTextWidth - iconSide - titleWidth, nodes(icon, std::move(heading)))};
}

Node detailsLink(const Finding& finding, bool open) {
  Button link{.id = "details:" + finding.id,
              .title = open ? "Less" : "Details",
              .style = Button::Style::link,
              .action = open ? PanelAction{CloseDetails{}} : PanelAction{OpenDetails{finding}}};
  link.accessibleName = link.title + ": " + finding.title;
  return {std::move(link)};
}

// The remedy that a closed card offers; null: none.
const Action* primaryAction(const Finding& finding) {
  for (const Step& step : finding.steps) {
    if (step.action.has_value()) return &*step.action;
  }
  return finding.actions.empty() ? nullptr : &finding.actions.front();
}

Button remedyButton(const Action& action, const Finding& finding, bool enabled) {
  const std::string command = action.fix.command();
  return {.id = "remedy:" + finding.id + ":" + command,
          .title = action.label,
          .toolTip = command,
          .accessibleName = action.label + ": " + finding.title,
          .enabled = enabled,
          .action = RunRemedy{action, finding}};
}

// What is marked and copied may be pasted into a terminal.
Node copyable(const std::string& text) {
  return {Label{.text = harmlessForClipboard(text),
                .font = FontRole::callout,
                .colour = ColourRole::secondary,
                .selectable = true},
          true};
}

Node guessRow(const std::string& guess) {
  Stack line = row(6, {{Symbol{.name = "sparkles",
                               .size = 13,
                               .colour = ColourRole::secondary,
                               .accessibleName = "A guess by the on-device AI model"}},
                       copyable(guess)});
  line.toolTip = "A guess by the on-device AI model, from the facts below. It can be wrong.";
  return {line};
}

// As wide as any other, so that the steps line up.
Node numeral(int number) {
  Stack place = row(0, {label(std::to_string(number) + ".", FontRole::number, ColourRole::secondary)});
  place.width = number < 10 ? 16 : 22;
  return {place};
}

// Is it a remedy that the closed card does not already offer?
bool isFurther(const Action& action, const Action* primary) {
  return primary == nullptr || action.id() != primary->id();
}

// What an open card adds.
Node details(const Finding& finding, const PanelView& view) {
  const Action* primary = primaryAction(finding);
  Stack all = column(6);
  all.insets.top = 4;
  all.width = cardTextWidth;

  if (finding.evidence.has_value()) {
    const auto guess = view.guesses.find(*finding.evidence);
    if (guess != view.guesses.end()) all.children.push_back(guessRow(guess->second));
  }
  all.children.push_back(copyable(finding.detail));

  int number = 0;
  for (const Step& step : finding.steps) {
    Stack instruction = column(4, {copyable(step.text)});
    if (step.action.has_value() && isFurther(*step.action, primary))
      instruction.children.push_back({remedyButton(*step.action, finding, !view.busy)});
    Stack line = row(4, {numeral(++number), {instruction, true}});
    line.alignment = Stack::Alignment::start;
    all.children.push_back({line});
  }
  for (const Action& action : finding.actions) {
    if (isFurther(action, primary)) all.children.push_back({remedyButton(action, finding, !view.busy)});
  }
  return {all};
}

}  // namespace

Node card(const Finding& finding, const PanelView& view) {
  const bool open = view.openCard == finding.id;
  Stack controls = row(10);
  if (const Action* primary = primaryAction(finding)) {
    Button remedy = remedyButton(*primary, finding, !view.busy);
    remedy.wrapWidth = cardTextWidth - linkRoom;
    controls.children.push_back({std::move(remedy)});
  }
  controls.children.push_back(detailsLink(finding, open));

  Stack inside =
      column(6, nodes(header(finding), label(finding.summary, FontRole::callout, ColourRole::secondary),
                      std::move(controls)));
  if (open) inside.children.push_back(details(finding, view));
  return {Box{.insets = {cardInset, cardInset, cardInset, cardInset},
              .cornerRadius = 10,
              .background = ColourRole::label,
              .opacity = 0.04,
              .width = listWidth,
              .child = nodes(std::move(inside)),
              .spoken = {finding.title, finding.summary}}};
}

}  // namespace tarnwick::panel
