// The panel drawn into a PNG, twice as large as on a plain screen. The same values give the same bytes,
// as long as the fonts of the machine stay the same. Main thread, after the QApplication was made.
#pragma once

#include "app/panel/panel_jobs.h"

class QImage;

namespace tarnwick::panel {

// The panel of that picture on the colour of a window.
QImage drawPicture(const PanelPicture& picture);

// False when the file could not be written; then there is none, or the old one.
bool savePicture(const PanelPicture& picture);

}  // namespace tarnwick::panel
