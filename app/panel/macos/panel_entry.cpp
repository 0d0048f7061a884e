// The panel's entries of the macOS build, whose painter is not part of it yet: both say so by their result.
#include "app/output.h"
#include "app/panel/panel_jobs.h"

namespace tarnwick {

int showApplication(const PanelApplication& /*application*/) {
  return complain("The panel is not part of the macOS build yet. Try --print.");
}

bool writePanelImage(const PanelPicture& /*picture*/) { return false; }

}  // namespace tarnwick
