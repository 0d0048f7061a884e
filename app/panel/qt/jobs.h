// What the toolkit's module does for each of its two jobs. Main thread.
#pragma once

#include "app/panel/panel_jobs.h"
#include "app/panel/qt/theme.h"

class QImage;

namespace tarnwick::panel {

// The running application, until the user quits. The exit status; see showApplication().
int runApplication(const PanelApplication& application);

// The panel of that picture on the colour of a window, twice as large as on a plain screen. The same values
// give the same picture, as long as the fonts of the machine stay the same: of `look` counts what the picture
// does not say itself. After the QApplication was made.
QImage drawPicture(const PanelPicture& picture, Look look = {});

// Writes it as a PNG. False when the file could not be written; then there is none, or the old one.
bool savePicture(const PanelPicture& picture);

}  // namespace tarnwick::panel
