// The panel as a window on the desktop that the test runs on, over a model whose services are fakes.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>

#include "app/panel/qt/panel.h"
#include "tests/app/panel/panel_sample.h"
#include "tests/support/fake_model_services.h"
#include "tests/support/hand_executor.h"

namespace tarnwick::panel {

// The toolkit lives as long as the test program.
class Toolkit : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    toolkit_ = std::make_unique<QApplication>(count_, words_);
    Theme::install();
  }
  void TearDown() override { toolkit_.reset(); }

 private:
  char name_[9] = "tarnwick";
  char* words_[2] = {name_, nullptr};
  int count_ = 1;
  std::unique_ptr<QApplication> toolkit_;
};

struct PanelStage : testing::Test {
  PanelStage() {
    services.next = {sampleSnapshot(), sampleFindings()};
    controller.open();
    settle();
  }
  ~PanelStage() override { controller.close(); }

  // Lets the loop turn until `holds`, for ten seconds at most; whether it did.
  bool await(const std::function<bool()>& holds) {
    QElapsedTimer clock;
    clock.start();
    while (!holds()) {
      if (clock.elapsed() > 10'000) return false;
      executor.runAll();
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
  }

  // All that was begun is done, and an open panel has the keyboard, or another window of ours.
  void settle() {
    executor.runAll();
    EXPECT_TRUE(await([&] { return QApplication::activeWindow() != nullptr || !panel.isVisible(); }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  // A key on the keyboard, as X names it.
  void type(const char* key) { ASSERT_EQ(QProcess::execute("xdotool", {"key", key}), 0); }

  QString focused() {
    const QWidget* widget = panel.window().focusWidget();
    return widget == nullptr ? QString() : widget->objectName();
  }

  HandExecutor executor;
  FakeServices services{executor};
  FakeSettings settings;
  Model model{executor, services, services.pasteboard()};
  Appearance appearance{nullptr};
  QtPanel panel{appearance,
                [] { return QRect(500, 0, 24, 24); },
                {.perform = [this](const PanelAction& action) { controller.perform(action); },
                 .focusLeft = [] {},
                 .dismissed = [this] { controller.close(); }}};
  PanelController controller{model, executor, panel, settings, [this] { return services.time; }};
};

}  // namespace tarnwick::panel
