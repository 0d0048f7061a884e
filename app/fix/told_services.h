// The machine's services for somebody who sits at the terminal: a line while they wait, and a remedy's parts
// one by one, each written down before and after. Like the machine's own.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>

#include "app/fix/remedy_progress.h"
#include "app/model/model_services.h"

namespace tarnwick {

class ToldServices final : public ModelServices {
 public:
  // Both outlive this object.
  ToldServices(ModelServices& machine, RemedyProgress& progress) : machine_(machine), progress_(progress) {}

  // What the line says during the next remedy.
  void waitWith(std::string line) { line_ = std::move(line); }

  Check check(const std::set<Pid>& termed) override;
  std::optional<std::string> apply(const Fix& fix) override;
  void resetCaches() override { machine_.resetCaches(); }
  std::optional<std::string> ownExecutable() override { return machine_.ownExecutable(); }
  std::string explainByChild(const std::string& executable, const std::string& evidence) override {
    return machine_.explainByChild(executable, evidence);
  }
  void freeMemory() override { machine_.freeMemory(); }
  Timestamp now() override { return machine_.now(); }

 private:
  std::optional<std::string> applyPart(const Fix& fix);

  ModelServices& machine_;
  RemedyProgress& progress_;
  std::string line_;
};

}  // namespace tarnwick
