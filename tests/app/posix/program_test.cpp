// The program as a user meets it: started by a shell, looked at from outside.

#include <fcntl.h>
#include <stdlib.h>

#include <regex>

#include "sampling/tools/posix/posix_tool_runner.h"
#include "system/posix/descriptor.h"
#include "tests/support/testing.h"

namespace {

// Runs a shell line in which $T is the program; standard error goes where the line sends it.
ToolResult shell(const std::string& line) {
  PosixToolRunner runner;
  const auto tool = runner.start("/bin/sh", {"-c", "export T=\"$0\"; " + line, TARNWICK_PROGRAM});
  return tool == nullptr ? ToolResult{"the shell did not start", -1} : tool->result();
}

const std::string calmReport = textOfFile(TARNWICK_SOURCE_DIR "/tests/app/fixtures/demo/calm.txt");

TEST(Program, ModesPrintAndEndAsTheyShould) {
  const std::string noTerminal =
      "tarnwick: there is no terminal to ask on, so nothing was done. Give the remedy and --yes.\n";
  const std::string unknown = "Unknown scenario “Calm”. Use memory, calm, or developer.\n";
  // Behind a pipe whose reader is known to have gone.
  const std::string gone = "{ { trap '' PIPE; while printf x 2>/dev/null; do :; done; ";
  const std::tuple<std::string, int, std::string> cases[] = {
      {R"("$T" --print --scenario calm 2>&1)", 0, calmReport},
      {R"-(cd "$(mktemp -d)" && rmdir "$PWD" && "$T" --scenario calm --demo 2>&1)-", 0, calmReport},
      {R"("$T" --print --scenario Calm 2>/dev/null)", 1, unknown},
      {R"(TARNWICK_NO_TOOLS= HOME=/nonexistent "$T" --demo --selftest 2>&1)", 0, "selftest ok\n"},
      {R"("$T" --version --dark 2>&1 | cut -d' ' -f1)", 0, "tarnwick\n"},
      {R"("$T" -h | head -1)", 0, "Tarnwick tells why this machine is slow right now.\n"},
      {R"-([ "$("$T" -V)" = "$("$T" --version)" ] && "$T" -V 2>&1 | grep -Ec '^tarnwick [0-9]+[.][0-9.]+$')-",
       0, "1\n"},
      {R"("$T" --version --jsn 2>&1 >/dev/null)", 0,
       "tarnwick: “--jsn” is no option. See tarnwick --help.\n"},
      {R"("$T" foo --selftest '' 2>&1)", 0,
       "tarnwick: “foo” and “” are no options. See tarnwick --help.\nselftest ok\n"},
      {R"-("$T" --selftest "$(printf '\033[31m\nx\377')" 2>&1 >/dev/null)-", 0,
       "tarnwick: “␛[31m x\uFFFD” is no option. See tarnwick --help.\n"},
      {R"(f=$(mktemp); trap '' XFSZ; ulimit -f 0; "$T" --demo 2>&1 >"$f"; s=$?; rm "$f"; exit $s)", 1,
       "tarnwick: the text could not be written: File too large.\n"},
      {R"("$T" --demo --exit-code >/dev/null)", 3, ""},
      {R"("$T" --print --scenario calm --exit-code >/dev/null)", 0, ""},
      {R"-(f=$(mktemp); trap '' XFSZ; ulimit -f 0; "$T" --demo --exit-code 2>/dev/null >"$f"; s=$?; rm "$f"; exit $s)-",
       1, ""},
      {R"("$T" --fix 2>&1 </dev/null)", 1, noTerminal},
      {R"("$T" --fix 'kill -TERM 2' 2>&1 </dev/null)", 1, noTerminal},
      {R"("$T" --fix '' --yes 2>&1)", 1, "tarnwick: an empty text names no remedy.\n"},
      {R"("$T" --fix --yes 2>&1)", 1,
       "tarnwick: --yes needs the remedy that is meant: --fix \"COMMAND\" --yes.\n"},
      {R"-("$T" --fix "$(printf 'x\n\033y')" --yes 2>&1)-", 1,
       "tarnwick: there is no such remedy now: “x ␛y”. Nothing was done.\n"},
      {R"(for s in 4 abc '' 5.5 -5 99999999999 86401; do "$T" --watch "$s" 2>&1 | grep -c '” is no pace: '; done | tr '\n' ' ')",
       0, "1 1 1 1 1 1 1 "},
      {R"("$T" --watch 86400 2>&1 | { read -r day time rest; echo ${#day} ${#time}; })", 0, "10 8\n"},
      {R"("$T" --top abc 2>&1)", 1, "tarnwick: “abc” is no number of rows for --top. Use 1 to 100.\n"},
      {R"-("$T" --watch 86400 --json 2>&1 | { read -r line; case $line in '{"schema":1,'*'}') echo whole; esac; })-",
       0, "whole\n"},
      {R"("$T" --json --demo --exit-code >/dev/null)", 3, ""},
      {R"("$T" --json --demo --scenario Calm 2>/dev/null)", 1, ""},
      {gone + R"("$T" --json --demo; echo status $? >&2; } | true; } 2>&1)", 0,
       "tarnwick: the document could not be written: Broken pipe.\nstatus 1\n"},
      {gone + R"("$T" --top --demo; echo status $? >&2; } | true; } 2>&1)", 0, "status 0\n"},
      {R"("$T" --json --demo --scenario calm --exit-code | tail -c 2)", 0, "}\n"}};
  for (const auto& [line, status, output] : cases) {
    const ToolResult result = shell(line);
    EXPECT_EQ(std::tie(result.exitStatus, result.output), std::tie(status, output)) << line;
  }
}

// What a shell line shows on a terminal, up to the end of the first line.
// `last`: how what is shown ends.
std::string shownByTerminal(const std::string& line, std::string_view last = "\n") {
  const Descriptor screen(::posix_openpt(O_RDWR | O_NOCTTY));
  if (::grantpt(screen.number()) != 0 || ::unlockpt(screen.number()) != 0) return "there is no terminal";
  const std::string name = ::ptsname(screen.number());
  const Descriptor keyboard(::open(name.c_str(), O_RDWR | O_NOCTTY));  // the last to close may drop the text
  if (shell(line + " >" + name).exitStatus < 0) return "the line was not run";
  std::string shown;
  std::array<char, 1'000> part{};
  for (ssize_t size = 0; !shown.ends_with(last) && (size = screen.read(part)) > 0;)
    shown.append(part.data(), static_cast<std::size_t>(size));
  return shown;
}

TEST(Program, OnATerminalControlCharactersAreVisible) {
  const std::string red = R"-("$T" --demo --scenario "$(printf "\033[31mred")")-";
  const std::string unknown = "[31mred”. Use memory, calm, or developer.";
  EXPECT_EQ(shell(red).output, "Unknown scenario “\x1B" + unknown + "\n")
      << "a pipe gets the bytes as they are";
  EXPECT_EQ(shownByTerminal(red), "Unknown scenario “␛" + unknown + "\r\n");
}

// The words of the report stay, whatever the terminal is.
TEST(Program, OnATerminalTheReportIsWrappedAndColoured) {
  const std::regex colour("\x1B\\[[0-9;]*m");
  const std::regex blanks("\\s+");
  const std::string report = shell(R"("$T" --demo --scenario developer)").output;
  const std::tuple<const char*, bool, bool> cases[] = {
      {"cols 20; export TERM=xterm NO_COLOR=", true, true},
      {"cols 20; export TERM=xterm NO_COLOR=1", true, false},
      {"cols 500; export TERM=dumb", false, false},
      {"cols 500; export TERM=xterm; unset NO_COLOR", false, true}};
  for (const auto& [terminal, wrapped, coloured] : cases) {
    const std::string line =
        "{ stty <&1 " + std::string(terminal) + R"(; "$T" --demo --scenario developer; })";
    const std::string shown = shownByTerminal(line, coloured ? "30\x1B[0m\r\n" : "30\r\n");
    const std::string plain = std::regex_replace(shown, colour, "");
    EXPECT_EQ(std::regex_replace(plain, blanks, " "), std::regex_replace(report, blanks, " ")) << terminal;
    EXPECT_EQ(plain != shown, coloured) << terminal;
    EXPECT_EQ(std::ranges::count(shown, '\n') > std::ranges::count(report, '\n'), wrapped) << terminal;
  }
}

TEST(Program, ALiveCheckReportsEvenOnAPoorMachine) {
  for (const char* line :
       {R"("$T" --print 2>&1)", R"(env -i HOME=/nonexistent TARNWICK_NO_TOOLS= "$T" --print 2>&1)"}) {
    const ToolResult result = shell(line);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(
        result.output.substr(0, result.output.find("\n\n")),
        MatchesRegex(
            "[0-9.]+ [GM]B memory, [0-9.]+ [GM]B moved to disk · processor [0-9]+% busy · last restart [0-9]+ [a-z]+ ago"));
  }
}

}  // namespace
