#include "diagnosis/process_kinds.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(WorkKind, FindsWordsInsideWords) {
  const std::pair<const char*, const char*> cases[] = {
      {"make test-cov", "tests"},
      {"pip fetch latest", "tests"},
      {"npm run BUILD", "a build"},
      {"npm install && webpack", "a build"},
      {"uv sync --all", "a package install"},
      {"uv  sync", ""},
      {"", ""},
  };
  for (const auto& [command, kind] : cases) EXPECT_EQ(workKind(command).value_or(""), kind) << command;
}

TEST(DbKind, TheFirstRowWins) {
  const std::pair<const char*, const char*> cases[] = {
      {"postgres:17", "Postgres"}, {"bitnami/MariaDB", "MariaDB"}, {"mariadb-for-mysql", "MySQL"},
      {"redis-mongo", "Redis"},    {"mongo:7", "MongoDB"},         {"nginx", "container"},
      {"", "container"},
  };
  for (const auto& [text, kind] : cases) EXPECT_EQ(dbKind(text), kind) << text;
}

TEST(ServerKind, NamesTheToolThatServes) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"python3", "-m", "uvicorn", "app:app"}, "Python API"},
      {{"python3.11", "Flask", "run"},
       "Python server"},  // no runtime by that name: its script does not count
      {{"python3", "-u", "/opt/bin/Flask", "run"}, "Python API"},
      {{"node", "/Users/a/app/node_modules/.bin/vite"}, "Vite dev server"},
      {{"node", "-m"}, "Node server"},  // nothing follows
      {{"ruby", "bin/rails", "s"}, "Rails app"},
      {{"/opt/bin/Caddy", "run"}, "Caddy server"},
      {{"caddy", "-m", "VITE"}, "Vite dev server"},
      {{""}, " server"},
  };
  for (const auto& [args, kind] : cases) EXPECT_EQ(serverKind({.args = args}), kind) << args.front();
  EXPECT_EQ(serverKind({.path = "/usr/local/bin/node"}), "Node server");
}

}  // namespace
}  // namespace tarnwick
