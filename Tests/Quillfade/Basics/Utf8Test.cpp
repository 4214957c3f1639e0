#include "Platform/Utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace platform {
namespace {

TEST(Utf8, WellFormedTextIsValid) {
  for (const std::string_view text : {"", "plain", "\xC2\xB7", "\xE2\x80\xA6", "\xED\x9F\xBF", "\xF0\x90\x80\x80",
                                      "\xF4\x8F\xBF\xBF", "a\xC3\x97z"}) {
    EXPECT_TRUE(isValidUtf8(text)) << text;
  }
}

TEST(Utf8, BrokenTextIsInvalid) {
  for (const std::string_view text :
       {"\x80", "\xC2", "\xE2\x80", "\xF0\x90\x80", "\xC2z", "\xFF", "\xC1\xBF", "\xE0\x80\x80", "\xF0\x80\x80\x80",
        "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    EXPECT_FALSE(isValidUtf8(text));
  }
}

TEST(Utf8, ACharacterIsReadWithItsLength) {
  const auto code = [](std::string_view text) { return firstUtf8Character(text)->code; };
  EXPECT_EQ(code("az"), U'a');
  EXPECT_EQ(code("\xC2\x80"), 0x80U);
  EXPECT_EQ(code("\xDF\xBFz"), 0x7FFU);
  EXPECT_EQ(code("\xE0\xA0\x80"), 0x800U);
  EXPECT_EQ(code("\xEF\xBF\xBF"), 0xFFFFU);
  EXPECT_EQ(code("\xF4\x8F\xBF\xBFz"), 0x10FFFFU);
  EXPECT_EQ(firstUtf8Character("\xF4\x8F\xBF\xBFz")->length, 4U);
  EXPECT_FALSE(firstUtf8Character(""));
}

}  // namespace
}  // namespace platform
