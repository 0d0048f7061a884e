// What git's own small files say: texts in, facts out. The bytes come from any folder that some process
// happens to work in, so nothing about them is taken for granted.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The git directory that a ".git" file in `dir` points to; absent when the file says anything else.
std::optional<std::string> gitDirectoryFrom(std::string_view marker, const std::string& dir);

// The branch that HEAD names, or 7 characters of the commit when it is detached; empty for an empty HEAD.
std::string branchFrom(std::string_view head);

// The directory whose configuration counts: what the file "commondir" names, `gitDirectory` itself when
// that file is missing or empty.
std::string commonDirectoryFrom(std::string_view commondir, const std::string& gitDirectory);

// The first address under [remote "origin"]; absent when there is none.
std::optional<std::string> originUrl(std::string_view config);

// The repository as a remote address names it.
struct RemoteParts {
  std::string repo;  // without ".git"; empty when the address names none
  std::optional<std::string>
      slug;  // "owner/name"; only on the code host that gh serves, and only if it can be
};

// Both the web form and the host:path form are read.
RemoteParts remoteParts(std::string_view url);

// Can the code host have a repository "owner/name" of that name?
bool isSlug(std::string_view text);

// A number without sign or leading zero.
bool isPullRequestNumber(std::string_view text);

// Can git have a branch of that name? Such a name is no address and no option.
bool isBranchName(std::string_view text);

// The name of a folder; slashes at its end do not count.
std::string folderName(const std::string& dir);

}  // namespace tarnwick
