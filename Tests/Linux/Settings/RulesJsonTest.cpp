#include "Platform/Linux/Settings/RulesJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/TemporaryDirectory.h"

namespace platform::linux::settings {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RulesJsonTest : public testing::Test {
 protected:
  support::TemporaryDirectory directory_;
  std::string path_ = directory_.path() / "rules.json";
  RulesJson rules_{path_};
};

TEST_F(RulesJsonTest, AMissingFileIsNoError) {
  EXPECT_EQ(rules_.read(), (std::expected<std::optional<RulesFileEntries>, Error>{std::nullopt}));
}

TEST_F(RulesJsonTest, ListsAndObjectsBecomeEntries) {
  const auto entries = rulesFromJson(R"({"always": ["a", 2], "keys": {"peek": "x", "toggle": null}, "wrong": true})");
  ASSERT_TRUE(entries) << entries.error().localizedDescription;
  EXPECT_THAT(*entries, ElementsAre(RulesFileEntry{"always", "1", "a"}, RulesFileEntry{"always", "2", std::nullopt},
                                    RulesFileEntry{"keys", "peek", "x"}, RulesFileEntry{"keys", "toggle", std::nullopt},
                                    RulesFileEntry{"wrong", "", std::nullopt}));
}

TEST_F(RulesJsonTest, InvalidJsonIsAnErrorThatNamesTheLine) {
  const auto broken = rulesFromJson("{\n \"always\": [\n \"a\" \"b\"]}");
  ASSERT_FALSE(broken);
  EXPECT_THAT(broken.error().localizedDescription, HasSubstr("Invalid JSON at line 3 ("));
  EXPECT_FALSE(rulesFromJson(""));
  EXPECT_FALSE(rulesFromJson("\xff\xfe"));
  EXPECT_EQ(rulesFromJson("[]").error().localizedDescription,
            "The file must contain one JSON object, in curly brackets.");
}

TEST_F(RulesJsonTest, AChangeIsSeenAtTheNextReading) {
  support::writeFile(path_, R"({"a": ["1"]})");
  EXPECT_THAT(**rules_.read(), ElementsAre(RulesFileEntry{"a", "1", "1"}));
  support::writeFile(path_, R"({"b": ["22"]})");
  EXPECT_THAT(**rules_.read(), ElementsAre(RulesFileEntry{"b", "1", "22"}));
  std::filesystem::remove(path_);
  EXPECT_EQ(*rules_.read(), std::nullopt);
}

TEST_F(RulesJsonTest, ADirectoryInItsPlaceIsAnError) {
  std::filesystem::create_directory(path_);
  const auto read = rules_.read();
  ASSERT_FALSE(read);
  EXPECT_THAT(read.error().localizedDescription, HasSubstr(path_));
}

}  // namespace
}  // namespace platform::linux::settings
