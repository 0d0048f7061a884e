// What the self-test expects, scenario by scenario.
#include <array>

#include "app/demo/self_test.h"

namespace tarnwick {
namespace {

constexpr ExpectedFinding heat{
    "heat", "Your Mac is hot, so macOS slows it down",
    "To protect the hardware, macOS lowers the processor speed when the Mac gets too hot. Common causes are an app that works hard, a warm room, or blocked air vents, for example a laptop on a bed or a sofa. Quit the apps that work hard, and put the Mac on a hard, flat surface. If you saw “kernel_task” in Activity Monitor, this is the reason.",
    "Quit apps that work hard, and keep the air vents clear.", ""};

constexpr ExpectedFinding disk{
    "disk", "Your disk is almost full",
    "Only 9.0 GB of 256 GB is free. When memory runs short, macOS moves data to the disk. With little free space, this gets slow, and apps can freeze. Storage settings shows what uses the most space, so you can remove files you do not need.",
    "A full disk makes the whole Mac slow when memory runs short.",
    "open x-apple.systempreferences:com.apple.settings.Storage"};

constexpr ExpectedFinding login{
    "login", "7 apps start by themselves",
    "Dropbox, Zoom, Logi Options+, Spotify, and 3 more open when you log in or keep running in the background. Together they use 2.7 GB of memory, and they make login slower. Turn off the ones you do not need in Login Items.",
    "Dropbox, Zoom, and 5 more open when you log in.",
    "open x-apple.systempreferences:com.apple.LoginItems-Settings.extension"};

constexpr ExpectedFinding tests{
    "cpu:pid:14", "Claude Code is running tests",
    "Claude Code started it 43 seconds ago. The command is “make test-cov”. It stops when the command ends.",
    "“make test-cov” started 43 seconds ago. It stops when it ends.", ""};

constexpr ExpectedFinding safari{
    "browser-app:Safari", "Safari is working hard",
    "A busy page, such as a video or a large web app, takes processor time from your other apps. Safari runs 2 processes, because each tab and extension gets its own.",
    "A busy page takes processor time from your other apps.", "Cmd-Q com.apple.Safari"};

constexpr ExpectedFinding photos{
    "service:Photos is analyzing your pictures", "Photos is analyzing your pictures",
    "Photos scans your library to find faces, objects, and text. This takes a lot of processor power, mostly after you import many photos or update macOS. It stops by itself when it is done. To let it finish sooner, leave the Mac on and plugged in when you do not use it.",
    "This is normal, and it stops by itself when it is done.", ""};

constexpr ExpectedFinding testBrowser{
    "browser:20", "A test browser is still open",
    "Playwright opened it 6 days ago for an automated test. The test ended but did not close it. It uses 330 MB.",
    "Playwright opened it 6 days ago and did not close it.", "kill -TERM 20"};

constexpr ExpectedFinding project{
    "stack:{home}/tarnwick-selftest/projx1", "projx1 is still running",
    "It runs a Node server (port 3000), a Python API (port 8000), and a Postgres database. You started it in a terminal 13 hours ago. It uses 170 MB in total.",
    "a Node server, a Python API, and a Postgres database, on for 13 hours.",
    "kill -TERM 41; kill -TERM 40; docker stop c1"};

constexpr ExpectedFinding sleepBlocker{
    "caffeinate:30", "Your Mac is not allowed to sleep",
    "You ran “caffeinate -dimsu” on {date}. It keeps the Mac and the screen awake until you stop it.",
    "You ran “caffeinate” 2 hours ago. It has no time limit.", "kill -TERM 30"};

constexpr ExpectedFinding chromeNotAsked{
    "browser-app:Google Chrome", "Chrome uses 2.0 GB of memory",
    "That is 25% of your Mac's memory. When memory runs short, macOS moves data to the disk, and everything gets slower. Chrome runs 2 processes, because each tab and extension gets its own.",
    "Each open tab uses memory. Tarnwick can find the tabs that you can close.",
    "ask macOS to let Tarnwick read the tab addresses of com.google.Chrome\nCmd-Q com.google.Chrome"};

constexpr ExpectedFinding chromeWithTabs{
    "browser-app:Google Chrome", "Chrome uses 3.2 GB of memory",
    "That is 39% of your Mac's memory. When memory runs short, macOS moves data to the disk, and everything gets slower. Chrome runs 26 processes, because each tab and extension gets its own.",
    "12 duplicate tabs and 9 Google Docs tabs are open.",
    "close the duplicate tabs in com.google.Chrome, keep the first copy\n"
    "open chrome://settings/performance in com.google.Chrome\nCmd-Q com.google.Chrome"};

constexpr ExpectedFinding dockerBusy{
    "docker", "Docker uses 2.0 GB of memory",
    "Your 2 containers need only 101 MB. Docker keeps the rest for itself. Most of that memory is now compressed or moved to disk, and that makes the Mac slower. Docker also uses 12% CPU right now, for containers that are working. Quit Docker to free all of it.",
    "Your containers need only 101 MB. Docker keeps the rest. It also uses 12% CPU now.",
    "Cmd-Q com.docker.docker\ndocker stop c1\ndocker stop c2"};

constexpr ExpectedFinding dockerIdle{
    "docker", "Docker uses 2.0 GB of memory",
    "Your 2 containers need only 101 MB. Docker keeps the rest for itself. Most of that memory is now compressed or moved to disk, and that makes the Mac slower. Quit Docker to free all of it.",
    "Your containers need only 101 MB. Docker keeps the rest.",
    "Cmd-Q com.docker.docker\ndocker stop c1\ndocker stop c2"};

constexpr ExpectedFinding dockerLarge{
    "docker", "Docker uses 8.0 GB of memory",
    "Your 2 containers need only 900 MB. Docker keeps the rest for itself. Most of that memory is now compressed or moved to disk, and that makes the Mac slower. Docker also uses 12% CPU right now, for containers that are working. Quit Docker to free all of it.",
    "Your containers need only 900 MB. Docker keeps the rest. It also uses 12% CPU now.",
    "Cmd-Q com.docker.docker\ndocker stop c1\ndocker stop c2"};

constexpr ExpectedFinding branch{
    "stack:{home}/tarnwick-selftest/storefront", "storefront is still running",
    "It runs a Node server (port 3000), a Python API (port 8000), a Postgres database, and a Redis database. Branch fix/checkout-tax. Last commit 14 hours ago: “Round tax for each line item”. It started 13 hours ago. The app or terminal that started it is closed. It uses 970 MB in total. Stop it if you are done with this branch.",
    "a Node server, a Python API, a Postgres database, and a Redis database, on for 13 hours.",
    "kill -TERM 41; kill -TERM 40; docker stop c1; docker stop c2"};

constexpr std::array baseFindings{heat,   disk,   login,       tests,   chromeNotAsked, dockerBusy,
                                  safari, photos, testBrowser, project, sleepBlocker};
constexpr std::array memoryFindings{chromeWithTabs, login, dockerIdle, testBrowser, project, sleepBlocker};
constexpr std::array developerFindings{dockerLarge, tests,  login,       safari,
                                       photos,      branch, testBrowser, sleepBlocker};

constexpr std::array<ExpectedDiagnosis, 4> diagnoses{{
    {std::nullopt, "Your Mac is too hot.", "", baseFindings},
    {"memory", "Your Mac is short on memory.", "The biggest cause: Chrome.", memoryFindings},
    {"calm", "Your Mac looks fine right now.", "", {}},
    {"developer", "Your Mac is short on memory.", "The biggest cause: Docker.", developerFindings},
}};

}  // namespace

std::span<const ExpectedDiagnosis> expectedDiagnoses() { return diagnoses; }

}  // namespace tarnwick
