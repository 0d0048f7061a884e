// What every test begins with: the test library, the common part of the standard library, files and waiting,
// and the matchers by their short names.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/temp_folder.h"
#include "tests/support/text_of_file.h"
#include "tests/support/wait_until.h"

namespace tarnwick {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

}  // namespace tarnwick
