// What opens, closes and redraws the panel, and what its controls do. Main thread; knows no toolkit.
#pragma once

#include <functional>
#include <memory>

#include "app/model/executor.h"
#include "app/panel/content.h"
#include "app/panel/panel_window.h"
#include "app/settings/user_settings.h"

namespace tarnwick::panel {

class PanelController {
 public:
  // The time of day.
  using Now = std::function<Timestamp()>;

  // All but `now` must outlive the controller.
  PanelController(Model& model, Executor& executor, PanelWindow& window, UserSettings& settings, Now now);

  // Opens the panel, or closes it when it is open. Opening starts a check unless the last one is fresh.
  void toggle();

  void open();
  void close();

  // Opens the first card that has evidence, else the first one, and asks for its guess.
  void openFirstCard();

  // Opens the panel, and copies the report as soon as it is up to date: for a menu beside the closed panel.
  void copyFreshReport();

  // Does what a control or menu item stands for.
  void perform(const PanelAction& action);

  // The panel as it is now.
  Node content() const;

 private:
  void modelChanges();
  void render();
  void keepAgeTrue();
  void copyIfWanted();
  void toggleFold(bool& flag);
  void togglePrTitles();

  Model& model_;
  Executor& executor_;
  PanelWindow& window_;
  UserSettings& settings_;
  Now now_;
  PanelState state_;
  std::optional<Note> heard_;  // the note that was shown last
  bool renderQueued = false;   // a redraw waits for the next turn of the main loop
  bool copyNext = false;       // the report is copied when the check that runs has ended
  bool animateNext = false;    // the next redraw moves the window's edge instead of jumping
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);  // gone with the controller
  Model::Subscription watch;
};

}  // namespace tarnwick::panel
