// The processes of browsers, and the sites in them by the names people use. Which processes belong to a
// browser is decided here, so that no other rule reports them too.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "records/snapshot.h"

namespace tarnwick {

// How the executables of Safari's page, network and graphics processes end; they belong to no application.
inline constexpr std::array<std::string_view, 3> webKitPages{
    "/com.apple.WebKit.WebContent", "/com.apple.WebKit.Networking", "/com.apple.WebKit.GPU"};

// Host, without a leading "www.", to the site's name.
inline constexpr std::array<std::pair<std::string_view, std::string_view>, 16> siteNames{{
    {"calendar.google.com", "Google Calendar"},
    {"mail.google.com", "Gmail"},
    {"docs.google.com", "Google Docs"},
    {"meet.google.com", "Google Meet"},
    {"drive.google.com", "Google Drive"},
    {"github.com", "GitHub"},
    {"youtube.com", "YouTube"},
    {"claude.ai", "Claude"},
    {"chatgpt.com", "ChatGPT"},
    {"figma.com", "Figma"},
    {"linear.app", "Linear"},
    {"notion.so", "Notion"},
    {"app.slack.com", "Slack"},
    {"reddit.com", "Reddit"},
    {"x.com", "X"},
    {"amazon.com", "Amazon"},
}};

// The name of the site at `host`, or the host itself.
std::string_view siteName(std::string_view host);

// Does Safari run in this snapshot? Only then are WebKit's helper processes Safari's.
bool isSafariRunning(const Snapshot& snapshot);

// The application name of the browser that the process belongs to; absent when to none.
std::optional<std::string_view> browserOf(const Proc& proc, bool safariRuns);

// The first running application whose bundle, or whose desktop entry, carries that application name; null
// when none.
const RunningApp* runningApp(std::string_view appName, const Snapshot& snapshot);

}  // namespace tarnwick
