#include "app/panel/panel_module.h"

#include <QApplication>

#include "app/panel/qt/jobs.h"
#include "app/panel/qt/theme.h"

namespace tarnwick::panel {
namespace {

void keepSilent(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/) {}

struct Arguments {
  char name[9] = "tarnwick";
  char* words[2] = {name, nullptr};
  int count = 1;
};

int run(const PanelApplication& application) { return runApplication(application); }

// Needs no display, and must not depend on the desktop it runs on.
int run(const PanelPicture& picture) {
  qInstallMessageHandler(keepSilent);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI",
                           "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE"})
    qunsetenv(name);
  Arguments arguments;
  const QApplication toolkit(arguments.count, arguments.words);
  Theme::install();
  return savePicture(picture) ? 0 : 1;
}

}  // namespace
}  // namespace tarnwick::panel

extern "C" __attribute__((visibility("default"))) int tarnwickPanel(const tarnwick::panel::PanelJob& job) {
  return std::visit([](const auto& kind) { return tarnwick::panel::run(kind); }, job);
}
