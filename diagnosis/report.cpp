#include "diagnosis/report.h"

#include <iterator>

#include "records/formatted.h"
#include "records/wording.h"

namespace tarnwick {
namespace {

std::string bracketed(const Action& action) {
  return formatted("[{}]  {}", action.label, action.fix.command());
}

std::string block(const Finding& finding, const Guesses& guesses) {
  std::string lines = formatted("  {}\n", finding.title);
  if (finding.evidence) {
    const auto guess = guesses.find(*finding.evidence);
    if (guess != guesses.end()) appendFormatted(lines, "  \u2728 {}\n", guess->second);
  }
  appendFormatted(lines, "  {}\n", finding.detail);
  if (!finding.steps.empty()) lines += "  What you can do:\n";
  for (std::size_t i = 0; i < finding.steps.size(); ++i) {
    const Step& step = finding.steps[i];
    appendFormatted(lines, "    {}. {}{}\n", i + 1, step.text,
                    step.action ? "  " + bracketed(*step.action) : "");
  }
  for (const Action& action : finding.actions) appendFormatted(lines, "    {}\n", bracketed(action));
  return lines;
}

}  // namespace

std::string header(const Snapshot& snapshot) {
  return formatted("{} memory, {} moved to disk · processor {}% busy · last restart {} ago",
                   size(snapshot.ram), size(snapshot.swapUsed), wholePercent(snapshot.cpuBusy),
                   ago(snapshot.uptime));
}

std::string text(const Snapshot& snapshot, const std::vector<Finding>& findings, const Guesses& guesses) {
  std::string report = header(snapshot) + "\n";
  for (const Bucket bucket : allBuckets) {
    std::string blocks;
    for (const Finding& finding : findings) {
      if (finding.bucket == bucket) blocks += block(finding, guesses);
    }
    if (!blocks.empty()) report += formatted("\n{}\n{}", label(bucket), blocks);
  }
  if (findings.empty()) report += "\nNo known cause found.\n";
  return report;
}

}  // namespace tarnwick
