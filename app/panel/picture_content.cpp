#include "app/panel/content.h"
#include "app/panel/panel_jobs.h"

namespace tarnwick::panel {

Node pictureContent(const PanelPicture& picture) {
  const std::optional<Snapshot> snap = picture.snapshot;
  const std::optional<Note> note;
  const Guesses guesses;
  std::optional<std::string> openCard;
  if (picture.open && !picture.found.empty()) openCard = picture.found.front().id;
  return content({snap, picture.found, false, note, guesses, openCard}, {.showLeftovers = picture.open},
                 picture.snapshot.now);
}

}  // namespace tarnwick::panel
