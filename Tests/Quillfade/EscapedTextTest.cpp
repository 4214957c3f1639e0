#include "Quillfade/EscapedText.h"

#include <gtest/gtest.h>

#include <string>

namespace quillfade {
namespace {

TEST(EscapedText, OrdinaryTextStaysAsItIs) {
  EXPECT_EQ(escapedText(""), "");
  EXPECT_EQ(escapedText("org.example.Editor 2 (beta)"), "org.example.Editor 2 (beta)");
  EXPECT_EQ(escapedText("R\xC3\xA9sum\xC3\xA9 \xE2\x9C\x8F"), "R\xC3\xA9sum\xC3\xA9 \xE2\x9C\x8F");
}

TEST(EscapedText, QuotesAndBackslashesGoBehindABackslash) { EXPECT_EQ(escapedText(R"(a"b\c)"), R"(a\"b\\c)"); }

TEST(EscapedText, LineEndsAndTabsHaveTheirOwnEscapes) { EXPECT_EQ(escapedText("a\nb\rc\td"), R"(a\nb\rc\td)"); }

TEST(EscapedText, OtherControlCharactersAreNumbers) {
  EXPECT_EQ(escapedText("\x1B[2J"), R"(\u{1B}[2J)");
  EXPECT_EQ(escapedText(std::string("\0\x01\x7F", 3)), R"(\u{00}\u{01}\u{7F})");
}

TEST(EscapedText, NoByteOfTheResultIsAControlCharacter) {
  for (int byte = 0; byte < 256; ++byte) {
    for (const char character : escapedText(std::string(1, static_cast<char>(byte)))) {
      const auto code = static_cast<unsigned char>(character);
      EXPECT_TRUE(code >= 0x20 && code != 0x7F) << byte;
    }
  }
}

}  // namespace
}  // namespace quillfade
