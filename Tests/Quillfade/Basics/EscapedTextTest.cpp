#include "Quillfade/Basics/EscapedText.h"

#include <gtest/gtest.h>

#include <string>

namespace quillfade {
namespace {

TEST(EscapedText, OrdinaryTextStaysAsItIs) {
  EXPECT_EQ(escapedText(""), "");
  EXPECT_EQ(escapedText("org.example.Editor 2 (beta)"), "org.example.Editor 2 (beta)");
  EXPECT_EQ(escapedText("R\xC3\xA9sum\xC3\xA9 \xE2\x9C\x8F"), "R\xC3\xA9sum\xC3\xA9 \xE2\x9C\x8F");
}

TEST(EscapedText, QuotesAndBackslashesGetABackslash) { EXPECT_EQ(escapedText(R"(a"b\c)"), R"(a\"b\\c)"); }

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

TEST(EscapedText, TheSecondSetOfControlsIsEscapedToo) {
  EXPECT_EQ(escapedText("a\xC2\x9B"
                        "2Jb\xC2\x85"),
            R"(a\u{9B}2Jb\u{85})");
  EXPECT_EQ(escapedText("\xC2\xA0\xC2\xA1"), "\xC2\xA0\xC2\xA1") << "what follows them is ordinary";
}

TEST(EscapedText, NothingChangesTheTextDirectionOrEndsAParagraph) {
  EXPECT_EQ(escapedText("\xE2\x80\xAE"
                        "exe"),
            R"(\u{202E}exe)");
  EXPECT_EQ(escapedText("\xE2\x81\xA6\xE2\x81\xA9"), R"(\u{2066}\u{2069})");
  EXPECT_EQ(escapedText("\xE2\x80\xA8\xE2\x80\xA9"), R"(\u{2028}\u{2029})");
  EXPECT_EQ(escapedText("\xD8\x9C\xEF\xBB\xBF\xC2\xAD"), R"(\u{61C}\u{FEFF}\u{AD})");
  EXPECT_EQ(escapedText("\xE2\x80\x8B\xE2\x80\x8F\xE2\x80\x90"), "\\u{200B}\\u{200F}\xE2\x80\x90");
}

TEST(EscapedText, InvalidUtf8PassesUnchanged) { EXPECT_EQ(escapedText("a\xFF\xC2"), "a\xFF\xC2"); }

}  // namespace
}  // namespace quillfade
