// The program itself, with its icon in trays of every kind: what clicks do, its menu, and trays that come, go
// or never were. Windows are what others see of them.
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRect>
#include <map>

#include "tests/app/panel/desktop/notifier_host.h"
#include "tests/support/testing.h"

namespace tarnwick::panel {
namespace {

// Lets the loop turn until `holds`, for ten seconds at most; whether it did.
bool await(const std::function<bool()>& holds, int milliseconds = 10'000) {
  QElapsedTimer clock;
  clock.start();
  for (; clock.elapsed() < milliseconds; QCoreApplication::processEvents(QEventLoop::AllEvents, 20))
    if (holds()) return true;
  return false;
}

QStringList linesOf(const QString& program, const QString& words) {
  QProcess process;
  process.start(program, words.split(' '));
  process.waitForFinished(5000);
  return QString::fromUtf8(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

bool xdo(const QString& words) { return QProcess::execute("xdotool", words.split(' ')) == 0; }

QRect frameOf(const QString& window) {
  const QStringList lines = linesOf("xdotool", "getwindowgeometry --shell " + window);
  const auto value = [&](qsizetype line) { return lines.value(line).section('=', 1).toInt(); };
  return {value(1), value(2), value(3), value(4)};
}

// All that can be seen of the program: icon, panel, menus.
QStringList windows() { return linesOf("xdotool", "search --onlyvisible --class ^tarnwick$"); }

// The icon is narrower; menus have no name.
QString panelWindow() {
  for (const QString& window : linesOf("xdotool", "search --onlyvisible --name ^Tarnwick$"))
    if (frameOf(window).width() >= 400) return window;
  return {};
}

bool opens() {
  return await([] { return !panelWindow().isEmpty(); });
}
bool hasKeyboard() {
  return await([] { return linesOf("xdotool", "getwindowfocus").value(0) == panelWindow(); });
}
bool isFramed() {
  return !linesOf("xprop", "-id " + panelWindow() + " _NET_WM_WINDOW_TYPE").join("").contains("UTILITY");
}

// A user on a desktop. What is done or seen is said in words, some of them with more after a colon.
struct PanelTray : testing::Test {
  ~PanelTray() override {
    stop(program);
    stop(bar);
  }

  static bool stop(QProcess& process) { return process.terminate(), process.waitForFinished(5000); }

  void does(const QString& steps) {
    for (const QString& step : steps.split(' ', Qt::SkipEmptyParts))
      ASSERT_TRUE(verbs.at(step.section(':', 0, 0))(step.section(':', 1)))
          << step.toStdString() << " of: " << steps.toStdString();
  }

  bool start() {
    program.start(TARNWICK_PROGRAM, QStringList());
    return program.waitForStarted();
  }
  bool startAgain() const {
    QProcess second;
    second.start(TARNWICK_PROGRAM, QStringList());
    return await([&] { return second.state() == QProcess::NotRunning; }) && second.exitCode() == 0;
  }
  bool ends() {
    return await([&] { return program.state() == QProcess::NotRunning; }) && program.exitCode() == 0;
  }

  QDBusMessage answer(QDBusPendingCall call) {
    await([&] { return call.isFinished(); });
    EXPECT_FALSE(call.isError()) << call.error().message().toStdString();
    return call.reply();
  }
  // As fast as a user may do it: the next does not wait for what comes of the one before.
  bool use(const QString& methods) {
    QList<QDBusPendingCall> calls;
    for (const QString& method : methods.split('+')) calls.append(host.use(method));
    return std::ranges::all_of(
        calls, [&](const auto& call) { return answer(call).type() == QDBusMessage::ReplyMessage; });
  }
  QList<std::pair<QString, int>> menu() {
    answer(host.use("AboutToShow", {0}, true));
    return NotifierHost::linesOf(answer(host.use("GetLayout", {0, -1, QStringList()}, true)));
  }
  bool shows(const QString& line) {
    return await(
        [&] { return std::ranges::any_of(menu(), [&](const auto& shown) { return shown.first == line; }); });
  }
  void choose(const QString& line) {
    for (const auto& [shown, id] : menu())
      if (shown == line)
        answer(host.use("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U}, true));
  }

  // Of a real one and a window manager; where it is, as jwm says it; empty: nowhere.
  bool startBar(const QString& place) {
    QFile file(qEnvironmentVariable("HOME") + "/jwmrc");
    if (!file.open(QIODevice::WriteOnly)) return false;
    const QString tray = place.isEmpty() ? "" : "<Tray autohide=\"off\" " + place + "><Dock/></Tray>";
    file.write(("<?xml version=\"1.0\"?><JWM>" + tray + "</JWM>").toUtf8());
    file.close();
    bar.start("jwm", {"-f", file.fileName()});
    return bar.waitForStarted();
  }
  static QRect icon() {
    for (const QString& window : windows())
      if (const QRect frame = frameOf(window); frame.width() < 100) return frame;
    return {};
  }
  // It is a window by itself for a moment before the bar takes it in.
  static bool hasSettled() {
    const QRect before = icon();
    return !before.isEmpty() && (await([] { return false; }, 200) || icon() == before);
  }
  static bool click(const QString& buttons) {
    const QPoint middle = icon().center();
    return xdo(QString("mousemove %1 %2 click --delay 80 --repeat ").arg(middle.x()).arg(middle.y()) +
               buttons);
  }

  NotifierHost host;
  QProcess program, bar;
  using Verb = std::function<bool(const QString&)>;
  const std::map<QString, Verb> verbs{
      {"list", [this](auto) { return host.appear(false); }},
      {"tray", [this](auto) { return host.appear(true); }},
      {"showing", [this](auto) { return host.startShowing(); }},
      {"leave", [this](auto) { return host.leave(); }},
      {"listed", [this](auto) { return await([&] { return !host.item.isEmpty(); }); }},
      {"unlisted", [this](auto) { return !await([&] { return !host.item.isEmpty(); }, 1000); }},
      {"use", [this](const QString& methods) { return use(methods); }},
      {"bar", [this](auto) { return startBar(R"(x="0" y="-1" width="0" height="28")"); }},
      {"barless", [this](auto) { return startBar(""); }},
      {"unbar", [this](auto) { return stop(bar); }},
      {"icon", [](auto) { return await([] { return hasSettled(); }); }},
      {"click", [](const QString& buttons) { return click(QString(buttons).replace('x', ' ')); }},
      {"start", [this](auto) { return start(); }},
      {"again", [this](auto) { return startAgain(); }},
      {"later",
       [](auto) { return await([] { return false; }, 500) || true; }},  // than a double click's 400 ms
      {"key", [](const QString& keys) { return xdo("key " + QString(keys).replace('+', ' ')); }},
      {"minimize", [](auto) { return xdo("windowminimize " + panelWindow()); }},
      {"focus", [](auto) { return xdo("windowfocus --sync " + panelWindow()); }},
      {"popup", [](auto) { return opens() && hasKeyboard() && !isFramed(); }},
      {"window", [](auto) { return opens() && isFramed(); }},
      {"closed", [](auto) { return await([] { return panelWindow().isEmpty(); }); }},
      {"windows",
       [](const QString& count) { return await([&] { return windows().size() == count.toInt(); }); }},
      {"runs", [this](auto) { return program.state() == QProcess::Running; }},
      {"ends", [this](auto) { return ends(); }},
  };
};

// As KDE, GNOME's extension, XFCE and the bars of sway have it.
using PanelTrayBus = PanelTray;

TEST_F(PanelTrayBus, EachClickTogglesAndADoubleClickIsOne) {
  does(
      "tray start listed use:Activate popup later use:Activate closed later use:Activate+Activate popup later");
  does("use:Activate+Activate closed later use:SecondaryActivate popup later use:SecondaryActivate closed");
}

TEST_F(PanelTrayBus, ABarThatShowsNoMenusGetsTheProgramsOwn) {
  does("tray start listed windows:0 use:ContextMenu windows:1 closed key:Down+Return popup");
}

TEST_F(PanelTrayBus, TheIconWaitsForWhoeverShowsIt) {
  does("list start unlisted showing listed use:Activate popup");
}

TEST_F(PanelTrayBus, ATrayThatGoesAndComesBackHasItsIconAgain) {
  does(
      "tray start listed leave again window key:Escape closed runs tray listed use:Activate popup again popup");
}

TEST_F(PanelTrayBus, WithoutATrayThePanelIsAWindowAndClosingItEnds) {
  does("start window");
  const QString properties = linesOf("xprop", "-id " + panelWindow() + " WM_CLASS _NET_WM_ICON").join('\n');
  QFile entry(TARNWICK_SOURCE_DIR "/packaging/linux/org.tarnwick.Tarnwick.desktop");
  ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
  const QString name = QString(entry.readAll()).section("\nStartupWMClass=", 1).section('\n', 0, 0);
  EXPECT_THAT(properties.toStdString(), HasSubstr(", \"" + name.toStdString() + "\"\n"));
  EXPECT_THAT(properties.toStdString(), HasSubstr("Icon (64 x 64)"));
  does("again window key:Escape ends start window tray listed key:Escape closed use:Activate popup");
}

TEST_F(PanelTrayBus, TheMenuHasThePanelsFiveLinesAndOneThatOpensIt) {
  does("tray start listed");
  QStringList lines;
  for (const auto& [line, id] : menu()) lines += line;
  EXPECT_EQ(lines.join("|").toStdString(),
            "Open Tarnwick||Copy report|Open at login|Show pull request titles||Quit Tarnwick");
  choose("Open at login");
  EXPECT_TRUE(shows("Open at login*"));
  ASSERT_TRUE(QFile::remove(qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart/tarnwick.desktop"));
  EXPECT_TRUE(shows("Open at login")) << "whoever switched it off";
  choose("Copy report");
  EXPECT_TRUE(await([] { return QGuiApplication::clipboard()->text().contains(" memory, "); }));
  does("popup key:Escape closed");
  for (int time = 0; time < 2; ++time) choose("Open Tarnwick"), does("popup");
  choose("Quit Tarnwick");
  does("ends");
}

// One that takes windows in, with a window manager and a real pointer.
using PanelTrayX = PanelTray;

TEST_F(PanelTrayX, EachClickTogglesAndADoubleClickIsOne) {
  does("bar start icon click:1x1 popup later click:1x1 closed later click:2x1 popup later");
  does("click:2x1 closed later click:3x1 popup later click:1x2 closed later click:1x2 popup");
}

TEST_F(PanelTrayX, TheMenuIsUnderTheRightButtonAndTheKeys) {
  does(
      "bar start icon click:1x3 windows:2 key:Down+Return popup later click:1x3 windows:3 key:Up+Return ends");
}

TEST_F(PanelTrayX, ATrayThatGoesAndComesBackHasItsIconAgain) {
  does("bar start icon unbar windows:0 again window focus key:Escape closed runs bar icon click:1x1 popup");
}

TEST_F(PanelTrayX, ALaterStartBringsAMinimizedWindowBack) {
  does("barless start window minimize closed again window");
}

// Two screens side by side, 640 points wide, with the bar on one of them.
TEST_F(PanelTrayX, ThePanelIsInsideTheScreenOfItsBarAndBesideIt) {
  for (const char* screen : {"one 640/170x1024/270+0+0 screen", "two 640/170x1024/270+640+0 none"})
    ASSERT_EQ(QProcess::execute("xrandr", ("--setmonitor " + QString(screen)).split(' ')), 0);
  const std::pair<const char*, QRect> bars[] = {
      {R"(x="0" y="-1" width="640" height="28")", {0, 0, 640, 996}},
      {R"(x="640" y="0" width="640" height="28")", {640, 28, 640, 996}},
      {R"(x="0" y="0" width="60" height="1024" layout="vertical")", {60, 0, 580, 1024}},
      {R"(x="1220" y="0" width="60" height="1024" layout="vertical")", {640, 0, 580, 1024}},
      {R"(x="580" y="0" width="60" height="1024" layout="vertical")", {0, 0, 580, 1024}},
      {R"(x="640" y="0" width="60" height="1024" layout="vertical")", {700, 0, 580, 1024}},
  };
  for (const auto& [place, free] : bars) {
    ASSERT_TRUE(startBar(place));
    does("start icon click:1x1 popup");
    const QRect frame = frameOf(panelWindow());
    EXPECT_TRUE(free.contains(frame)) << place << ": " << frame.x() << " " << frame.y();
    EXPECT_TRUE(stop(program) && stop(bar));
  }
}

}  // namespace
}  // namespace tarnwick::panel
