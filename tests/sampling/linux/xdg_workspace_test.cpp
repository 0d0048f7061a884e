#include "sampling/linux/xdg_workspace.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace tarnwick {
namespace {

const std::string slice = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

struct Session {
  TempFolder folder;
  DesktopEntries entries{{folder.at("applications")}, ""};

  std::string entry(const std::string& id, const std::string& more = "") const {
    return folder.write("applications/" + id + ".desktop",
                        "[Desktop Entry]\nType=Application\nName=The " + id + "\n" + more);
  }
  void unit(const std::string& mount, const std::string& name, const std::string& pids) const {
    folder.write("cgroup" + mount + slice + name + "/cgroup.procs", pids);
  }
  std::vector<RunningApp> apps(std::uint32_t uid = 1000) {
    return XdgWorkspace(entries, uid, folder.at("cgroup")).runningApps();
  }
};

TEST(XdgWorkspace, ListsTheApplicationUnits) {
  Session session;
  const std::string editor = session.entry("org.demo.Editor");
  const std::string mail = session.entry("mail-reader");
  const std::string helper = session.entry("helper", "NoDisplay=true\n");
  const std::string disk = session.entry("disk");
  session.unit("", "app-gnome-org.demo.Editor-77.scope", "900\n0\n31\nx\n-4\n99999999999\n");
  session.unit("", R"(app-mail\x2dreader@abc.service)", "");
  session.unit("", R"(app-mail\x2dreader@abc.service/inner/deeper)", "512\n400\n");
  session.unit("", "app-helper-1.scope", "50\n");
  session.unit("", "app-flat.slice/app-flat-disk-3.scope", "60");
  session.unit("", "app-disk@autostart.service", "40\n");
  session.unit("", "app-disk@gone.service", "");    // no process is left
  session.unit("", "app-unknown-1.scope", "70\n");  // no desktop entry
  session.unit("", "dbus-:1.2-org.demo.Editor.service", "80\n");
  const std::vector<RunningApp> expected = {{40, "The disk", "disk", disk, true},
                                            {60, "The disk", "disk", disk, false},
                                            {31, "The org.demo.Editor", "org.demo.Editor", editor, false},
                                            {50, "The helper", "helper", helper, true},
                                            {400, "The mail-reader", "mail-reader", mail, false}};
  EXPECT_EQ(session.apps(), expected);
  EXPECT_TRUE(session.apps(1001).empty());
}

TEST(XdgWorkspace, FindsTheTreeInItsOtherPlaces) {
  for (const char* mount : {"", "/unified", "/systemd"}) {
    Session session;
    EXPECT_TRUE(session.apps().empty());
    session.entry("disk");
    session.unit(mount, "app-disk-1.scope", "7\n");
    EXPECT_EQ(session.apps().size(), 1U) << mount;
  }
}

}  // namespace
}  // namespace tarnwick
