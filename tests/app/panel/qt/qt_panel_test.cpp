#include "app/panel/qt/painter.h"

#include <sys/stat.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>

#include "app/panel/qt/jobs.h"
#include "app/panel/qt/single_instance.h"
#include "app/panel/qt/symbol_views.h"
#include "app/panel/qt/text_views.h"
#include "tests/app/panel/qt/panel_stage.h"
#include "tests/support/linux/fuse_mount.h"

namespace {

// Without a desktop, on two screens: of 800 x 800 points; and right of it a lower one, with two pixels to a
// point.
struct Offscreen : Toolkit {
  void SetUp() override {
    const QString screens = folder.filePath("screens.json");
    QFile file(screens);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"screens": [
      {"name": "one", "x": 0, "y": 0, "width": 800, "height": 800, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
      {"name": "two", "x": 800, "y": 0, "width": 1600, "height": 1200, "logicalDpi": 96, "logicalBaseDpi": 96,
       "dpr": 2}]})");
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.toUtf8());
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");  // without one, it would start a bus
    Toolkit::SetUp();
  }

  QTemporaryDir folder;
};
[[maybe_unused]] const auto* const toolkit = testing::AddGlobalTestEnvironment(new Offscreen);

void send(QWidget* widget, QEvent::Type type, Qt::MouseButtons held) {
  const QPointF inside(5, 5);
  QMouseEvent event(type, inside, widget->mapToGlobal(inside), Qt::LeftButton, held, Qt::NoModifier);
  QCoreApplication::sendEvent(widget, &event);
}

struct QtPanelTest : PanelStage {
  QtPanelTest() { services.calls.clear(); }

  QAbstractButton* button(const QString& id) { return panel.window().findChild<QAbstractButton*>(id); }
  QScrollArea* list() { return panel.window().findChild<QScrollArea*>("list"); }

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
};

TEST_F(QtPanelTest, ClicksReachTheController) {
  click("details:docker");
  EXPECT_EQ(button("details:docker")->accessibleName().toStdString(), "Less: Docker holds 8.0 GB of memory");
  click("more");
  click("remedy:disk:kill -TERM 41");
  EXPECT_THAT(services.calls, ElementsAre("apply: kill -TERM 41", "reset", "check", "free memory"));
  click("leftovers");
  EXPECT_TRUE(button("leftovers")->isChecked());
  EXPECT_TRUE(button("details:caffeinate:30")->isVisibleTo(&panel.window()));
}

TEST_F(QtPanelTest, TheMenuShowsItsFiveLinesAndRunsThem) {
  settings.login = true;
  click("menu");
  const QList<QAction*> lines = panel.window().findChild<QMenu*>()->actions();
  ASSERT_THAT(lines, SizeIs(5));
  EXPECT_EQ(lines[0]->text(), "Copy report");
  EXPECT_TRUE(lines[1]->isChecked() && lines[3]->isSeparator());
  lines[1]->trigger();
  EXPECT_FALSE(settings.login);
  panel.openMenu({{.title = "Tom & Jerry <b>"}});
  EXPECT_EQ(panel.window().findChildren<QMenu*>().last()->actions().first()->text(), "Tom && Jerry <b>");
}

TEST_F(QtPanelTest, OnASecondScreenItFitsThereAndIsDrawnAnewWhenItMoves) {
  ASSERT_THAT(QGuiApplication::screens(), SizeIs(2));
  const QRect visible = QGuiApplication::screens()[1]->availableGeometry();
  QtPanel second{appearance, [&] { return QRect(visible.topLeft(), QSize(24, 24)); }, {}};
  second.open();
  EXPECT_EQ(second.visibleScreenHeight(), visible.height());
  second.show(controller.content(), false);
  EXPECT_TRUE(visible.contains(second.window().geometry()));
  const QPointer<QScrollArea> list = second.window().findChild<QScrollArea*>("list");
  second.window().windowHandle()->setScreen(QGuiApplication::screens()[0]);
  QCoreApplication::processEvents();
  settle();
  EXPECT_TRUE(list.isNull()) << "new views took the place of the old";
  second.close();
}

TEST_F(QtPanelTest, QuittingEndsTheLoopWhileThePanelIsOpen) {
  QTimer::singleShot(0, &panel.window(), [&] { controller.perform(Quit{}); });
  QTimer::singleShot(60'000, &panel.window(), [] { QCoreApplication::exit(1); });
  EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(QtPanelTest, TheKeyboardReachesEveryControlAndStaysAcrossARedraw) {
  EXPECT_EQ(panel.window().focusWidget(), &panel.window()) << "no remedy is one key press away";
  std::vector<std::string> reached;
  for (QWidget* next = panel.window().nextInFocusChain(); next != &panel.window();
       next = next->nextInFocusChain()) {
    if ((next->focusPolicy() & Qt::TabFocus) == 0 || !next->isVisibleTo(&panel.window())) continue;
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
  EXPECT_EQ(panel.window().focusWidget(), button("details:docker"));
  press(&panel.window(), Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(QtPanelTest, ALowScreenScrollsAndKeepsItsPlace) {
  for (const char* id : {"more", "leftovers", "details:docker"}) click(id);
  ASSERT_GT(list()->widget()->height(), list()->height()) << "the offscreen screen is 800 points high";
  press(&panel.window(), Qt::Key_End);
  EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
  list()->verticalScrollBar()->setValue(77);
  model.setOpenCard(std::nullopt);
  settle();
  EXPECT_EQ(list()->verticalScrollBar()->value(), std::min(77, list()->verticalScrollBar()->maximum()));
}

TEST(QtPicture, IsDrawnAtTwiceTheSizeAlwaysTheSameAndHandedOverWhole) {
  const Snapshot snapshot = sampleSnapshot();
  const std::vector<Finding> found = sampleFindings();
  const auto picture = [&](bool dark, bool open) { return drawPicture({snapshot, found, dark, open, {}}); };
  const QImage closed = picture(false, false);
  EXPECT_EQ(closed.width(), 800);
  EXPECT_EQ(closed, picture(false, false));
  EXPECT_EQ(closed.pixelColor(3, 3), Theme(false).window());
  EXPECT_EQ(picture(true, false).pixelColor(3, 3), Theme(true).window());
  EXPECT_GT(picture(false, true).height(), 2 * 800) << "the picture is never capped";
  EXPECT_LT(drawPicture({snapshot, {}, false, true, {}}).height(), 300);

  for (const bool taken : {true, false}) {
    std::string file;
    const auto write = [&](const std::string& bytes) { return file = bytes, taken; };
    EXPECT_EQ(savePicture({snapshot, found, false, false, write}), taken);
    EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(file)).convertToFormat(closed.format()), closed);
  }
}

TEST(QtText, AShortLastLineIsNotLeftAlone) {
  const QFont font = Theme::font(FontRole::callout);
  const QString words = "It uses most of the memory of the machine now.";
  const int oneLine = TextBlock(words, font, 4000).size().width();
  const TextBlock two(words, font, oneLine - 5);
  EXPECT_TRUE(two.text().endsWith(QString("machine") + QChar(QChar::Nbsp) + "now."))
      << two.text().toStdString();
  EXPECT_EQ(TextBlock(words, font, oneLine / 2 + 40).text(), words);
  for (int count = 334; count < 364; ++count) {
    const QString lengthy = QString("nn ").repeated(count) + "now.";
    EXPECT_EQ(TextBlock(lengthy, font, oneLine).text(), lengthy) << "so long a text is laid out once";
  }
}

TEST(QtSymbols, EveryNameInUseHasItsOwnGlyph) {
  std::istringstream names(R"(
      gauge.with.dots.needle.67percent checkmark.circle.fill exclamationmark.circle.fill
      exclamationmark.triangle.fill hourglass memorychip cpu internaldrive thermometer.high globe
      server.rack iphone shippingbox cup.and.saucer terminal gearshape photo.on.rectangle.angled
      icloud magnifyingglass power sparkles chevron.right chevron.down arrow.clockwise ellipsis.circle)");
  std::set<QString> glyphs{glyphOf("app")};  // also of every name that is not known
  for (std::string name; names >> name;) EXPECT_TRUE(glyphs.insert(glyphOf(name)).second) << name;
  EXPECT_EQ(glyphOf("chevron"), glyphOf("app"));
}

TEST(QtSymbols, AFileIconIsThePictureOrWhatItsEntryNames) {
  const TempFolder folder;
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(Qt::red);
  const std::string picture = folder.at("icon.png");
  ASSERT_TRUE(image.save(QString::fromStdString(picture)));
  EXPECT_FALSE(fileIcon(QString::fromStdString(picture)).isNull());
  const std::tuple<const char*, std::string, bool> cases[] = {
      {"a.desktop", "[Other]\nIcon=/none\n[Desktop Entry]\nIcon = " + picture, true},
      {"b.desktop", "[Desktop Entry]\nName=B\n[Other]\nIcon=" + picture, false},
      {"text.png", "not a picture", false}};
  for (const auto& [name, text, found] : cases)
    EXPECT_NE(fileIcon(QString::fromStdString(folder.write(name, text))).isNull(), found) << name;
}

TEST(QtSymbols, WhereNobodyAnswersThereIsNoIcon) {
  if (::geteuid() != 0) GTEST_SKIP() << "mounting takes root";
  const TempFolder folder;
  std::filesystem::create_directory(folder.at("dead"));
  FuseMount mount(folder.at("dead"), FuseMount::Kind::swallowing);
  if (!mount.isMounted()) GTEST_SKIP() << "no file system of one's own can be mounted here";
  ASSERT_FALSE(std::filesystem::exists(folder.at("dead/x"))) << "the kernel has made its acquaintance";
  mount.die(5);
  const std::string entry = folder.write("a.desktop", "[Desktop Entry]\nIcon=" + folder.at("dead/icon.png"));
  for (const std::string& path : {folder.at("dead/b.desktop"), folder.at("dead/c.png"), entry})
    EXPECT_TRUE(fileIcon(QString::fromStdString(path)).isNull()) << path;
  EXPECT_EQ(mount.swallowed(), 0);
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
  EXPECT_FALSE(QFile::permissions(folder.filePath("tarnwick.socket")) & QFile::Permissions(0x0077))
      << "one's own";
  EXPECT_FALSE(first.isRefused() || second.isRefused());
  ASSERT_TRUE(QFile::setPermissions(folder.filePath("tarnwick.socket"), QFile::Permissions(0x7777)));
  EXPECT_FALSE(second.askToOpen()) << "anybody may have put it there";
}

TEST(QtSingleInstance, WhereAStrangerMayBeEveryStartIsTheFirst) {
  const QTemporaryDir open;
  QFile::setPermissions(open.path(), QFile::permissions(open.path()) | QFile::ReadOther | QFile::ExeOther);
  const QTemporaryDir piped;
  ASSERT_EQ(::mkfifo(qPrintable(piped.filePath("tarnwick.lock")), 0600), 0);
  for (const QString& folder : {open.path(), piped.path(), QStringLiteral("/nowhere"), QString()}) {
    SingleInstance instance(folder);
    EXPECT_TRUE(instance.isFirst());
    EXPECT_EQ(instance.isRefused(), !folder.isEmpty());
    EXPECT_FALSE(instance.askToOpen());
    instance.listen([] {});
    EXPECT_FALSE(QFile::exists(folder + "/tarnwick.socket"));
  }
}

}  // namespace
