// What the model needs, from this machine: the production twin of what tests hand in.
#pragma once

#include <functional>

#include "app/live_check.h"
#include "app/model/model_services.h"

namespace tarnwick {

class LiveServices final : public ModelServices {
 public:
  using CopyText = std::function<void(const std::string&)>;

  // `live` outlives this object. `copyText` puts a text on the pasteboard.
  LiveServices(LiveCheck& live, CopyText copyText) : live_(live), copyText_(std::move(copyText)) {}

  Check check(const std::set<Pid>& termed) override;
  void resetCaches() override { live_.resetCaches(); }
  std::optional<std::string> apply(const Fix& fix) override { return live_.apply(fix); }
  void copyText(const std::string& text) override { copyText_(text); }
  std::optional<std::string> ownExecutable() override;
  std::string explainByChild(const std::string& executable, const std::string& evidence) override;
  void freeMemory() override;
  Timestamp now() override { return live_.clock().now(); }

 private:
  LiveCheck& live_;
  CopyText copyText_;
};

}  // namespace tarnwick
