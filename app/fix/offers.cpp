#include "app/fix/offers.h"

#include <charconv>
#include <variant>

#include "records/formatted.h"

namespace tarnwick {

bool needsDesktop(const Fix& fix) {
  return std::holds_alternative<OpenSettings>(fix.kind) || std::holds_alternative<OpenTab>(fix.kind) ||
         std::holds_alternative<AskAutomation>(fix.kind);
}

std::vector<TintedLine> tinted(const std::vector<ReportLine>& lines) {
  std::vector<TintedLine> all;
  for (const ReportLine& line : lines) {
    const Tint tint = line.isHeading ? Tint::heading : line.action != nullptr ? Tint::remedy : Tint::none;
    all.push_back({.text = line.text, .tint = tint, .tintedFrom = line.actionAt});
  }
  return all;
}

NumberedReport numbered(const std::vector<ReportLine>& lines, Desktop desktop) {
  NumberedReport report{.lines = tinted(lines), .offers = {}};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const ReportLine& line = lines[i];
    if (line.action == nullptr) continue;
    if (desktop == Desktop::absent && needsDesktop(line.action->fix)) continue;
    report.offers.push_back({.action = *line.action, .finding = *line.finding});
    report.lines[i].text.insert(line.actionAt, formatted("({}) ", report.offers.size()));
  }
  return report;
}

std::string described(const Offer& offer) {
  const std::string& label = offer.action.label;
  const std::string& subject = offer.finding.subject;
  const std::string whose = label.starts_with("Stop all ") ? " of " + subject : " (" + subject + ")";
  return label + whose + ": " + offer.action.fix.command();
}

std::size_t numberOf(std::string_view answer) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
  return error == std::errc() && end == answer.data() + answer.size() ? number : 0;
}

}  // namespace tarnwick
