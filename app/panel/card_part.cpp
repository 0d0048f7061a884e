#include "app/panel/parts.h"

namespace tarnwick::panel {
namespace {

constexpr double iconSide = 28;
constexpr double titleWidth = 314;  // the metric and the gap before it included

Node header(const Finding& finding) {
  Stack heading = row(12);
  heading.width = titleWidth;
  heading.children.push_back({Label{.text = finding.title, .font = FontRole::cardTitle}, true});
  if (finding.metric.has_value())
    heading.children.push_back(label(*finding.metric, FontRole::metric, ColourRole::secondary));
  const Symbol icon{.name = finding.icon, .size = 17, .frame = iconSide, .colour = ColourRole::secondary};
  return {row(cardTextWidth - iconSide - titleWidth, {{icon}, {heading}})};
}

Node detailsLink(const Finding& finding, bool open) {
  Button link{.id = "details:" + finding.id,
              .title = open ? "Less" : "Details",
              .style = Button::Style::link,
              .action = open ? PanelAction{CloseDetails{}} : PanelAction{OpenDetails{finding}}};
  link.accessibleName = link.title + ": " + finding.title;
  return {link};
}

}  // namespace

const Action* primaryAction(const Finding& finding) {
  for (const Step& step : finding.steps) {
    if (step.action.has_value()) return &*step.action;
  }
  return finding.actions.empty() ? nullptr : &finding.actions.front();
}

Node remedyButton(const Action& action, const Finding& finding, bool enabled) {
  const std::string command = action.fix.command();
  return {Button{.id = "remedy:" + finding.id + ":" + command,
                 .title = action.label,
                 .toolTip = command,
                 .accessibleName = action.label + ": " + finding.title,
                 .enabled = enabled,
                 .action = RunRemedy{action, finding}}};
}

Node card(const Finding& finding, const PanelView& view) {
  const bool open = view.openCard == finding.id;
  Stack controls = row(10);
  if (const Action* primary = primaryAction(finding))
    controls.children.push_back(remedyButton(*primary, finding, !view.busy));
  controls.children.push_back(detailsLink(finding, open));

  Stack inside = column(
      6, {header(finding), label(finding.summary, FontRole::callout, ColourRole::secondary), {controls}});
  if (open) inside.children.push_back(details(finding, view));
  return {Box{.insets = {cardInset, cardInset, cardInset, cardInset},
              .cornerRadius = 10,
              .background = ColourRole::label,
              .opacity = 0.04,
              .width = listWidth,
              .child = {{inside}}}};
}

}  // namespace tarnwick::panel
