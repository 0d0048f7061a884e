// Draws the panel of an invented machine as a desktop with other wishes shows it, for the documentation:
//   panel_pictures FOLDER
// Needs no display, and takes nothing from the desktop that it runs on.
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

#include "app/demo/demo_check.h"
#include "app/panel/qt/jobs.h"
#include "records/utc_time.h"

int main(int argc, char** argv) {
  using namespace tarnwick;
  if (argc != 2) {
    std::fputs("panel_pictures FOLDER\n", stderr);
    return 2;
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication toolkit(argc, argv);
  panel::Theme::install();
  const auto date = [](Timestamp) { return std::string("14 Nov 2023"); };
  const auto check = checkDemo("developer", {{1, 501, "/Users/sam"}, timestamp(1'700'000'000), date});
  if (!check) return 1;
  const std::tuple<const char*, bool, panel::Look> pictures[] = {
      {"panel-large.png", false, {.scale = 1.5}},
      {"panel-contrast.png", false, {.highContrast = true}},
      {"panel-contrast-dark.png", true, {.highContrast = true}}};
  for (const auto& [name, dark, look] : pictures) {
    const QImage image = panel::drawPicture({check->snapshot, check->found, dark, false, {}}, look);
    if (!image.save(QString("%1/%2").arg(argv[1], name))) return 1;
  }
  return 0;
}
