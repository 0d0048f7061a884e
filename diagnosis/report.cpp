#include "diagnosis/report.h"

#include <utility>

#include "records/formatted.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

// A line that ends in a remedy.
ReportLine ending(std::string text, const Finding& finding, const Action& action) {
  const std::size_t at = text.size();
  appendFormatted(text, "[{}]  {}", action.label, action.fix.command());
  return {.text = std::move(text), .finding = &finding, .action = &action, .actionAt = at};
}

void addBlock(std::vector<ReportLine>& lines, const Finding& finding, const Guesses& guesses) {
  lines.push_back({.text = "  " + finding.title});
  if (finding.evidence) {
    const auto guess = guesses.find(*finding.evidence);
    if (guess != guesses.end()) lines.push_back({.text = "  \u2728 " + guess->second});
  }
  lines.push_back({.text = "  " + finding.detail});
  if (!finding.steps.empty()) lines.push_back({.text = "  What you can do:"});
  for (std::size_t i = 0; i < finding.steps.size(); ++i) {
    const Step& step = finding.steps[i];
    std::string text = formatted("    {}. {}", i + 1, step.text);
    lines.push_back(step.action ? ending(std::move(text) + "  ", finding, *step.action)
                                : ReportLine{.text = std::move(text)});
  }
  for (const Action& action : finding.actions) lines.push_back(ending("    ", finding, action));
}

}  // namespace

std::string header(const Snapshot& snapshot) {
  return formatted("{} memory, {} moved to disk · processor {}% busy · last restart {} ago",
                   size(snapshot.ram), size(snapshot.swapUsed), wholePercent(snapshot.cpuBusy),
                   ago(snapshot.uptime));
}

std::vector<ReportLine> reportLines(const Snapshot& snapshot, const std::vector<Finding>& findings,
                                    const Guesses& guesses) {
  std::vector<ReportLine> lines{{.text = header(snapshot)}};
  for (const Bucket bucket : allBuckets) {
    bool isFirst = true;
    for (const Finding& finding : findings) {
      if (finding.bucket != bucket) continue;
      if (isFirst) {
        lines.emplace_back();
        lines.push_back({.text = std::string(label(bucket)), .isHeading = true});
      }
      isFirst = false;
      addBlock(lines, finding, guesses);
    }
  }
  if (findings.empty()) {
    lines.emplace_back();
    lines.push_back({.text = "No known cause found."});
  }
  return lines;
}

std::string text(const Snapshot& snapshot, const std::vector<Finding>& findings, const Guesses& guesses) {
  std::string report;
  for (const ReportLine& line : reportLines(snapshot, findings, guesses))
    report.append(line.text).append("\n");
  return report;
}

}  // namespace tarnwick
