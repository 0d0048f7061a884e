#include "app/panel/qt/painter.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <cmath>
#include <thread>

#include "app/panel/qt/picture.h"
#include "app/panel/qt/popup.h"
#include "app/panel/qt/popup_place.h"
#include "app/panel/qt/single_instance.h"
#include "app/panel/qt/symbol_font.h"
#include "app/panel/qt/symbol_views.h"
#include "app/panel/qt/text_block.h"
#include "tests/app/panel/panel_sample.h"
#include "tests/support/fake_model_services.h"
#include "tests/support/hand_executor.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;

// The toolkit lives as long as the test program.
class Toolkit : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    toolkit_ = std::make_unique<QApplication>(count_, words_);
    Theme::install();
  }
  void TearDown() override { toolkit_.reset(); }

 private:
  QTemporaryDir folder_;
  char name_[9] = "qt_panel";
  char* words_[2] = {name_, nullptr};
  int count_ = 1;
  std::unique_ptr<QApplication> toolkit_;
};
[[maybe_unused]] const auto* const toolkit = testing::AddGlobalTestEnvironment(new Toolkit);

void send(QWidget* widget, QEvent::Type type, Qt::MouseButtons held) {
  const QPointF inside(5, 5);
  QMouseEvent event(type, inside, widget->mapToGlobal(inside), Qt::LeftButton, held, Qt::NoModifier);
  QCoreApplication::sendEvent(widget, &event);
}

class QtPanel : public testing::Test {
 protected:
  QtPanel() {
    services.next = {sampleSnapshot(), sampleFindings()};
    controller.toggle();
    executor.runAll();
    services.calls.clear();
  }
  void TearDown() override { controller.close(); }

  QAbstractButton* button(const QString& id) {
    auto* found = popup.widget().findChild<QAbstractButton*>(id);
    if (found == nullptr) throw std::runtime_error("no control " + id.toStdString());
    return found;
  }

  // With the pointer, on the views as they are on the screen; old views go in the next turn of the loop.
  void click(const QString& id) {
    QAbstractButton* target = button(id);
    send(target, QEvent::MouseButtonPress, Qt::LeftButton);
    send(target, QEvent::MouseButtonRelease, Qt::NoButton);
    settle();
  }

  void press(QWidget* target, Qt::Key key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &down);
    settle();
  }

  void settle() {
    executor.runAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  HandExecutor executor;
  FakeServices services{executor};
  FakeSettings settings;
  Model model{executor, services};
  Appearance appearance{nullptr};
  Popup popup{appearance, [] { return QRect(500, 0, 24, 24); },
              [this](const PanelAction& action) { controller.perform(action); }};
  PanelController controller{model, executor, popup, settings, [this] { return services.time; }};
};

TEST_F(QtPanel, ClicksReachTheController) {
  const std::string card = model.found()[0].id;
  click("details:docker");
  EXPECT_EQ(model.openCard(), card);
  EXPECT_EQ(button("details:docker")->accessibleName().toStdString(), "Less: Docker holds 8.0 GB of memory");
  click("details:docker");
  EXPECT_FALSE(model.openCard().has_value());

  click("more");
  click("remedy:disk:kill -TERM 41");
  EXPECT_THAT(services.calls, ElementsAre("apply: kill -TERM 41", "reset", "check", "free memory"));
  click("leftovers");
  EXPECT_TRUE(button("leftovers")->isChecked());
  EXPECT_TRUE(button("details:caffeinate:30")->isVisibleTo(&popup.widget()));
}

TEST_F(QtPanel, TheMenuShowsItsFiveLinesAndRunsThem) {
  settings.login = true;
  click("menu");
  auto* menu = popup.widget().findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  const QList<QAction*> lines = menu->actions();
  ASSERT_THAT(lines, SizeIs(5));
  EXPECT_EQ(lines[0]->text(), "Copy report");
  EXPECT_TRUE(lines[1]->isChecked());
  EXPECT_TRUE(lines[3]->isSeparator());
  lines[1]->trigger();
  EXPECT_FALSE(settings.login);
}

TEST_F(QtPanel, TheKeyboardReachesEveryControlAndStaysAcrossARedraw) {
  EXPECT_EQ(popup.widget().focusWidget(), &popup.widget()) << "no remedy is one key press away";
  std::vector<std::string> reached;
  for (QWidget* next = popup.widget().nextInFocusChain(); next != &popup.widget();
       next = next->nextInFocusChain()) {
    if ((next->focusPolicy() & Qt::TabFocus) == 0 || !next->isVisibleTo(&popup.widget())) continue;
    reached.push_back(next->objectName().toStdString());
    EXPECT_FALSE(next->accessibleName().isEmpty()) << reached.back();
  }
  EXPECT_THAT(reached,
              ElementsAre("remedy:docker:Cmd-Q com.docker.docker", "details:docker",
                          "remedy:browser-app:Google Chrome:kill -TERM 41",
                          "details:browser-app:Google Chrome", "remedy:pid:15:kill -TERM 15; kill -TERM 14",
                          "details:pid:15", "more", "leftovers", "refresh", "menu"));
  button("details:docker")->setFocus();
  press(button("details:docker"), Qt::Key_Return);
  EXPECT_EQ(model.openCard(), "docker");
  EXPECT_EQ(popup.widget().focusWidget(), button("details:docker"));
  bool dismissed = false;
  QObject::connect(&popup.widget(), &PopupWidget::dismissed, [&] { dismissed = true; });
  press(&popup.widget(), Qt::Key_Escape);
  EXPECT_TRUE(dismissed);
}

TEST_F(QtPanel, ALowScreenScrollsAndKeepsItsPlace) {
  click("more");
  click("leftovers");
  click("details:docker");
  auto* list = popup.widget().findChild<QScrollArea*>("list");
  ASSERT_GT(list->widget()->height(), list->height()) << "the offscreen screen is 800 points high";
  list->verticalScrollBar()->setValue(77);
  model.setOpenCard(std::nullopt);
  settle();
  list = popup.widget().findChild<QScrollArea*>("list");
  EXPECT_EQ(list->verticalScrollBar()->value(), std::min(77, list->verticalScrollBar()->maximum()));
}

// Every text has the room that its lines need, inside all the views around it.
TEST(QtPainter, NoTextIsCutOff) {
  std::vector<Finding> found = sampleFindings();
  found[0].title = QString("W").repeated(200).toStdString();
  found[1].detail =
      "one/" + QString("very").repeated(60).toStdString() + "/long/path and more words after it";
  found[2].actions[0].label = "Stop " + QString("storefront-db and ").repeated(8).toStdString();
  const std::optional<Snapshot> snap = sampleSnapshot();
  const std::optional<Note> note =
      Note{"A long note. " + found[1].detail, "hourglass", NoteColor::orange, sampleTime};
  for (const Finding& open : found) {
    const std::optional<std::string> openCard = open.id;
    const Node node = content({snap, found, false, note, {}, openCard},
                              {.showMore = true, .showLeftovers = true}, sampleTime);
    const Perform nothing;
    QWidget window;
    QWidget* panel = paint(node, Theme(false), nothing, &window);
    EXPECT_EQ(panel->width(), 400);
    window.resize(panel->size());
    window.show();  // the list lies in its frame only then
    int texts = 0;
    for (QWidget* view : panel->findChildren<QWidget*>()) {
      if (auto* edit = qobject_cast<QTextEdit*>(view)) {
        EXPECT_LE(edit->document()->size().height(), edit->height()) << edit->toPlainText().toStdString();
      }
      const bool text = qobject_cast<QLabel*>(view) != nullptr || qobject_cast<QTextEdit*>(view) != nullptr ||
                        qobject_cast<QAbstractButton*>(view) != nullptr;
      if (!text) continue;
      ++texts;
      for (QWidget* around = view; around != panel; around = around->parentWidget())
        EXPECT_TRUE(around->parentWidget()->rect().contains(around->geometry()))
            << view->accessibleName().toStdString() << around->metaObject()->className();
    }
    EXPECT_GT(texts, 30);
  }
}

double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

TEST(QtTheme, TextStandsOutFromTheWindow) {
  for (const Theme& theme : {Theme(false), Theme(true)}) {
    for (const QColor& text :
         {theme.colour(ColourRole::label), theme.colour(ColourRole::secondary), theme.link()})
      EXPECT_GE(contrast(text, theme.window()), 4.5) << text.name().toStdString();
    for (const auto tint : {ColourRole::green, ColourRole::orange})
      EXPECT_GE(contrast(theme.colour(tint), theme.window()), 3) << theme.colour(tint).name().toStdString();
  }
}

QImage pictureOf(const std::vector<Finding>& found, bool dark, bool open) {
  const Snapshot snapshot = sampleSnapshot();
  return drawPicture({snapshot, found, dark, open, ""});
}

TEST(QtPicture, IsDrawnAtTwiceTheSizeAndAlwaysTheSame) {
  const std::vector<Finding> found = sampleFindings();
  const QImage closed = pictureOf(found, false, false);
  EXPECT_EQ(closed.width(), 800);
  EXPECT_GT(closed.height(), 800);
  EXPECT_EQ(closed, pictureOf(found, false, false));
  EXPECT_EQ(closed.pixelColor(3, 3), Theme(false).window());

  EXPECT_EQ(pictureOf(found, true, false).pixelColor(3, 3), Theme(true).window());
  const QImage open = pictureOf(found, false, true);
  EXPECT_GT(open.height(), 2 * 800) << "the picture is never capped";
  EXPECT_LT(pictureOf({}, false, true).height(), 300);
}

TEST(QtPicture, IsWrittenWholeOrNotAtAll) {
  const QTemporaryDir folder;
  const Snapshot snapshot = sampleSnapshot();
  const std::vector<Finding> found = sampleFindings();
  const std::string path = folder.filePath("panel.png").toStdString();
  EXPECT_TRUE(savePicture({snapshot, found, false, false, path}));
  EXPECT_EQ(QImage(QString::fromStdString(path)).width(), 800);
  EXPECT_FALSE(savePicture({snapshot, found, false, false, folder.filePath("no/panel.png").toStdString()}));
}

TEST(QtText, AShortLastLineIsNotLeftAlone) {
  const QFont font = Theme::font(FontRole::callout);
  const QString words = "It uses most of the memory of the machine now.";
  const int oneLine = TextBlock(words, font, 4000).size().width();
  const TextBlock two(words, font, oneLine - 5);
  EXPECT_TRUE(two.text().endsWith(QString("machine") + QChar(QChar::Nbsp) + "now."))
      << two.text().toStdString();
  EXPECT_EQ(TextBlock(words, font, oneLine / 2 + 40).text(), words);
}

TEST(QtSymbols, EveryNameInUseHasItsOwnGlyph) {
  const QString names =
      "gauge.with.dots.needle.67percent checkmark.circle.fill exclamationmark.circle.fill "
      "exclamationmark.triangle.fill hourglass memorychip cpu internaldrive thermometer.high globe "
      "server.rack "
      "iphone shippingbox cup.and.saucer terminal gearshape app photo.on.rectangle.angled icloud "
      "magnifyingglass power sparkles chevron.right chevron.down arrow.clockwise ellipsis.circle";
  std::vector<QString> glyphs;
  for (const QString& symbol : names.split(' ')) {
    const std::string name = symbol.toStdString();
    EXPECT_TRUE(isKnownSymbol(name)) << name;
    EXPECT_THAT(glyphs, Not(testing::Contains(glyphOf(name)))) << name;
    glyphs.push_back(glyphOf(name));
  }
  EXPECT_FALSE(isKnownSymbol("chevron"));
  EXPECT_EQ(glyphOf("chevron"), glyphOf("app"));
}

TEST(QtSymbols, AFileIconIsThePictureOrWhatItsEntryNames) {
  const QTemporaryDir folder;
  const auto write = [&](const char* name, const QByteArray& text) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    return folder.filePath(name);
  };
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(Qt::red);
  const QString picture = folder.filePath("icon.png");
  ASSERT_TRUE(image.save(picture));
  EXPECT_FALSE(fileIcon(picture).isNull());
  EXPECT_FALSE(
      fileIcon(write("a.desktop", "[Other]\nIcon=/none\n[Desktop Entry]\nIcon = " + picture.toUtf8()))
          .isNull());
  EXPECT_TRUE(
      fileIcon(write("b.desktop", "[Desktop Entry]\nName=B\n[Other]\nIcon=" + picture.toUtf8())).isNull());
  EXPECT_TRUE(fileIcon(write("text.png", "not a picture")).isNull());
}

TEST(QtPopupPlace, LiesBesideTheIconAndInsideTheScreen) {
  const QRect screen(0, 30, 1000, 700);
  const QSize panel(400, 300);
  const std::pair<QRect, QPoint> cases[] = {
      {{500, 0, 24, 24}, {492, 30}},     // bar at the top
      {{980, 0, 24, 24}, {592, 30}},     // at its end
      {{0, 0, 24, 24}, {8, 30}},         // at its start
      {{500, 740, 24, 24}, {492, 430}},  // bar at the bottom
      {{500, 60, 1, 1}, {492, 67}},      // a pointer
  };
  for (const auto& [icon, place] : cases)
    EXPECT_EQ(popupFrame(icon, panel, screen), QRect(place, panel)) << icon.x();
  EXPECT_EQ(popupFrame({500, 0, 24, 24}, {1200, 900}, screen).topLeft(), QPoint(8, 30));
}

TEST(QtSingleInstance, ALaterStartIsHeardByTheFirst) {
  const QTemporaryDir folder;
  SingleInstance first(folder.path());
  ASSERT_TRUE(first.isFirst());
  int asked = 0;
  first.listen([&] { ++asked; });
  const SingleInstance second(folder.path());
  EXPECT_FALSE(second.isFirst());
  bool answered = false;
  std::thread later([&] { answered = second.askToOpen(); });
  while (asked == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  later.join();
  EXPECT_TRUE(answered);
  EXPECT_EQ(asked, 1);
  const QFile::Permissions others =
      QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
  EXPECT_FALSE(QFile::permissions(folder.filePath("tarnwick.socket")) & others);
  EXPECT_TRUE(SingleInstance("").isFirst());
  EXPECT_TRUE(SingleInstance("/nowhere").isFirst());
}

}  // namespace
}  // namespace tarnwick
