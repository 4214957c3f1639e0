// The menu as the user finds it.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using MenuTest = MacTest;
using fake::MenuLine;

constexpr std::uint64_t all = 0x1C0000;

MenuLine separator() { return {.isSeparator = true}; }
MenuLine information(const std::string& title) { return {.title = title, .enabledFlag = false}; }
MenuLine offered(const std::string& title) { return {.title = title, .canBeChosen = true, .hasAction = true}; }
MenuLine offered(const std::string& title, const std::string& key, std::uint64_t mask = all) {
  MenuLine line = offered(title);
  line.key = key;
  line.mask = mask;
  return line;
}
MenuLine with(MenuLine line, std::int64_t state, std::int64_t tag = 0) {
  line.state = state;
  line.tag = tag;
  return line;
}

std::vector<MenuLine> idleMenu() {
  MenuLine peek = offered("Peek for 5 Seconds", "p");
  peek.enabledFlag = false;
  return {
      information("Quillfade · idle"),
      separator(),
      offered("Hide Annotations", "d"),
      peek,
      separator(),
      offered("Whole Screen", "f"),
      offered("Select Area…", "a"),
      information("Area: whole screen"),
      separator(),
      {.title = "Mode",
       .canBeChosen = true,
       .submenu = {with(offered("Live (strip annotations)"), 1, 0), with(offered("Solid cover"), 0, 1)}},
      with(offered("Show Outline"), 1),
      separator(),
      offered("Launch at Login"),
      offered("About Quillfade"),
      separator(),
      offered("Quit Quillfade", "q", 0x100000),
  };
}

TEST_F(MenuTest, OffersEveryCommand) {
  launched([this] {
    world.openMenu();
    EXPECT_EQ(world.menu(), idleMenu());
    world.closeMenu();
  });
}

TEST_F(MenuTest, NeverGathersLines) {
  launched([this] {
    for (int i = 0; i < 3; ++i) {
      world.openMenu();
      EXPECT_EQ(world.menu(), idleMenu());
      world.closeMenu();
    }
  });
}

TEST_F(MenuTest, TellsTheStateOfACoverThatIsOn) {
  world.loginItemStatus = 1;
  world.defaults = {{"region", std::string{"{{100, 200}, {800.9, 300.9}}"}},
                    {"enabled", true},
                    {"outline", false},
                    {"style", std::int64_t{1}}};
  launched([this] {
    world.openMenu();
    EXPECT_EQ(world.menu().front().title, "Quillfade · annotations hidden");
    EXPECT_EQ(line("Hide Annotations").state, 1);
    EXPECT_TRUE(line("Peek for 5 Seconds").enabledFlag);
    EXPECT_EQ(line("Area: 800 × 300"), information("Area: 800 × 300"));
    EXPECT_EQ(line("Solid cover").state, 1);
    EXPECT_EQ(line("Live (strip annotations)").state, 0);
    EXPECT_EQ(line("Show Outline").state, 0);
    EXPECT_EQ(line("Launch at Login").state, 1);
    world.closeMenu();
  });
}

TEST_F(MenuTest, OnlyAnEnabledLoginItemHasACheckMark) {
  launched([this] {
    for (const std::int64_t status : {0, 2, 3}) {
      world.loginItemStatus = status;
      world.openMenu();
      EXPECT_EQ(line("Launch at Login").state, 0) << status;
      world.closeMenu();
    }
  });
}

TEST_F(MenuTest, TakesTheCoverAwayWhileItIsOpen) {
  coveredLive([this] {
    world.openMenu();
    fake::settle();
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_TRUE(world.runningStreams().empty());
    EXPECT_EQ(fake::liveTimers(), 0);
    world.closeMenu();
    fake::settle();
    EXPECT_EQ(shownFrames().size(), 1U);
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    EXPECT_EQ(fake::liveTimers(), 1);
  });
}

// A peek is offered also while the cover is off, and does nothing then.
TEST_F(MenuTest, APeekWithoutACoverDoesNothing) {
  launched([this] {
    choose("Peek for 5 Seconds");
    EXPECT_TRUE(shownFrames().empty());
    fake::advance(6);
    EXPECT_TRUE(shownFrames().empty());
  });
}

}  // namespace
}  // namespace quillfade
