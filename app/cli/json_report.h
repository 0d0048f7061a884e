// What a check found as one JSON document, for scripts; docs/report.schema.json says what stands in it. Pure.
#pragma once

#include <string>
#include <vector>

#include "diagnosis/biggest_users.h"
#include "diagnosis/report.h"
#include "records/finding.h"
#include "records/snapshot.h"

namespace tarnwick {

// What the document is about; refers to what its maker owns.
struct JsonSubject {
  const Snapshot& snapshot;
  const std::vector<Finding>& findings;  // in pipeline order
  const Guesses& guesses;
  const BiggestUsers& users;
  const std::vector<std::string>& leftOut;  // who could not be asked, or did not answer in time
};

enum class JsonLayout {
  oneLine,  // for streams of documents
  indented
};

// Valid JSON in valid UTF-8 whatever the texts hold, with one line feed at its end.
std::string jsonReport(const JsonSubject& subject, JsonLayout layout);

}  // namespace tarnwick
