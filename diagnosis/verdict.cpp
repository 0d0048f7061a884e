#include "diagnosis/verdict.h"

#include <functional>

#include "diagnosis/detect.h"

namespace tarnwick {
namespace {

constexpr std::int32_t tightPressure = 2;
constexpr double veryBusy = 0.8;

using Wanted = std::function<bool(const Finding&)>;

// The active finding that is wanted and has the largest `measure`; of equal ones the first. Null without any.
template <class Measure>
const Finding* biggest(const std::vector<Finding>& findings, const Wanted& wanted,
                       Measure Finding::*measure) {
  const Finding* best = nullptr;
  for (const Finding& finding : findings) {
    if (finding.bucket == Bucket::leftovers || !wanted(finding)) continue;
    if (best == nullptr || finding.*measure > best->*measure) best = &finding;
  }
  return best;
}

Verdict slow(std::string headline, const Finding& cause) {
  return {std::move(headline), "The biggest cause: " + cause.subject + ".", false};
}

}  // namespace

Verdict verdict(const Snapshot& snapshot, const std::vector<Finding>& findings) {
  if (isHot(snapshot)) return {"Your Mac is too hot.", std::nullopt, false};
  if (isDiskLow(snapshot)) return {"Your disk is almost full.", std::nullopt, false};
  if (snapshot.pressure >= tightPressure) {
    const auto holdsMemory = [](const Finding& f) { return f.bytes != 0; };
    if (const Finding* cause = biggest(findings, holdsMemory, &Finding::bytes)) {
      return slow("Your Mac is short on memory.", *cause);
    }
  }
  if (snapshot.cpuBusy > veryBusy) {
    const auto worksNow = [](const Finding& f) { return f.bucket == Bucket::now; };
    if (const Finding* cause = biggest(findings, worksNow, &Finding::impact)) {
      return slow("Your Mac's processor is very busy.", *cause);
    }
  }
  const auto any = [](const Finding&) { return true; };
  if (const Finding* cause = biggest(findings, any, &Finding::impact)) {
    return slow("A few things slow your Mac down.", *cause);
  }
  return {"Your Mac looks fine right now.", std::nullopt, true};
}

}  // namespace tarnwick
