// Settings on their way to the user's defaults and back.
#include <limits>

#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using platform::SettingValue;

class SettingsTest : public MacTest {
 protected:
  void withSettings(const std::function<void(platform::Settings&)>& test) {
    fake::inPool([&] {
      const auto platform = platform::makePlatform({});
      fake::inPool([&] { test(platform->settings()); });
    });
  }

  // What a stored default is read as.
  std::optional<SettingValue> reading(const fake::Default& stored) {
    std::optional<SettingValue> value;
    world.defaults["key"] = stored;
    withSettings([&](auto& settings) { value = settings.object("key"); });
    return value;
  }
};

TEST_F(SettingsTest, AValueKeepsItsType) {
  withSettings([this](auto& settings) {
    settings.set("truth", true);
    settings.set("number", std::int64_t{1});
    settings.set("fraction", 0.5);
    settings.set("text", std::string{"1"});
    EXPECT_EQ(world.defaults,
              (std::map<std::string, fake::Default>{
                  {"truth", true}, {"number", std::int64_t{1}}, {"fraction", 0.5}, {"text", std::string{"1"}}}));
    EXPECT_EQ(settings.object("truth"), SettingValue{true});
    EXPECT_EQ(settings.object("number"), SettingValue{std::int64_t{1}});
    EXPECT_EQ(settings.object("fraction"), SettingValue{0.5});
    EXPECT_EQ(settings.object("text"), SettingValue{std::string{"1"}});
  });
}

TEST_F(SettingsTest, WhatIsReadIsWhatWasStored) {
  EXPECT_EQ(reading(false), SettingValue{false});
  EXPECT_EQ(reading(std::int64_t{0}), SettingValue{std::int64_t{0}});
  EXPECT_EQ(reading(std::numeric_limits<std::int64_t>::min()), SettingValue{std::numeric_limits<std::int64_t>::min()});
  EXPECT_EQ(reading(2.0), SettingValue{std::int64_t{2}}) << "a whole number, however it was written";
  EXPECT_EQ(reading(2.5), SettingValue{2.5});
  EXPECT_EQ(reading(1e300), SettingValue{1e300});
  EXPECT_EQ(reading(std::string{}), SettingValue{std::string{}});
  EXPECT_EQ(reading(std::string{"Zürich ✏️"}), SettingValue{std::string{"Zürich ✏️"}});
  EXPECT_EQ(reading(fake::Data{}), std::nullopt);
  withSettings([](auto& settings) { EXPECT_EQ(settings.object("absent"), std::nullopt); });
}

TEST_F(SettingsTest, TextThatIsNoTextIsStoredEmpty) {
  withSettings([this](auto& settings) {
    settings.set("text", std::string{"\xff"});
    EXPECT_EQ(world.defaults.at("text"), fake::Default{std::string{}});
  });
}

// How a launch takes what is stored: the title of the style that has the check mark, and whether there is an outline.
struct Stored {
  const char* key;
  fake::Default value;
  bool isSolid;
  bool hasOutline;
};

TEST_F(SettingsTest, AnUnusableValueFallsBackToItsDefault) {
  const std::vector<Stored> cases{
      {"style", std::int64_t{1}, true, true},
      {"style", std::int64_t{2}, false, true},
      {"style", std::int64_t{-1}, false, true},
      {"style", std::string{"1"}, false, true},
      {"style", true, true, true},
      {"style", 1.0, true, true},
      {"style", 1.5, false, true},
      {"style", fake::Data{}, false, true},
      {"outline", false, false, false},
      {"outline", std::int64_t{0}, false, false},
      {"outline", std::int64_t{2}, false, true},
      {"outline", std::string{"0"}, false, true},
      {"outline", fake::Data{}, false, true},
  };
  for (const auto& stored : cases) {
    world.defaults = {{stored.key, stored.value}};
    launched([&] {
      world.openMenu();
      EXPECT_EQ(line("Solid cover").state, stored.isSolid ? 1 : 0) << stored.key << ' ' << stored.value.index();
      EXPECT_EQ(line("Show Outline").state, stored.hasOutline ? 1 : 0) << stored.key << ' ' << stored.value.index();
      world.closeMenu();
    });
  }
}

TEST_F(SettingsTest, OnlyATextOfEnoughSizeIsAnArea) {
  const std::vector<std::pair<fake::Default, const char*>> cases{
      {std::string{"{{0, 0}, {24, 24}}"}, "Area: 24 × 24"},
      {std::string{"{{0, 0}, {23.5, 600}}"}, "Area: whole screen"},
      {std::string{"no area"}, "Area: whole screen"},
      {std::int64_t{24}, "Area: whole screen"},
      {fake::Data{}, "Area: whole screen"},
  };
  for (const auto& [value, title] : cases) {
    world.defaults = {{"region", value}};
    launched([&] {
      world.openMenu();
      EXPECT_EQ(world.menu().at(7).title, title);
      world.closeMenu();
    });
  }
}

TEST_F(SettingsTest, TextsAndNumbersCountAsOn) {
  const std::vector<std::pair<fake::Default, bool>> cases{
      {true, true},   {std::int64_t{7}, true},    {std::string{"YES"}, true}, {0.5, true},
      {false, false}, {std::string{"no"}, false}, {std::int64_t{0}, false},   {fake::Data{}, false},
  };
  for (const auto& [value, isOn] : cases) {
    world.defaults = {{"region", std::string{"{{100, 200}, {800, 300}}"}}, {"enabled", value}};
    launched([&] { EXPECT_EQ(shownFrames().size(), isOn ? 1U : 0U) << value.index(); });
  }
}

}  // namespace
}  // namespace quillfade
