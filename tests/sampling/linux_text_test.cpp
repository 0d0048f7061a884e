#include "sampling/decode/account_name.h"
#include "sampling/decode/app_unit.h"
#include "sampling/decode/arguments.h"
#include "sampling/decode/disk_space.h"
#include "sampling/decode/launch_command.h"
#include "sampling/decode/listeners.h"
#include "sampling/decode/memory_info.h"
#include "sampling/decode/number_words.h"
#include "sampling/decode/pressure.h"
#include "sampling/decode/proc_stat.h"
#include "sampling/decode/processor_times.h"
#include "sampling/decode/start_times.h"
#include "sampling/decode/thermal_zone.h"
#include "tests/support/testing.h"

namespace {

using namespace std::string_view_literals;

const std::string statTail =
    " S 41 5 6 34816 -1 4194304 19 0 0 0 17 4 0 0 20 0 1 0 130749 2400256 114 18446744073709551615";

TEST(ProcTextTest, NameEndsAtTheLastBracket) {
  for (const std::string name : {"a) b", "x) S 1 1 (y", "((sd-pam))", "", "\xFF)"}) {
    const auto stat = procStat(std::string("12 (").append(name).append(")").append(statTail));
    ASSERT_TRUE(stat) << name;
    EXPECT_EQ(stat->name, name == "\xFF)" ? "\xEF\xBF\xBD)" : name);
    EXPECT_EQ(std::tuple(stat->state, stat->ppid, stat->session, stat->terminal, stat->userTicks,
                         stat->systemTicks, stat->startTicks),
              std::tuple('S', 41, 6, 34816, 17U, 4U, 130749U));
    EXPECT_FALSE(stat->kernelThread());
  }
  const char* thread = "2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 6 0 0 20 0 1 0 0 0 0\n";
  EXPECT_TRUE(procStat(thread).value().kernelThread());
  const std::string ended = "7 (a) Z 1 7 7 0 -1 0 0 0 0 0 0 0 0 0 20 0 ";
  EXPECT_TRUE(procStat(ended + "1 0 5 0 0").value().zombie());
  EXPECT_FALSE(procStat(ended + "2 0 5 0 0").value().zombie()) << "only its first thread has ended";
}

TEST(ProcTextTest, GarbageIsAbsent) {
  const std::string good = "1 (a)" + statTail;
  ASSERT_TRUE(procStat(good));
  const std::pair<std::string, const char*> broken[] = {{"41", "-41"},
                                                        {"41", "99999999999"},
                                                        {"4194304", "-1"},
                                                        {"17", "18446744073709551616"},
                                                        {" S ", " SS "}};
  for (const auto& [from, to] : broken)
    EXPECT_FALSE(procStat(std::string(good).replace(good.find(from), from.size(), to))) << to;
  for (const std::string& cut : Strings{"", ")(", "1 (a", "1 (a) S 1", good.substr(0, good.find(" 130749"))})
    EXPECT_FALSE(procStat(cut)) << cut;
}

TEST(NumberWordsTest, TakesWhatFitsAndPassesEveryWord) {
  // A word, then whether it fits 32 bits with a sign, and 64 without.
  std::istringstream words(R"(
      0 yes yes            -1 yes no             2147483647 yes yes    2147483648 no yes
      -2147483648 yes no   -2147483649 no no     42 yes yes            999999999999999999 no yes
      9999999999999999999 no yes                 18446744073709551615 no yes   18446744073709551616 no no
      + no no   +1 no no   - no no   --1 no no   4x no no   x4 no no)");
  for (std::string word, fitsSmall, fitsLarge; words >> word >> fitsSmall >> fitsLarge;) {
    const std::string line = " \t" + word + "\n 7";
    NumberWords small(line);
    NumberWords large(line);
    const auto number = small.next<std::int32_t>();
    EXPECT_EQ(number ? std::to_string(*number) : "none", fitsSmall == "yes" ? word : "none");
    EXPECT_EQ(NumberWords(word).next<std::int32_t>(), number) << word << " ends the text";
    const auto large1 = large.next<std::uint64_t>();
    EXPECT_EQ(large1 ? std::to_string(*large1) : "none", fitsLarge == "yes" ? word : "none");
    EXPECT_EQ(small.next<std::int32_t>(), 7) << "behind " << word;
    EXPECT_EQ(large.next<std::uint64_t>(), 7U) << "behind " << word;
    EXPECT_EQ(large.next<std::uint64_t>(), std::nullopt) << "the line has ended";
  }
  EXPECT_EQ(NumberWords("00000000000000000000000042").next<std::int32_t>(), 42);
}

TEST(ProcTextTest, MemoryOfOneProcess) {
  const ProcPages pages = procPages("586 264 238 8 0 44 0\n").value();
  EXPECT_EQ(std::tuple(pages.resident, pages.shared), std::tuple(264U, 238U));
  for (const auto bad : {"", "1 2", "1 -2 3", "1 2 x", "1 18446744073709551616 3"})
    EXPECT_FALSE(procPages(bad)) << bad;
  const auto text =
      "Name:\tVmSwap: 7 kB\nRssAnonX:\t1 kB\nRssAnon:\t     132 kB\nVmSwap:\t0 kB\nHuge:\t18446744073709551615 kB\nBare:\t5\nLess:\t-1 kB"sv;
  EXPECT_EQ(kilobyteField(text, "RssAnon"), 132U * 1024);
  EXPECT_EQ(kilobyteField(text, "VmSwap"), 0U);
  for (const auto absent : {"Rss", "Huge", "Bare", "Less", "VmRSS"})
    EXPECT_EQ(kilobyteField(text, absent), std::nullopt) << absent;
}

TEST(ProcTextTest, BootTimeAndNewestPid) {
  EXPECT_EQ(bootTime("cpu  1 2 3\nintr 5 btime 9\nbtime 1700000000\nprocesses 4\n"), 1'700'000'000);
  for (const auto none :
       {"cpu 1\n", "btime soon\n", "btime 0\n", "btime 5 6\n", "btime 99999999999999999999\n"})
    EXPECT_EQ(bootTime(none), std::nullopt) << none;
  EXPECT_EQ(newestPid("0.53 1.10 1.02 1/1098 4711\n"), 4711);
  for (const auto text : {"", "0.53 1.10 1.02 1/1098", "0 0 0 0/0 0\n", "0 0 0 0/0 -7\n", "0 0 0 0/0 7x\n"})
    EXPECT_EQ(newestPid(text), std::nullopt) << text;
}

TEST(ProcTextTest, ArgumentsAreKeptUpToTheirLongestLengths) {
  const auto kept = [](const std::string& argument, int count) {
    std::string bytes = "first";
    for (int i = 0; i < count; ++i) bytes.append(1, '\0').append(argument);
    std::size_t size = 0;
    const std::vector<std::string> all = procArguments(bytes + '\0');
    for (const std::string& one : all) size += one.size();
    return std::pair(all.size(), size);
  };
  // Of 32,768 bytes each argument takes 32 and what it holds.
  EXPECT_EQ(kept("", 1'000'000), std::pair(1'023UL, 5UL));
  EXPECT_EQ(kept(std::string(4'097, 'x'), 1), std::pair(2UL, 5 + 4'096UL));
  EXPECT_EQ(kept(std::string(1'000'000, '\xFF'), 1), std::pair(2UL, 5 + 4'095UL));
  EXPECT_EQ(kept(std::string(4'096, 'x'), 100), std::pair(9UL, 32'768 - 9 * 32UL));
}

TEST(ProcTextTest, LinksArePathsAndSockets) {
  EXPECT_EQ(procLinkPath("/opt/tool (deleted)"), "/opt/tool");
  EXPECT_EQ(procLinkPath("/opt/a (deleted) b"), "/opt/a (deleted) b");
  EXPECT_EQ(socketInode("socket:[4711]"), 4711U);
  for (const auto other : {"pipe:[4711]", "socket:[]", "socket:[47x]", "socket:[4711"})
    EXPECT_EQ(socketInode(other), std::nullopt) << other;
}

TEST(TcpListenersTest, OnlyListeningSocketsOfBothFamilies) {
  const auto text =
      R"(  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode
   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 4711 1 0
   1: 0100007F:1F91 0100007F:1F90 01 00000000:00000000 00:00000000 00000000  1000        0 4712 1 0
   2: 00000000000000000000000000000000:FFFF 00000000000000000000000000000000:0000 0A 0:0 0:0 0 0 0 9
   3: 0100007F:12345 00000000:0000 0A 0:0 0:0 0 0 0 10
   4: 0100007F 00000000:0000 0A 0:0 0:0 0 0 0 10
   5: 0100007F:0016 00000000:0000 0A 0:0 0:0 0 0 0 -1)"sv;
  EXPECT_THAT(tcpListeners(text), ElementsAre(Listener{4711, 8080}, Listener{9, 65'535}));
}

TEST(MachineText, TicksOfTheSumLine) {
  const std::tuple<const char*, std::uint64_t, std::uint64_t> cases[] = {
      {"cpu  1 2 4 100 50 8 16 32 64 128\ncpu0 9 9 9 9 9 9 9 9 9 9\n", 63, 213},  // guest is in user already
      {"cpu0 9 9 9 9 9\ncpu  1 2 4 100\n", 7, 107},                               // an old kernel
      {"cpu  1 2 4\n", 0, 0},
      {"cpu  1 2 -4 100 5\n", 0, 0},
      {"cpu  18446744073709551615 1 0 0\n", 0, 0},  // the sum overflows
      {"", 0, 0}};
  for (const auto& [stat, busy, total] : cases) {
    const CpuTicks ticks = cpuTicksFromStat(stat);
    EXPECT_EQ(std::tie(ticks.busy, ticks.total), std::tie(busy, total)) << stat;
  }
}

TEST(MachineText, MemoryInfoInBytes) {
  const MemoryInfo memory = memoryInfo(
      "MemTotal:       16316412 kB\nMemFree: 1 kB\nMemAvailable: 5\n"
      "SwapTotal:      18014398509481983 kB\nSwapFree:       18014398509481984 kB\n");
  const std::uint64_t most = 18446744073709550592ULL;  // in kilobytes that fit
  EXPECT_EQ(std::tie(memory.total, memory.available, memory.swapTotal, memory.swapFree),
            std::tuple(16316412ULL * 1024, std::nullopt, most, std::nullopt));
  EXPECT_EQ(swapUsed({{}, {}, 10, 4}), 6U);
  EXPECT_EQ(swapUsed({{}, {}, 4, 10}), 0U);
  EXPECT_EQ(memoryInUse({10, 4}), 6U);
  EXPECT_EQ(memoryInUse({4, 10}) + memoryInUse({4, {}}) + memoryInUse({{}, 4}), 0U);
}

TEST(MachineText, UsersAsTheSystemNamesThem) {
  const std::string passwd =
      "root:x:0:0:root:/root:/bin/sh\n::7:\nshort:x\n+\nww\xFFw:x:33:33\ntwice:x:33\nno:x:33x\nbig:x:4294967296:\nlast:x:9";
  const std::pair<std::uint32_t, Text> cases[] = {
      {0, "root"}, {33, "ww\uFFFDw"}, {7, {}}, {9, "last"}, {1, {}}};
  for (const auto& [uid, name] : cases) EXPECT_EQ(accountName(passwd, uid), name) << uid;
  EXPECT_EQ(accountName(std::string(400, 'a') + ":x:5:", 5), std::string(255, 'a'));
}

TEST(MachineText, PressureFromStalls) {
  const std::tuple<const char*, const char*, std::optional<int>> cases[] = {
      {"avg10=0.00", "avg10=0.00", 1},  {"avg10=9.99", "avg10=9.99", 1},    {"avg10=10.00", "avg10=9.99", 2},
      {"avg10=0", "avg10=10.00", 4},    {"avg10=nan", "avg10=inf", {}},     {"avg10=-1", "avg10=", {}},
      {"avg10=9.999", "avg10=0.05", 1}, {"avg10=10.0", "avg10=9.9900", 2},  {"avg10=.5", "avg10=11.", {}},
      {"avg60=50.00", "", {}},          {"avg10=100.00", "avg10=broken", 2}};
  for (const auto& [some, full, level] : cases) {
    const std::string text = std::string("some ") + some + " avg60=0.00\nfull " + full + " avg60=0.00\n";
    EXPECT_EQ(pressureFromStalls(text), level) << text;
  }
}

TEST(MachineText, PressureFromAvailableMemory) {
  using Bytes = std::optional<std::uint64_t>;
  const std::tuple<Bytes, Bytes, std::optional<int>> cases[] = {
      {1000, 0, 4},    {1000, 49, 4}, {1000, 50, 2},    {1000, 99, 2},      {1000, 100, 1},
      {1000, 2000, 1}, {0, 0, {}},    {Bytes(), 5, {}}, {1000, Bytes(), {}}};
  for (const auto& [total, available, level] : cases)
    EXPECT_EQ(pressureFromAvailable({total, available, {}, {}}), level) << available.value_or(0);
}

TEST(MachineText, ThermalStateOfTheZoneThatIsWorstOff) {
  const std::tuple<const char*, std::vector<ThermalZone>, ThermalState> cases[] = {
      {"more than 5 degrees below", {{89'999, 95'000, 105'000}}, ThermalState::nominal},
      {"5 degrees below", {{90'000, 95'000, 105'000}}, ThermalState::fair},
      {"at passive", {{95'000, 95'000, 105'000}}, ThermalState::serious},
      {"at critical", {{105'000, 95'000, 105'000}}, ThermalState::critical},
      {"critical alone", {{104'999, {}, 105'000}}, ThermalState::nominal},
      {"own trip points", {{60'000, 95'000, {}}, {50'000, 45'000, {}}}, ThermalState::serious},
      {"order does not matter", {{50'000, 45'000, {}}, {60'000, 61'000, {}}}, ThermalState::serious},
      {"equally hot", {{60'000, 60'000, {}}, {60'000, 95'000, {}}}, ThermalState::serious},
      {"hotter without trip points", {{99'000, {}, {}}, {60'000, 60'000, {}}}, ThermalState::serious},
      {"no temperature", {{{}, 1, 1}, {0, 1, 1}, {-5000, 1, 1}}, ThermalState::nominal}};
  for (const auto& [about, zones, state] : cases) EXPECT_EQ(thermalState(zones), state) << about;
}

TEST(MachineText, TripPointsKeepTheLowestThatSlows) {
  const std::pair<const char*, std::optional<std::int64_t>> points[] = {
      {"active\n", 40'000},    {"passive\n", 0},   {"passive\n", -274'000}, {"critical\n", {}},
      {"critical\n", 105'000}, {"hot\n", 100'000}, {"passive\n", 90'000},   {"passive\n", 95'000}};
  ThermalZone found;
  for (const auto& [type, temperature] : points) addTripPoint(found, type, temperature);
  EXPECT_EQ(std::tie(found.passive, found.critical), std::tuple(90'000, 100'000));
  EXPECT_EQ(numberAlone("-47000\n"), -47'000);
  for (const char* text : {"", "1 2\n", "1\n2\n", "0x10"}) EXPECT_EQ(numberAlone(text), std::nullopt) << text;
}

TEST(MachineText, DiskSpaceThatDoesNotFitIsUnknown) {
  EXPECT_EQ(diskSpace(1, std::uint64_t{1} << 62U, 2).free, 0);
  EXPECT_EQ(diskSpace(1, std::uint64_t{1} << 62U, 4).total, 0);
}

TEST(ApplicationIDTest, FollowsTheFormOfUnitNames) {
  std::istringstream cases(R"(
      app-firefox.service                               firefox
      app-org.kde.kate@3f2a.service                     org.kde.kate
      app-gnome-org.gnome.Nautilus@1-2.service          org.gnome.Nautilus
      app-gnome\x2dkeyring\x2dssh@autostart.service     gnome-keyring-ssh
      app-my\x2dlauncher-code\x2doss-99.scope           code-oss
      app-caf\xc3\xa9-1.scope                           café
      app-a\xff-1.scope                                 a�)");
  for (std::string unit, id; cases >> unit >> id;) EXPECT_EQ(applicationID(unit), id) << unit;
  for (const char* none : {"app-4021.scope", R"(app-a\-1.scope)", R"(app-..\x2fetc-1.scope)",
                           "app-a-b-c-d.scope", "app-firefox-4021.slice", R"(app-a\x2g-1.scope)",
                           "app-..-1.scope", "app-.service", R"(app-a\x00b-1.scope)", ""})
    EXPECT_EQ(applicationID(none), std::nullopt) << none;
}

TEST(AppUnitFolderTest, EndsWithTheUnitBelowTheApplicationSlice) {
  const std::string manager = "/user.slice/user-1000.slice/user@1000.service";
  const std::string firefox = manager + "/app.slice/app-firefox-1.scope";
  const std::string code = manager + "/app.slice/app-code.slice/app-code-7.scope";
  EXPECT_EQ(appUnitFolder("0::" + firefox + "\n"), firefox);
  EXPECT_EQ(appUnitFolder("9:name=systemd:" + firefox + "\n0::/\n"), firefox);
  EXPECT_EQ(appUnitFolder("12:cpu:/\n0::" + code + "/inner"), code);
  for (const std::string& none :
       {"0::" + manager + "/app.slice/app-code.slice/vte-spawn-1.scope",
        "0::" + manager + "/session.slice/app-shell-1.scope", "5:cpu:" + firefox,
        std::string("0::/system.slice/app.slice/app-firefox-1.scope"), std::string()})
    EXPECT_EQ(appUnitFolder(none), std::nullopt) << none;
}

TEST(LaunchOf, LooksThroughLaunchers) {
  const std::pair<std::string, Launch> cases[] = {
      {"editor %F", {.program = "editor"}},
      {R"("/opt/An App/run" --url %u "a \"b\"")", {.program = "/opt/An App/run"}},
      {"env -u X LANG=C GDK_BACKEND=x11 /usr/bin/app %U", {.program = "/usr/bin/app"}},
      {"/snap/bin/office.writer", {.snap = "office"}},
      {"snap run --trace code", {.snap = "code"}},
      {"/usr/bin/flatpak run --branch=stable --command=x org.demo.App @@u %u @@",
       {.flatpak = "org.demo.App"}},
      {"sh -c \"exec nice -n 5 'my app' %f\"", {.program = "my app"}},
      {"/bin/sh /opt/app/run.sh", {.program = "/opt/app/run.sh"}},
      {"cautious-launcher %f java -jar %f", {.program = "java"}},
      {"env", {}},
      {"\"", {}},
      {"env env env env env env env env env app", {}}};
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
      {"# exec no\necho hello\nexec \"$@\"\nexec\nexec $\nexec ${A", {}}};
  for (const auto& [text, programs] : cases)
    EXPECT_EQ(programsOfScript(text, "/opt/app/bin/start"), programs) << text;
  for (const std::string& hostile : Strings{"$(", "`", "exec \"$(\"", "A=$(((((", "exec '", "exec \\",
                                            "\xFF=\xFF\n", "${", "exec " + std::string(50'000, '(')})
    EXPECT_TRUE(programsOfScript(hostile, "/x").size() < 2) << hostile.substr(0, 99);
}

}  // namespace
