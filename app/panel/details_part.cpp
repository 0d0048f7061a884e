#include "app/panel/parts.h"

namespace tarnwick::panel {
namespace {

Node copyable(const std::string& text) {
  return {Label{.text = text, .font = FontRole::callout, .colour = ColourRole::secondary, .selectable = true},
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

}  // namespace

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
      instruction.children.push_back(remedyButton(*step.action, finding, !view.busy));
    Stack line = row(4, {numeral(++number), {instruction, true}});
    line.alignment = Stack::Alignment::start;
    all.children.push_back({line});
  }
  for (const Action& action : finding.actions) {
    if (isFurther(action, primary)) all.children.push_back(remedyButton(action, finding, !view.busy));
  }
  return {all};
}

}  // namespace tarnwick::panel
