#include "sampling/decode/launch_command.h"

#include "tests/support/testing.h"

namespace tarnwick {
namespace {

TEST(LaunchOf, LooksThroughLaunchers) {
  const std::pair<std::string, Launch> cases[] = {
      {"editor %F", {.program = "editor"}},
      {R"("/opt/An App/run" --url %u "a \"b\"")", {.program = "/opt/An App/run"}},
      {"env -u X LANG=C GDK_BACKEND=x11 /usr/bin/app %U", {.program = "/usr/bin/app"}},
      {"env BAMF_HINT=/a/b.desktop /snap/bin/firefox %u", {.snap = "firefox"}},
      {"/snap/bin/office.writer", {.snap = "office"}},
      {"snap run --trace code", {.snap = "code"}},
      {"/usr/bin/flatpak run --branch=stable --command=x org.demo.App @@u %u @@",
       {.flatpak = "org.demo.App"}},
      {"sh -c \"exec nice -n 5 'my app' %f\"", {.program = "my app"}},
      {"/bin/sh /opt/app/run.sh", {.program = "/opt/app/run.sh"}},
      {"cautious-launcher %f java -jar %f", {.program = "java"}},
      {"env", {}},
      {"", {}},
      {"\"", {.program = ""}},
      {"env env env env env env env env env app", {}},
  };
  for (const auto& [command, launch] : cases) EXPECT_EQ(launchOf(commandWords(command)), launch) << command;
}

TEST(SharedRuntime, VersionsFollow) {
  for (const char* name : {"python3.11", "java", "electron28", "wine64", "node", "bash", "perl5.36.0"})
    EXPECT_TRUE(isSharedRuntime(name)) << name;
  for (const char* name : {"javac-ide", "nodepad", "pythonista", "7", "", "code"})
    EXPECT_FALSE(isSharedRuntime(name)) << name;
}

TEST(ProgramsOfScript, FillsInWhatTheScriptSaysOfItself) {
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"exec /usr/lib/a/a \"$@\"", {"/usr/lib/a/a"}},
      {"LIB=/usr/lib/a\nexport NAME='b c'\nexec -a \"$0\" \"$LIB/${NAME}\" \"$@\"", {"/usr/lib/a/b c"}},
      {"HERE=\"`dirname \"$(readlink -f \"$0\")\"`\"\n\"$HERE/run\" \"$@\" &", {"/opt/app/bin/run"}},
      {"TOP=$(cd \"$(dirname \"$0\")/..\" && pwd)\nFOO=1 exec $TOP/run $@", {"/opt/app/bin/../run"}},
      {"X=/a\nX=`uname`\nexec $X/run\nexec run \"$@\"", {"run"}},  // what it does not know it leaves out
      {"# exec no\necho hello\nexec \"$@\"\nexec\nexec $\nexec ${A", {}},
  };
  for (const auto& [text, programs] : cases)
    EXPECT_EQ(programsOfScript(text, "/opt/app/bin/start"), programs) << text;
  for (const char* hostile : {"$(", "`", "exec \"$(\"", "A=$(((((", "exec '", "exec \\", "\xFF=\xFF\n", "${"})
    EXPECT_TRUE(programsOfScript(hostile, "/x").size() < 2) << hostile;
  EXPECT_TRUE(programsOfScript("exec " + std::string(50'000, '('), "/x").size() < 2);
}

}  // namespace
}  // namespace tarnwick
