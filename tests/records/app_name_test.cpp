#include "records/app_name.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(AppName, IsTheOutermostBundleBelowAnApplicationFolder) {
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"/Applications/Utilities/Foo.app/Contents/MacOS/Foo", "Foo"},
      {"/Applications/Outer.app/Contents/Helpers/Inner.app/Contents/MacOS/Inner", "Outer"},
      {"/Users/x/Applications/Bar.app/Contents/MacOS/Bar", "Bar"},
      {"/Users/y/Applications/Bar.app/Contents/MacOS/Bar", std::nullopt},
      {"/Applications/Foo.app", std::nullopt},
      {"/Applications/Foo.app/Contents/Resources/foo", std::nullopt},
      {"/Applications/1Password.app/Contents/MacOS/", "1Password"},
      {"/ApplicationsFoo.app/Contents/MacOS/x", std::nullopt},
      {"/opt/Foo.app/Contents/MacOS/Foo", std::nullopt},
  };
  for (const auto& [path, name] : cases) EXPECT_EQ(appName(path, "/Users/x"), name) << path;
}

}  // namespace
}  // namespace tarnwick
