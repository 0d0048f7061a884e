#include "sampling/decode/proc_text.h"

#include <gmock/gmock.h>

using namespace std::string_view_literals;

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string statTail =
    " S 41 5 5 34816 -1 4194304 19 0 0 0 17 4 0 0 20 0 1 0 130749 2400256 114 18446744073709551615";

TEST(ProcStatTest, NameEndsAtTheLastBracket) {
  const std::pair<std::string, std::string> names[] = {
      {"a) b", "a) b"}, {"x) S 1 1 (y", "x) S 1 1 (y"}, {"((sd-pam))", "((sd-pam))"},
      {"", ""},         {"\xFF)", "\xEF\xBF\xBD)"},
  };
  for (const auto& [raw, name] : names) {
    const auto stat = procStat(std::string("12 (").append(raw).append(")").append(statTail));
    ASSERT_TRUE(stat) << raw;
    EXPECT_EQ(stat->name, name);
    EXPECT_EQ(std::tuple(stat->state, stat->ppid, stat->terminal, stat->userTicks, stat->systemTicks,
                         stat->startTicks),
              std::tuple('S', 41, 34816, 17U, 4U, 130749U));
    EXPECT_FALSE(stat->kernelThread());
  }
  const auto thread = procStat("2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 6 0 0 20 0 1 0 0 0 0\n");
  ASSERT_TRUE(thread);
  EXPECT_TRUE(thread->kernelThread());
}

TEST(ProcStatTest, GarbageIsAbsent) {
  const std::string good = "1 (a)" + statTail;
  ASSERT_TRUE(procStat(good));
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string bad = good;
    return bad.replace(bad.find(from), from.size(), to);
  };
  const std::string bad[] = {"",
                             ")(",
                             "1 (a",
                             "1 (a) S 1",
                             with("41", "-41"),
                             with("41", "99999999999"),
                             with("4194304", "-1"),
                             with("17", "18446744073709551616"),
                             with(" S ", " SS "),
                             good.substr(0, good.find(" 130749"))};
  for (const std::string& text : bad) EXPECT_FALSE(procStat(text)) << text;
}

TEST(ProcPagesTest, ResidentAndShared) {
  const auto pages = procPages("586 264 238 8 0 44 0\n");
  ASSERT_TRUE(pages);
  EXPECT_EQ(pages->resident, 264U);
  EXPECT_EQ(pages->shared, 238U);
  for (const auto bad : {"", "1 2", "1 -2 3", "1 2 x", "1 18446744073709551616 3"}) {
    EXPECT_FALSE(procPages(bad)) << bad;
  }
}

TEST(KilobyteFieldTest, WholeNamesAtLineStarts) {
  const auto text =
      "Name:\tVmSwap: 7 kB\nRssAnonX:\t1 kB\nRssAnon:\t     132 kB\nVmSwap:\t0 kB\nHuge:\t"
      "18446744073709551615 kB\nBare:\t5\nLess:\t-1 kB"sv;
  EXPECT_EQ(kilobyteField(text, "RssAnon"), 132U * 1024);
  EXPECT_EQ(kilobyteField(text, "VmSwap"), 0U);
  for (const auto absent : {"Rss", "Huge", "Bare", "Less", "VmRSS"}) {
    EXPECT_EQ(kilobyteField(text, absent), std::nullopt) << absent;
  }
}

TEST(BootTimeTest, FoundAmongTheCounters) {
  EXPECT_EQ(bootTime("cpu  1 2 3\nintr 5 btime 9\nbtime 1700000000\nprocesses 4\n"), 1'700'000'000);
  EXPECT_EQ(bootTime("cpu 1\nbtime soon\n"), std::nullopt);
  EXPECT_EQ(newestPid("0.53 1.10 1.02 1/1098 4711\n"), 4711);
  for (const auto text : {"", "0.53 1.10 1.02 1/1098", "0 0 0 0/0 0\n", "0 0 0 0/0 -7\n", "0 0 0 0/0 7x\n"})
    EXPECT_EQ(newestPid(text), std::nullopt) << text;
}

TEST(ProcArgumentsTest, SplitAtZeroBytes) {
  EXPECT_THAT(procArguments("node\0last"sv), ElementsAre("node", "last"));
  EXPECT_THAT(procArguments("a\0\0b\0\0"sv), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(procArguments("\0"sv), ElementsAre(""));
  EXPECT_THAT(procArguments("a\xC3(\0"sv), ElementsAre("a\xEF\xBF\xBD("));
  EXPECT_THAT(procArguments(""), IsEmpty());
}

TEST(ProcLinkTest, PathsAndSockets) {
  EXPECT_EQ(procLinkPath("/opt/tool (deleted)"), "/opt/tool");
  EXPECT_EQ(procLinkPath("/opt/a (deleted) b"), "/opt/a (deleted) b");
  EXPECT_EQ(socketInode("socket:[4711]"), 4711U);
  for (const auto other : {"pipe:[4711]", "socket:[]", "socket:[47x]", "socket:[4711"}) {
    EXPECT_EQ(socketInode(other), std::nullopt) << other;
  }
}

TEST(TcpListenersTest, OnlyListeningSocketsOfBothFamilies) {
  const auto text =
      "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n"
      "   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 4711 1 0\n"
      "   1: 0100007F:1F91 0100007F:1F90 01 00000000:00000000 00:00000000 00000000  1000        0 4712 1 0\n"
      "   2: 00000000000000000000000000000000:FFFF 00000000000000000000000000000000:0000 0A 0:0 0:0 0 0 0 9\n"
      "   3: 0100007F:12345 00000000:0000 0A 0:0 0:0 0 0 0 10\n"
      "   4: 0100007F 00000000:0000 0A 0:0 0:0 0 0 0 10\n"
      "   5: 0100007F:0016 00000000:0000 0A 0:0 0:0 0 0 0 -1"sv;
  EXPECT_THAT(tcpListeners(text), ElementsAre(Listener{4711, 8080}, Listener{9, 65'535}));
}

}  // namespace
}  // namespace tarnwick
