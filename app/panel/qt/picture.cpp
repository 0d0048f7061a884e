// The panel drawn into a PNG, without a screen.
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <memory>

#include "app/panel/qt/jobs.h"
#include "app/panel/qt/painter.h"

namespace tarnwick::panel {
namespace {

constexpr int pictureScale = 2;

// What the panel is drawn on where there is no window.
class Backdrop : public QWidget {
 public:
  explicit Backdrop(const Theme& theme) {
    setPalette(theme.palette());
    setAutoFillBackground(true);
  }
};

}  // namespace

QImage drawPicture(const PanelPicture& picture, Look look) {
  const Node panel = pictureContent(picture);
  look.dark = picture.dark;
  const Theme theme(look);
  const Perform nothing = [](const PanelAction&) {};
  Backdrop backdrop(theme);
  backdrop.resize(paint(panel, theme, nothing, &backdrop)->size());
  QImage image(backdrop.size() * pictureScale, QImage::Format_RGBA8888);
  if (image.isNull()) return image;
  image.setDevicePixelRatio(pictureScale);
  image.fill(theme.window());
  backdrop.render(&image);
  return image;
}

bool savePicture(const PanelPicture& picture) {
  const QImage image = drawPicture(picture);
  QBuffer file;
  return !image.isNull() && file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") &&
         picture.write(file.data().toStdString());
}

}  // namespace tarnwick::panel
