#include "Quillfade/Utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace quillfade {
namespace {

TEST(Utf8, WellFormedTextIsValid) {
  for (const std::string_view text : {"", "plain", "\xC2\xB7", "\xE2\x80\xA6", "\xED\x9F\xBF", "\xF0\x90\x80\x80",
                                      "\xF4\x8F\xBF\xBF", "a\xC3\x97z"}) {
    EXPECT_TRUE(isValidUtf8(text)) << text;
  }
}

TEST(Utf8, BrokenTextIsNot) {
  for (const std::string_view text :
       {"\x80", "\xC2", "\xE2\x80", "\xF0\x90\x80", "\xC2z", "\xFF", "\xC1\xBF", "\xE0\x80\x80", "\xF0\x80\x80\x80",
        "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    EXPECT_FALSE(isValidUtf8(text));
  }
}

}  // namespace
}  // namespace quillfade
