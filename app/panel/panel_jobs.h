// The two modes that need a toolkit. On Linux the toolkit lives in a module of its own that only these two
// load, so that the command line installs and runs without it. Main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/model/executor.h"
#include "app/model/model.h"
#include "app/panel/panel_window.h"
#include "app/settings/user_settings.h"

namespace tarnwick::panel {

// The normal run: icon, panel and main loop.
struct PanelApplication {
  // Makes the model for an executor whose main-thread tasks run on the toolkit's loop, and with the
  // toolkit's pasteboard. Called once; both outlive the model, and what it needs besides must outlive
  // showApplication().
  std::function<std::unique_ptr<Model>(Executor&, Model::CopyText)> makeModel;
  std::function<Timestamp()> now;
  UserSettings* settings = nullptr;  // not owned, never null
  // Ends the program at once with that status, and whatever it has started: for a user who quits while a
  // check waits for somebody.
  std::function<void(int)> leaveNow;
  // Takes what is to be done when a signal ends the program, on whatever thread; empty: nothing.
  std::function<void(std::function<void()>)> atTheEnd;
  bool exercise = false;  // open, open one card and close by themselves after 1, 4 and 9 seconds
};

// So many of the biggest users does a chip name.
inline constexpr std::size_t namedUsers = 3;

// So long is a task waited for that still runs when the user quits, in seconds.
inline constexpr double quitSeconds = 1;

// The panel drawn into a PNG at a scale of 2, without an icon and without a model.
struct PanelPicture {
  const Snapshot& snapshot;
  const std::vector<Finding>& found;
  bool dark = false;
  bool open = false;                              // the first card and the leftovers are open
  std::function<bool(const std::string&)> write;  // takes the whole file; false when it was not written
};

// What such a picture shows.
Node pictureContent(const PanelPicture& picture);

// Runs until the user quits; the exit status. Where there is no display or no module: one sentence on
// standard error and 1. When the application already runs, asks it to open its panel; 0.
int showApplication(const PanelApplication& application);

// False when nothing was written; one sentence on standard error says why where the module is missing.
bool writePanelImage(const PanelPicture& picture);

}  // namespace tarnwick::panel
