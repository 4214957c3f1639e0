#include "Quillfade/Settings/StoredValues.h"

#include <gtest/gtest.h>

namespace quillfade {
namespace {

using platform::SettingValue;

constexpr std::int64_t one = 1;
constexpr std::int64_t two = 2;

TEST(StoredValues, IntegersAndBoolsReadAsIntegers) {
  EXPECT_EQ(asInteger(SettingValue{two}), 2);
  EXPECT_EQ(asInteger(SettingValue{true}), 1);
  EXPECT_EQ(asInteger(SettingValue{false}), 0);
}

TEST(StoredValues, TextAndNothingReadAsNoInteger) {
  EXPECT_EQ(asInteger(SettingValue{std::string("1")}), std::nullopt);
  EXPECT_EQ(asInteger(std::nullopt), std::nullopt);
}

TEST(StoredValues, OnlyBoolsAndTheirIntegersReadAsBools) {
  EXPECT_EQ(asBool(SettingValue{false}), false);
  EXPECT_EQ(asBool(SettingValue{one}), true);
  EXPECT_EQ(asBool(SettingValue{std::int64_t{0}}), false);
  EXPECT_EQ(asBool(SettingValue{two}), std::nullopt);
  EXPECT_EQ(asBool(SettingValue{std::string("false")}), std::nullopt);
  EXPECT_EQ(asBool(std::nullopt), std::nullopt);
}

TEST(StoredValues, OnlyTextReadsAsText) {
  EXPECT_EQ(asString(SettingValue{std::string("text")}), "text");
  EXPECT_EQ(asString(SettingValue{true}), std::nullopt);
  EXPECT_EQ(asString(SettingValue{one}), std::nullopt);
  EXPECT_EQ(asString(std::nullopt), std::nullopt);
}

TEST(StoredValues, APlainBoolIsFalseUnlessSomethingAffirmsIt) {
  EXPECT_FALSE(readBool(std::nullopt));
  EXPECT_FALSE(readBool(SettingValue{false}));
  EXPECT_TRUE(readBool(SettingValue{true}));
  EXPECT_TRUE(readBool(SettingValue{two}));
  EXPECT_FALSE(readBool(SettingValue{std::int64_t{0}}));
  EXPECT_TRUE(readBool(SettingValue{std::string("YES")}));
  EXPECT_FALSE(readBool(SettingValue{std::string("no")}));
}

TEST(StoredValues, AFractionReadsOnlyAsAPlainBool) {
  for (const double number : {1.5, 0.5, -0.25, 1e300}) {
    EXPECT_TRUE(readBool(SettingValue{number})) << number;
    EXPECT_EQ(asBool(SettingValue{number}), std::nullopt) << number;
    EXPECT_EQ(asInteger(SettingValue{number}), std::nullopt) << number;
    EXPECT_EQ(asString(SettingValue{number}), std::nullopt) << number;
  }
  EXPECT_FALSE(readBool(SettingValue{0.0}));
}

TEST(StoredValues, ATextAffirmsByItsFirstLetterOrAsANonzeroNumber) {
  for (const char* text : {"true", " y", "1", "+1", "-1", "007", "\t-02"}) {
    EXPECT_TRUE(readBool(SettingValue{std::string(text)})) << text;
  }
  for (const char* text : {"", " ", "0", "000", "+", "-0", "--1", "false", "0x1"}) {
    EXPECT_FALSE(readBool(SettingValue{std::string(text)})) << text;
  }
}

}  // namespace
}  // namespace quillfade
