#include "Platform/Linux/Input/HotKeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/Linux/Input/HotKeysCodes.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::input {
namespace {

constexpr std::uint32_t controlOptionCommand = 6400;
constexpr std::uint32_t virtualD = 2;
constexpr std::uint32_t virtualP = 35;

TEST(HotKeysCodes, TheFourLaunchBindingsAreAtTheirAnsiPositions) {
  EXPECT_EQ(keyCodeForVirtualKey(2), 40);   // D
  EXPECT_EQ(keyCodeForVirtualKey(35), 33);  // P
  EXPECT_EQ(keyCodeForVirtualKey(0), 38);   // A
  EXPECT_EQ(keyCodeForVirtualKey(3), 41);   // F
}

TEST(HotKeysCodes, NoTwoPositionsShareAKey) {
  std::vector<std::uint8_t> seen;
  for (std::uint32_t virtualKey = 0; virtualKey < 0x100; ++virtualKey) {
    const auto key = keyCodeForVirtualKey(virtualKey);
    if (!key) continue;
    EXPECT_EQ(std::ranges::count(seen, *key), 0) << "virtual key " << virtualKey;
    seen.push_back(*key);
  }
  EXPECT_GT(seen.size(), 100U);
}

TEST(HotKeysCodes, AnUnknownPositionHasNoKey) {
  EXPECT_EQ(keyCodeForVirtualKey(0x34), std::nullopt);
  EXPECT_EQ(keyCodeForVirtualKey(0xFFFFFFFF), std::nullopt);
}

// Mod1 to Mod5 with one key each.
KeyboardTables tablesWith(std::array<xcb_keysym_t, 5> symbols) {
  KeyboardTables tables{.keysPerModifier = 1,
                        .modifierKeys = {0, 0, 0, 10, 11, 12, 13, 14},
                        .firstKey = 8,
                        .symbolsPerKey = 2,
                        .symbols = {}};
  tables.symbols.assign(std::size_t{2} * 7, 0);
  for (std::size_t i = 0; i < symbols.size(); ++i) tables.symbols[2 * (2 + i) + 1] = symbols[i];
  return tables;
}

TEST(HotKeysModifiers, AltSuperAndTheLocksAreFoundWhereverTheKeyboardHasThem) {
  const Modifiers modifiers = modifiersOf(tablesWith({XK_Scroll_Lock, XK_Super_R, XK_Alt_L, XK_Num_Lock, 0}));
  EXPECT_EQ(modifiers.alt, XCB_MOD_MASK_3);
  EXPECT_EQ(modifiers.super, XCB_MOD_MASK_2);
  EXPECT_EQ(modifiers.numLock, XCB_MOD_MASK_4);
  EXPECT_EQ(modifiers.scrollLock, XCB_MOD_MASK_1);
}

TEST(HotKeysModifiers, AKeyboardWithoutAltAndSuperKeepsTheUsualBitsAndHasNoOtherLocks) {
  const Modifiers modifiers = modifiersOf(tablesWith({0, 0, 0, 0, 0}));
  EXPECT_EQ(modifiers.alt, XCB_MOD_MASK_1);
  EXPECT_EQ(modifiers.super, XCB_MOD_MASK_4);
  EXPECT_EQ(modifiers.locks(), XCB_MOD_MASK_LOCK);
}

TEST(HotKeysModifiers, TablesThatDoNotFitTogetherLeaveTheUsualAssignment) {
  KeyboardTables tables = tablesWith({XK_Scroll_Lock, XK_Super_R, XK_Alt_L, XK_Num_Lock, 0});
  tables.symbols.resize(3);
  EXPECT_EQ(modifiersOf(tables).alt, XCB_MOD_MASK_1);
  tables.modifierKeys.clear();
  EXPECT_EQ(modifiersOf(tables), Modifiers{});
}

TEST(HotKeysModifiers, EveryLockCombinationIsListedOnce) {
  const Modifiers modifiers{.numLock = XCB_MOD_MASK_2, .scrollLock = XCB_MOD_MASK_5};
  const auto states = withEveryLock(XCB_MOD_MASK_CONTROL, modifiers);
  EXPECT_EQ(states.size(), 8U);
  for (const std::uint16_t state : states) {
    EXPECT_EQ(state & XCB_MOD_MASK_CONTROL, XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(std::ranges::count(states, state), 1);
  }
}

class HotKeysOnX : public testing::Test {
 protected:
  HotKeysOnX() {
    hotKeys_ = std::make_unique<HotKeys>(*connection_);
    handler_ = hotKeys_->installHandler(&HotKeysOnX::pressed, this);
  }

  static std::int32_t pressed(const HotKeyEvent* event, void* userData) {
    auto& self = *static_cast<HotKeysOnX*>(userData);
    self.ids_.push_back(event->hotKeyID().value_or(HotKeyID{}).id);
    if (self.onPress_) self.onPress_();
    return 0;
  }

  // Passes on what has arrived.
  void dispatchEvents() {
    while (const xcb::Event event = connection_->nextEvent()) {
      if (xcb::eventType(*event) == XCB_KEY_PRESS) ++keyPresses_;
      hotKeys_->handle(*event);
    }
  }

  bool hasFired(std::vector<std::uint32_t> ids) {
    return support::waitUntil([&] {
      dispatchEvents();
      return ids_ == ids;
    });
  }

  void pressD() { press(XK_d); }
  void pressP() { press(XK_p); }
  void press(support::KeySymbol symbol) {
    // A press in the millisecond of the last release is a repetition: no hand is that fast. The server's time runs on
    // the same clock.
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(
        support::waitUntil([&] { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(2); }));
    input_.chord({XK_Control_L, XK_Alt_L, XK_Super_L, symbol});
  }

  support::XServer server_;
  std::unique_ptr<xcb::Connection> connection_ = connectTo(server_.display());
  std::unique_ptr<HotKeys> hotKeys_;
  std::optional<HotKeyHandlerReference> handler_;
  support::Input input_{server_.display()};
  support::XClient other_{server_.display()};
  std::vector<std::uint32_t> ids_;
  std::function<void()> onPress_;
  int keyPresses_ = 0;
};

TEST_F(HotKeysOnX, APressReachesTheHandlerWithItsId) {
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualP, controlOptionCommand, {1, 8}));
  pressD();
  pressP();
  EXPECT_TRUE(hasFired({7, 8}));
  EXPECT_TRUE(hotKeys_->failures().empty());
}

TEST_F(HotKeysOnX, APressCountsWithNumLockAndCapsLockOn) {
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  input_.press(XK_Num_Lock);
  pressD();
  EXPECT_TRUE(hasFired({7}));
  input_.press(XK_Caps_Lock);
  pressD();
  EXPECT_TRUE(hasFired({7, 7}));
  input_.press(XK_Num_Lock);
  pressD();
  EXPECT_TRUE(hasFired({7, 7, 7}));
}

TEST_F(HotKeysOnX, FewerModifiersAreAnotherCombination) {
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualP, controlOptionCommand, {1, 8}));
  input_.chord({XK_Control_L, XK_Alt_L, XK_d});
  input_.press(XK_d);
  pressP();
  EXPECT_TRUE(hasFired({8}));
}

TEST_F(HotKeysOnX, AHeldKeyFiresOnce) {
  constexpr std::array<support::KeySymbol, 3> modifierKeys{XK_Control_L, XK_Alt_L, XK_Super_L};
  constexpr std::array<support::KeySymbol, 4> allKeys{XK_Control_L, XK_Alt_L, XK_Super_L, XK_d};
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  for (const auto symbol : modifierKeys) input_.keyDown(input_.keyCode(symbol));
  input_.keyDown(input_.keyCode(XK_d));
  ASSERT_TRUE(support::waitUntil([&] {
    dispatchEvents();
    return keyPresses_ >= 4;
  })) << "the server repeats a held key";
  EXPECT_EQ(ids_, std::vector<std::uint32_t>{7});
  // Releasing the modifiers first does not confuse the next press.
  for (const auto symbol : allKeys) input_.keyUp(input_.keyCode(symbol));
  pressD();
  EXPECT_TRUE(hasFired({7, 7}));
}

TEST_F(HotKeysOnX, ACombinationOfAnotherProgramFailsAndLeavesNoVariantHeld) {
  const xcb_keycode_t key = input_.keyCode(XK_d);
  constexpr std::uint16_t state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
  ASSERT_TRUE(other_.grabKey(key, state | XCB_MOD_MASK_LOCK));
  EXPECT_EQ(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}), std::nullopt);
  ASSERT_EQ(hotKeys_->failures().size(), 1U);
  EXPECT_EQ(hotKeys_->failures().front().keyCode, virtualD);
  EXPECT_EQ(hotKeys_->failures().front().id.id, 7U);
  EXPECT_EQ(hotKeys_->failures().front().reason, "Another program holds this key combination.");
  ASSERT_TRUE(connection_->synchronize(5000));
  EXPECT_TRUE(other_.grabKey(key, state));
  EXPECT_TRUE(other_.grabKey(key, state | XCB_MOD_MASK_2));
}

TEST_F(HotKeysOnX, TheSameCombinationTwiceFailsAndTheFirstKeepsWorking) {
  const auto first = hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7});
  ASSERT_TRUE(first);
  EXPECT_EQ(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 8}), std::nullopt);
  pressD();
  EXPECT_TRUE(hasFired({7}));
}

TEST_F(HotKeysOnX, AnUnregisteredCombinationIsFreeForOthers) {
  const auto reference = hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7});
  ASSERT_TRUE(reference);
  constexpr std::uint16_t state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
  EXPECT_FALSE(other_.grabKey(input_.keyCode(XK_d), state));
  hotKeys_->unregisterHotKey(*reference);
  hotKeys_->unregisterHotKey(*reference);
  EXPECT_TRUE(support::waitUntil([&] { return other_.grabKey(input_.keyCode(XK_d), state); }));
}

TEST_F(HotKeysOnX, ARemovedHandlerIsNotCalled) {
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  hotKeys_->removeHandler(*handler_);
  pressD();
  ASSERT_TRUE(support::waitUntil([&] {
    dispatchEvents();
    return keyPresses_ == 1;
  }));
  EXPECT_TRUE(ids_.empty());
}

TEST_F(HotKeysOnX, AHandlerMayUnregisterItsOwnCombination) {
  const auto reference = hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7});
  ASSERT_TRUE(reference);
  onPress_ = [&] {
    hotKeys_->unregisterHotKey(*reference);
    hotKeys_->removeHandler(*handler_);
  };
  pressD();
  EXPECT_TRUE(hasFired({7}));
}

TEST_F(HotKeysOnX, AChangeOfTheModifierMapMovesTheGrabs) {
  ASSERT_TRUE(hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7}));
  input_.moveSuperTo(3);
  constexpr std::uint16_t oldState = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
  ASSERT_TRUE(support::waitUntil([&] {
    dispatchEvents();
    return other_.grabKey(input_.keyCode(XK_d), oldState);
  })) << "the old combination is given back";
  pressD();
  EXPECT_TRUE(hasFired({7}));
}

TEST_F(HotKeysOnX, ACombinationThatAChangeOfTheModifierMapLosesIsNotHeldUntilAnotherFindsItAgain) {
  const auto d = hotKeys_->registerHotKey(virtualD, controlOptionCommand, {1, 7});
  const auto p = hotKeys_->registerHotKey(virtualP, controlOptionCommand, {1, 8});
  ASSERT_TRUE(d && p);
  EXPECT_TRUE(hotKeys_->isHeld(*d));
  ASSERT_TRUE(other_.grabKey(input_.keyCode(XK_d), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_3));
  const auto isHeldAfterwards = [&](bool isHeld) {
    return support::waitUntil([&] {
      dispatchEvents();
      return hotKeys_->isHeld(*d) == isHeld;
    });
  };
  input_.moveSuperTo(3);
  EXPECT_TRUE(isHeldAfterwards(false));
  EXPECT_TRUE(hotKeys_->isHeld(*p));
  input_.moveSuperTo(4);
  EXPECT_TRUE(isHeldAfterwards(true));
  hotKeys_->unregisterHotKey(*d);
  EXPECT_FALSE(hotKeys_->isHeld(*d));
}

TEST_F(HotKeysOnX, AnUnknownKeyFails) {
  EXPECT_EQ(hotKeys_->registerHotKey(0x34, controlOptionCommand, {1, 7}), std::nullopt);
  EXPECT_EQ(hotKeys_->failures().size(), 1U);
}

}  // namespace
}  // namespace platform::linux::input
