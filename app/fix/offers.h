// Which remedies of a report can be carried out from a terminal, and how they are asked for. Pure functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/cli/terminal_layout.h"
#include "diagnosis/report.h"
#include "records/finding.h"

namespace tarnwick {

// A remedy as the report showed it; a copy, because the next check replaces the findings.
struct Offer {
  Action action;
  Finding finding;
};

enum class Desktop { there, absent };

// Does it open a window or a dialog, which nobody would see without a desktop?
bool needsDesktop(const Fix& fix);

// A report in which each remedy that is offered bears its number, from 1 on.
struct NumberedReport {
  std::vector<TintedLine> lines;
  std::vector<Offer> offers;
};
NumberedReport numbered(const std::vector<ReportLine>& lines, Desktop desktop);

// The report as a terminal shows it, without numbers.
std::vector<TintedLine> tinted(const std::vector<ReportLine>& lines);

// "Stop all 4 of storefront: kill -TERM 41; kill -TERM 40": what will be done, in one line.
std::string described(const Offer& offer);

// The number that the answer names; 0 for any other answer.
std::size_t numberOf(std::string_view answer);

}  // namespace tarnwick
