// What one redraw of the panel costs with 200 causes: its tree, its views, and drawing what can be seen of
// them. Needs no display.
#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <utility>
#include <vector>

#include "app/panel/content.h"
#include "app/panel/qt/painter.h"

namespace tarnwick::panel {
namespace {

constexpr int causes = 200;
constexpr int rounds = 31;
constexpr double screenHeight = 1'040;

Finding cause(int number) {
  const std::string name = std::to_string(number);
  const Action stop{"Stop", {DockerStop{name}}};
  return {
      .id = name,
      .bucket = Bucket::now,
      .title = "“make test-" + name + "” keeps 3 cores busy and has done so for two hours now",
      .detail = "It was started in a terminal that is still open, and nobody has looked at it since then.",
      .actions = {stop},
      .steps = {{"Stop it when you do not need its result.", stop},
                {"Or give it fewer cores: its own settings name the number.", std::nullopt}},
      .subject = name,
      .summary = "Started from a terminal in storefront, where it runs the tests again after each change.",
      .metric = "140% CPU",
      .icon = number % 4 == 0 ? "/usr/share/applications/none.desktop" : "terminal"};
}

struct Times {
  std::vector<double> all;  // milliseconds
  double median() {
    std::ranges::sort(all);
    return all[all.size() / 2];
  }
};

// Milliseconds of processor time that `work` takes.
template <class Work>
double timeOf(const Work& work) {
  const std::clock_t begun = std::clock();
  work();
  return static_cast<double>(std::clock() - begun) * 1000 / CLOCKS_PER_SEC;
}

void measure(const char* what, const PanelView& view) {
  const PanelState state{.showMore = true, .hasStatusItem = true, .visibleScreenHeight = screenHeight};
  const Theme theme(false);
  const Perform nothing;
  Times trees;
  Times views;
  Times drawings;
  Times farewells;
  QWidget window;
  window.resize(400, static_cast<int>(screenHeight));
  window.show();
  TextBlocks texts;
  std::unique_ptr<QWidget> shown;
  std::unique_ptr<QWidget> old;
  for (int round = 0; round < rounds; ++round) {
    Node node;
    trees.all.push_back(timeOf([&] { node = content(view, state, view.snap->now); }));
    views.all.push_back(timeOf([&] {
      texts.beginPainting();
      old = std::exchange(shown, std::unique_ptr<QWidget>(paint(node, theme, nothing, &window, &texts)));
      if (old) old->hide();
      shown->show();
    }));
    drawings.all.push_back(timeOf([&] {
      shown->findChild<QScrollArea*>("list")->verticalScrollBar()->setValue(100 * round);
      QCoreApplication::processEvents();
    }));
    farewells.all.push_back(timeOf([&] { old.reset(); }));
  }
  const double first = trees.all.front() + views.all.front();
  const double tree = trees.median();
  const double painted = views.median();
  std::printf(
      "%-24s first %5.1f ms, then %5.1f ms (tree %.1f, views %.1f); drawing %.1f ms, old views %.1f ms\n",
      what, first, tree + painted, tree, painted, drawings.median(), farewells.median());
}

}  // namespace
}  // namespace tarnwick::panel

int main(int argc, char** argv) {
  using namespace tarnwick::panel;
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication toolkit(argc, argv);
  Theme::install();
  const std::optional<tarnwick::Snapshot> snapshot = tarnwick::Snapshot{};
  std::vector<tarnwick::Finding> found;
  for (int i = 0; i < causes; ++i) found.push_back(cause(i));
  const std::optional<tarnwick::Note> note;
  const tarnwick::Guesses guesses;
  const std::optional<std::string> closed;
  const std::optional<std::string> open = "7";
  measure("200 causes", {snapshot, found, false, note, guesses, closed});
  measure("200 causes, one open", {snapshot, found, false, note, guesses, open});
  return 0;
}
