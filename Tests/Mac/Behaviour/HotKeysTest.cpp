#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using HotKeysTest = MacTest;

constexpr std::uint32_t signature = 0x514C4644;  // QLFD

TEST_F(HotKeysTest, FourAreRegisteredUnderOneHandler) {
  launched([this] {
    EXPECT_EQ(world.hotKeyHandlers(), 1);
    EXPECT_EQ(world.hotKeys(), (std::vector<fake::HotKeyLook>{
                                   {keyD, 6400, signature, 1},
                                   {keyP, 6400, signature, 2},
                                   {keyA, 6400, signature, 3},
                                   {keyF, 6400, signature, 4},
                               }));
  });
  EXPECT_EQ(world.hotKeyHandlers(), 0);
  EXPECT_TRUE(world.hotKeys().empty());
}

TEST_F(HotKeysTest, EachRunsItsCommand) {
  launched([this] {
    press(keyF);
    EXPECT_EQ(shownFrames().size(), 1U);
    EXPECT_EQ(world.hotKeyStatuses, (std::vector<std::int32_t>{0}));
    press(keyP);
    EXPECT_TRUE(shownFrames().empty());
    fake::advance(5);
    EXPECT_EQ(shownFrames().size(), 1U);
    press(keyD);
    EXPECT_TRUE(shownFrames().empty());
    press(keyA);
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    EXPECT_EQ(world.windowsOnScreen().front().level, 1000);
    EXPECT_TRUE(world.pressKey(53));
  });
}

TEST_F(HotKeysTest, OneThatAnotherProgramHoldsLeavesTheOthersTheirNumbers) {
  world.hotKeySetup.taken = {keyP};
  launched([this] {
    EXPECT_EQ(world.hotKeys(),
              (std::vector<fake::HotKeyLook>{
                  {keyD, 6400, signature, 1}, {keyA, 6400, signature, 3}, {keyF, 6400, signature, 4}}));
    press(keyF);
    EXPECT_EQ(shownFrames().size(), 1U);
    choose("Peek for 5 Seconds");
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_F(HotKeysTest, ASuccessWithoutAKeyIsNone) {
  world.hotKeySetup.givesNoReference = true;
  launched([this] { EXPECT_TRUE(world.hotKeys().empty()); });
}

TEST_F(HotKeysTest, WithoutAHandlerNoKeyDoesAnything) {
  world.hotKeySetup.refusesHandlers = true;
  launched([this] {
    EXPECT_EQ(world.hotKeys().size(), 4U);
    press(keyF);
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_F(HotKeysTest, APressWithoutANumberIsIgnored) {
  launched([this] {
    world.hotKeySetup.idIsUnreadable = true;
    press(keyF);
    EXPECT_EQ(world.hotKeyStatuses, (std::vector<std::int32_t>{0}));
    EXPECT_TRUE(shownFrames().empty());
    world.deliverEmptyHotKeyEvent();
    EXPECT_EQ(world.hotKeyStatuses, (std::vector<std::int32_t>{0}));
  });
}

TEST_F(HotKeysTest, ACommandByKeyLeavesAnOpenMenuAsItIs) {
  launched([this] {
    world.openMenu();
    const auto before = world.menu();
    press(keyF);
    EXPECT_EQ(world.menu(), before);
    EXPECT_EQ(world.bar()->symbol, "pencil.slash");
    world.closeMenu();
  });
}

}  // namespace
}  // namespace quillfade
