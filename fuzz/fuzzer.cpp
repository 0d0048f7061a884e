// The entry points of clang's fuzzer: tarnwick_fuzz --target=NAME [its own options] [corpus folder...]
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "fuzz/targets.h"

namespace {

const tarnwick::FuzzTarget* chosen = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** words) {
  constexpr std::string_view option = "--target=";
  for (int at = 1; at < *count; ++at) {
    const std::string_view word = (*words)[at];
    for (const tarnwick::FuzzTarget& target : tarnwick::fuzzTargets())
      if (word.starts_with(option) && word.substr(option.size()) == target.name) chosen = &target;
  }
  if (chosen != nullptr) return 0;
  for (const tarnwick::FuzzTarget& target : tarnwick::fuzzTargets()) std::puts(target.name.data());
  std::exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  chosen->run({reinterpret_cast<const char*>(data), size});
  return 0;
}
