#include "Quillfade/Keys/HotKeyManager.h"

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::HotKeyID;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t mask = 6400;

class HotKeyManagerTest : public OnDesktop {
 protected:
  // Binds a key whose action records its name.
  void bind(std::uint32_t keyCode, const std::string& name) {
    manager->bind(keyCode, mask, [this, name] { ran.push_back(name); });
  }

  void bindFour() {
    bind(2, "d");
    bind(35, "p");
    bind(0, "a");
    bind(3, "f");
  }

  [[nodiscard]] std::vector<HotKeyID> attemptedIDs() const {
    std::vector<HotKeyID> ids;
    for (const auto& attempt : keys.attempts()) ids.push_back(attempt.id);
    return ids;
  }

  simulated::HotKeys& keys = desktop.hotKeys();
  std::shared_ptr<HotKeyManager> manager = std::make_shared<HotKeyManager>(keys);
  Strings ran;
};

TEST_F(HotKeyManagerTest, ListensFromTheStartAndHoldsNoKeys) {
  EXPECT_TRUE(keys.hasHandler());
  EXPECT_EQ(keys.userData(), manager.get());
  EXPECT_THAT(manager->refs(), IsEmpty());
}

TEST_F(HotKeyManagerTest, NumbersBindingsInOrderUnderOneSignature) {
  bindFour();
  constexpr std::uint32_t signature = 0x514C4644;  // QLFD
  EXPECT_THAT(attemptedIDs(), ElementsAre(HotKeyID{signature, 1}, HotKeyID{signature, 2}, HotKeyID{signature, 3},
                                          HotKeyID{signature, 4}));
  EXPECT_EQ(signature,
            std::uint32_t{'Q'} << 24 | std::uint32_t{'L'} << 16 | std::uint32_t{'F'} << 8 | std::uint32_t{'D'});
}

TEST_F(HotKeyManagerTest, PassesKeyCodesAndModifiersOn) {
  bindFour();
  std::vector<std::uint32_t> codes;
  for (const auto& attempt : keys.attempts()) {
    codes.push_back(attempt.keyCode);
    EXPECT_EQ(attempt.modifiers, 0x1900U);
  }
  EXPECT_THAT(codes, ElementsAre(2U, 35U, 0U, 3U));
}

TEST_F(HotKeyManagerTest, APressRunsTheActionBeforeItReturns) {
  bindFour();
  EXPECT_EQ(keys.press(35, mask), 0);
  EXPECT_THAT(ran, ElementsAre("p"));
}

TEST_F(HotKeyManagerTest, ATakenKeyUsesUpItsNumber) {
  keys.takenKeyCodes = {35};
  bindFour();
  EXPECT_THAT(manager->refs(), SizeIs(3));
  EXPECT_EQ(attemptedIDs().at(2).id, 3U);
  EXPECT_EQ(attemptedIDs().at(3).id, 4U);
  EXPECT_EQ(keys.press(0, mask), 0);
  EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(HotKeyManagerTest, ATakenKeyIsSilent) {
  keys.takenKeyCodes = {35};
  bindFour();
  EXPECT_THAT(desktop.dialogs().alerts(), IsEmpty());
  EXPECT_THAT(logMessages(), IsEmpty());
  EXPECT_THAT(keys.attempts(), SizeIs(4));
}

TEST_F(HotKeyManagerTest, TheActionIsKeptEvenIfTheKeyIsTaken) {
  keys.takenKeyCodes = {35};
  bindFour();
  EXPECT_EQ(keys.send(HotKeyID{HotKeyManager::signature, 2}), 0);
  EXPECT_THAT(ran, ElementsAre("p"));
}

TEST_F(HotKeyManagerTest, TheActionIsStoredBeforeTheKeyIsRegistered) {
  keys.duringRegistration = [this](HotKeyID id) { keys.send(id); };
  bind(2, "d");
  EXPECT_THAT(ran, ElementsAre("d"));
}

TEST_F(HotKeyManagerTest, AForeignSignatureStillRunsTheActionOfItsNumber) {
  bindFour();
  EXPECT_EQ(keys.send(HotKeyID{0x41424344, 3}), 0);
  EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(HotKeyManagerTest, ANumberWithoutAnActionIsHandledAndRunsNothing) {
  bindFour();
  EXPECT_EQ(keys.send(HotKeyID{HotKeyManager::signature, 0}), 0);
  EXPECT_EQ(keys.send(HotKeyID{HotKeyManager::signature, 5}), 0);
  EXPECT_EQ(keys.send(HotKeyID{HotKeyManager::signature, 0xFFFFFFFF}), 0);
  EXPECT_THAT(ran, IsEmpty());
}

TEST_F(HotKeyManagerTest, AnEventWithoutAReadableNumberIsHandledAndRunsNothing) {
  bindFour();
  EXPECT_EQ(keys.send(std::nullopt), 0);
  EXPECT_THAT(ran, IsEmpty());
}

TEST_F(HotKeyManagerTest, AMissingEventOrManagerIsHandled) {
  EXPECT_EQ(HotKeyManager::handle(nullptr, manager.get()), 0);
  struct Event final : platform::HotKeyEvent {
    [[nodiscard]] std::optional<HotKeyID> hotKeyID() const override { return HotKeyID{HotKeyManager::signature, 1}; }
  };
  const Event event;
  EXPECT_EQ(HotKeyManager::handle(&event, nullptr), 0);
}

TEST_F(HotKeyManagerTest, AnActionMayDropTheManager) {
  manager->bind(2, mask, [this] {
    manager = nullptr;
    ran.push_back("dropped");
  });
  EXPECT_EQ(keys.press(2, mask), 0);
  EXPECT_THAT(ran, ElementsAre("dropped"));
  EXPECT_FALSE(keys.hasHandler());
}

TEST_F(HotKeyManagerTest, TeardownGivesTheKeysBackInOrderAndThenTheHandler) {
  keys.takenKeyCodes = {35};
  bindFour();
  desktop.record().clear();
  manager = nullptr;
  EXPECT_THAT(desktop.record().entries(), ElementsAre("hot keys: unregister 1", "hot keys: unregister 3",
                                                      "hot keys: unregister 4", "hot keys: remove handler"));
  EXPECT_THAT(keys.registered(), IsEmpty());
  EXPECT_FALSE(keys.hasHandler());
}

TEST_F(HotKeyManagerTest, WithoutAHandlerKeysAreRegisteredButNeverRun) {
  manager = nullptr;
  keys.refusesHandlers = true;
  manager = std::make_shared<HotKeyManager>(keys);
  bindFour();
  EXPECT_THAT(manager->refs(), SizeIs(4));
  EXPECT_EQ(keys.press(2, mask), std::nullopt);
  EXPECT_THAT(ran, IsEmpty());
}

TEST_F(HotKeyManagerTest, WithoutAHandlerTeardownOnlyGivesTheKeysBack) {
  manager = nullptr;
  keys.refusesHandlers = true;
  manager = std::make_shared<HotKeyManager>(keys);
  bind(2, "d");
  desktop.record().clear();
  manager = nullptr;
  EXPECT_THAT(desktop.record().entries(), ElementsAre("hot keys: unregister 1"));
}

}  // namespace
}  // namespace quillfade
