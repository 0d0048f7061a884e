#include "records/utf8.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(Utf8, InvalidSequencesBecomeOneReplacementEachAndTheRestStays) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"valid", "Zoë “x” 😀", "Zoë “x” 😀"},
      {"lone continuation", "a\x80z", "a\uFFFDz"},
      {"invalid bytes", "\xFF\xFE", "\uFFFD\uFFFD"},
      {"cut at the end", "a\xF0\x9F\x98", "a\uFFFD"},
      {"cut in the middle", "a\xE2\x80z", "a\uFFFDz"},
      {"overlong slash", "a\xC0\xAFz", "a\uFFFDz"},
      {"surrogate", "a\xED\xA0\x80z", "a\uFFFDz"},
  };
  for (const auto& [what, bytes, text] : cases) EXPECT_EQ(repairUtf8(bytes), text) << what;
  EXPECT_EQ(repairUtf8(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf8, CharactersAreCodePoints) {
  EXPECT_EQ(characterCount("aë€😀"), 4U);
  EXPECT_EQ(firstCharacters("aë€😀", 0), "");
  EXPECT_EQ(firstCharacters("aë€😀", 3), "aë€");
  EXPECT_EQ(firstCharacters("aë€😀", 4), "aë€😀");
}

}  // namespace
}  // namespace tarnwick
