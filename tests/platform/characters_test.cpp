#include "platform/characters.h"

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

TEST(Characters, LettersOfAnyScript) {
  for (const char32_t letter : {U'a', U'Z', U'é', U'Ж', U'漢', U'ش', U'𝒜', U'𠀀', U'𐐀'})
    EXPECT_TRUE(is_letter(letter));
  for (const char32_t other :
       {U'0', U'_', U' ', U'@', U'[', U'`', U'{', U'€', U'\u0301', U'😀', char32_t{0x110000}}) {
    EXPECT_FALSE(is_letter(other)) << static_cast<uint32_t>(other);
  }
  EXPECT_TRUE(is_mark(U'\u0301'));
  EXPECT_TRUE(is_mark(U'\u093E')) << "a vowel sign";
  for (const char32_t other : {U'e', U'é', U'´', U'^', U'漢'}) EXPECT_FALSE(is_mark(other));
}

TEST(Characters, FoldingMakesCasesEqual) {
  EXPECT_EQ(fold_case("Hello [World]"), "hello [world]");
  EXPECT_EQ(fold_case("STRASSE ÄÖ"), fold_case("Straße äö"));
  EXPECT_EQ(fold_case("ΣΊΣΥΦΟΣ"), fold_case("σίσυφος"));
  EXPECT_EQ(fold_case("ПРИ"), "при");
  EXPECT_EQ(fold_case("ẞ ﬁ ǅ K ſ 𐐀"), "ss fi ǆ k s 𐐨");
  EXPECT_NE(fold_case("I"), fold_case("ı"));
  EXPECT_EQ(fold_case("ÄB\xFF"), "äb\xFF");
}

TEST(Characters, CapitalsOfAnyScript) {
  EXPECT_EQ(upper_case("Straße, ﬁn ñandú"), "STRASSE, FIN ÑANDÚ");
  EXPECT_EQ(upper_case("σίσυφος при"), "ΣΊΣΥΦΟΣ ПРИ");
  EXPECT_EQ(upper_case("äb\xFF"), "ÄB\xFF");
}

}  // namespace
}  // namespace rowvane::platform
