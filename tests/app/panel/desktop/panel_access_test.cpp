// The panel for those who use the keyboard or listen.
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <atomic>
#include <thread>

#include "tests/app/panel/qt/panel_stage.h"

namespace {

[[maybe_unused]] const auto* const toolkit = testing::AddGlobalTestEnvironment(new Toolkit);

// One object of the accessibility bus.
struct Place {
  QString program, path;
};

// A reader of the screen. Everything here waits for answers of the program under test: not its thread.
class Reader {
 public:
  Reader() : bus_(QDBusConnection::connectToBus(address(), QStringLiteral("reader"))) {}
  ~Reader() { QDBusConnection::disconnectFromBus(QStringLiteral("reader")); }

  // Whatever programs show, a line each: "role | name | description | states", in reading order. Left out are
  // plain texts, which say only themselves, and layout, which has neither name nor description.
  std::vector<std::string> read() const {
    std::vector<std::string> lines;
    walk({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}, lines);
    return lines;
  }

 private:
  static QString address() {
    return QDBusReply<QString>(
        QDBusInterface("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus").call("GetAddress"));
  }

  QDBusMessage ask(const Place& place, const char* interface, const char* method,
                   const QVariantList& words = {}) const {
    QDBusMessage question = QDBusMessage::createMethodCall(place.program, place.path, interface, method);
    question.setArguments(words);
    return bus_.call(question);
  }

  std::string property(const Place& place, const char* name) const {
    const QDBusReply<QDBusVariant> reply = ask(place, "org.freedesktop.DBus.Properties", "Get",
                                               {QStringLiteral("org.a11y.atspi.Accessible"), QString(name)});
    return reply.value().variant().toString().toStdString();
  }

  std::string states(const Place& place) const {
    constexpr std::array<std::pair<int, const char*>, 3> known{
        {{5, "collapsed"}, {10, "expanded"}, {11, "focusable"}}};
    const QVariantList reply = ask(place, "org.a11y.atspi.Accessible", "GetState").arguments();
    const auto words = qdbus_cast<QList<uint>>(reply.value(0));
    std::string all;
    for (const auto& [bit, name] : known)
      if (!words.isEmpty() && (words[0] >> bit & 1U) != 0)
        all += all.empty() ? name : std::string(" ") + name;
    return all;
  }

  void walk(const Place& place, std::vector<std::string>& lines) const {
    const QDBusReply<QString> role = ask(place, "org.a11y.atspi.Accessible", "GetRoleName");
    const std::string name = property(place, "Name");
    const std::string description = property(place, "Description");
    if (!description.empty() || (!name.empty() && role.value() != "label"))
      lines.push_back(role.value().toStdString() + " | " + name + " | " + description + " | " +
                      states(place));
    const QVariantList reply = ask(place, "org.a11y.atspi.Accessible", "GetChildren").arguments();
    if (reply.isEmpty()) return;
    const auto children = reply[0].value<QDBusArgument>();
    for (children.beginArray(); !children.atEnd();) {
      Place child;
      QDBusObjectPath path;
      children.beginStructure();
      children >> child.program >> path;
      children.endStructure();
      child.path = path.path();
      walk(child, lines);
    }
  }

  QDBusConnection bus_;
};

struct PanelAccess : PanelStage {
  // What a reader of the screen says of the panel; a program tells of itself a moment after its start.
  std::vector<std::string> heard() {
    std::vector<std::string> lines;
    const auto isPanelThere = [&] {
      return std::ranges::count(lines, "dialog | Tarnwick |  | focusable") == 1;
    };
    for (int turn = 0; turn < 100 && !isPanelThere(); ++turn) {
      std::atomic<bool> done{false};
      std::thread listener([&] {
        lines = Reader().read();
        done = true;
      });
      EXPECT_TRUE(await([&] { return done.load(); }));
      listener.join();
    }
    return lines;
  }
};

TEST_F(PanelAccess, KeysOfTheKeyboardReachAndUseTheControls) {
  EXPECT_EQ(focused(), "") << "no remedy is one key press away";
  type("Tab");
  EXPECT_TRUE(await([&] { return focused() == "remedy:docker:Cmd-Q com.docker.docker"; }));
  type("Tab");
  type("Return");
  EXPECT_TRUE(await([&] { return model.openCard() == "docker"; }));
  EXPECT_TRUE(await([&] { return focused() == "details:docker"; }));
  type("Escape");
  EXPECT_TRUE(await([&] { return !panel.isVisible(); }));
}

TEST_F(PanelAccess, EveryPartHasItsRoleItsNameAndWhatTheEyeSees) {
  services.error = "Not done: Docker did not stop the container.";
  controller.perform(RunRemedy{model.found()[0].actions[0], model.found()[0]});
  controller.perform(ToggleMore{});
  controller.perform(OpenDetails{model.found()[0]});
  EXPECT_TRUE(await([&] { return executor.mainTasks.empty(); }));
  const std::vector<std::string> parts{
      "dialog | Tarnwick |  | focusable",
      "panel | A few things slow your Mac down. | The biggest cause: docker. | ",
      "panel | Memory OK | Memory pressure | ",
      "panel | Processor 12% | Share of the processor that is busy | ",
      "panel | 140 GB free | Free space on the disk | ",
      "notification | Not done: Docker did not stop the container. | Outcome of the last action | ",
      "panel | Causes |  | ",
      "panel | Docker holds 8.0 GB of memory | Summary of docker. | ",
      "label | 8.0 GB | Docker holds 8.0 GB of memory | ",
      "push button | Quit Docker: Docker holds 8.0 GB of memory | Cmd-Q com.docker.docker | focusable",
      "push button | Less: Docker holds 8.0 GB of memory |  | focusable",
      "text | Quit Docker when you do not need it. |  | focusable",
      "push button | Stop storefront-db: Docker holds 8.0 GB of memory | docker stop c1 | focusable",
      "push button | More causes, 2 |  | expanded focusable",
      "push button | Left running, 2 · 512 MB |  | collapsed focusable",
      "push button | Check again | Check again | focusable",
      "push button | Menu |  | focusable"};
  std::vector<std::string> found;
  std::ranges::copy_if(heard(), std::back_inserter(found),
                       [&](const std::string& line) { return std::ranges::count(parts, line) != 0; });
  EXPECT_EQ(found, parts);
  controller.perform(ToggleMore{});
  EXPECT_THAT(
      heard(),
      Contains("panel | Not done: Docker did not stop the container. | Outcome of the last action | "))
      << "said once";
}

}  // namespace
