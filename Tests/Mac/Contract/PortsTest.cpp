// What the ports promise, asked of both desktops without the application.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Mac/Contract/BothDesktops.h"

namespace contract {
namespace {

using platform::Platform;
using platform::SettingValue;
using Numbers = std::vector<int>;

class ContractPortsTest : public BothDesktops {
 protected:
  void on(const std::function<void(Platform&)>& test) { desktop->use(test); }
};

INSTANTIATE_TEST_SUITE_P(Desktops, ContractPortsTest, bothDesktops, nameOfDesktop);

TEST_P(ContractPortsTest, WorkRunsInTheOrderOfItsTimeAndNeverInsideTheCall) {
  on([this](Platform& platform) {
    auto& loop = platform.runLoop();
    Numbers ran;
    const auto late = loop.after(2, [&] { ran.push_back(3); });
    const auto soon = loop.after(1, [&] { ran.push_back(2); });
    const auto cancelled = loop.after(0.5, [&] { ran.push_back(0); });
    loop.post([&] { ran.push_back(1); });
    loop.postCommand([&] { ran.push_back(1); });
    EXPECT_TRUE(ran.empty());
    cancelled->cancel();
    cancelled->cancel();
    desktop->advance(3);
    EXPECT_EQ(ran, (Numbers{1, 1, 2, 3}));
    late->cancel();
  });
}

TEST_P(ContractPortsTest, ATimerFiresUntilItIsInvalidated) {
  on([this](Platform& platform) {
    int fired = 0;
    const auto timer = platform.runLoop().every(1, [&] { ++fired; });
    platform.runLoop().addToCommonModes(*timer);
    EXPECT_EQ(desktop->timers(), 1U);
    desktop->advance(2.5);
    EXPECT_EQ(fired, 2);
    timer->invalidate();
    timer->invalidate();
    desktop->advance(2);
    EXPECT_EQ(fired, 2);
    EXPECT_EQ(desktop->timers(), 0U);
  });
}

TEST_P(ContractPortsTest, ADroppedHandleCancelsNothing) {
  on([this](Platform& platform) {
    bool ran = false;
    (void)platform.runLoop().after(1, [&] { ran = true; });
    desktop->advance(1);
    EXPECT_TRUE(ran);
  });
}

TEST_P(ContractPortsTest, AnOpenFileGrowsAtItsEnd) {
  on([](Platform& platform) {
    auto& files = platform.files();
    const std::string path = platform.process().homeDirectory() + "/Library/Logs/contract.log";
    EXPECT_FALSE(files.fileExists(path));
    EXPECT_FALSE(files.openForWriting(path)) << "never creates";
    ASSERT_TRUE(files.write(path, "one, two"));
    EXPECT_TRUE(files.fileExists(path));
    const auto file = files.openForWriting(path);
    ASSERT_TRUE(file);
    EXPECT_TRUE((*file)->seekToEndOfFile());
    EXPECT_TRUE((*file)->write(", three"));
    EXPECT_TRUE((*file)->close());
    EXPECT_FALSE(files.write(platform.process().homeDirectory() + "/nowhere/contract.log", "one"))
        << "never creates a directory";
  });
  EXPECT_EQ(desktop->content("/Library/Logs/contract.log"), "one, two, three");
}

TEST_P(ContractPortsTest, ASettingKeepsItsTypeAndIsStored) {
  on([](Platform& platform) {
    auto& settings = platform.settings();
    EXPECT_EQ(settings.object("absent"), std::nullopt);
    for (const SettingValue& value : {SettingValue{true}, SettingValue{false}, SettingValue{std::int64_t{1}},
                                      SettingValue{2.5}, SettingValue{std::string{"{{1, 2}, {3, 4}}"}}}) {
      settings.set("key", value);
      EXPECT_EQ(settings.object("key"), value) << value.index();
    }
  });
  EXPECT_EQ(desktop->stored("key"), SettingValue{std::string{"{{1, 2}, {3, 4}}"}});
}

TEST_P(ContractPortsTest, TheScreensAreThoseThatWereArranged) {
  desktop->arrangeScreens({{{{0, 0}, {1440, 900}}, 69, 2}, {{{1440, 100}, {800, 600}}, 70, 1}});
  on([this](Platform& platform) {
    const auto all = platform.screens().all();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1].frame, (platform::Rect{{1440, 100}, {800, 600}}));
    EXPECT_EQ(all[1].displayID, 70U);
    EXPECT_EQ(all[0].backingScaleFactor, 2);
    EXPECT_EQ(platform.screens().main()->displayID, 69U);
    int announced = 0;
    platform.screens().observeChanges([&] { ++announced; });
    desktop->announceScreens();
    EXPECT_EQ(announced, 1);
  });
}

TEST_P(ContractPortsTest, ALockIsToldOnceAndCanBeAskedFor) {
  on([this](Platform& platform) {
    std::vector<bool> told;
    platform.sessionLock().observeChanges([&] { told.push_back(platform.sessionLock().isLocked()); });
    EXPECT_FALSE(platform.sessionLock().isLocked());
    desktop->setLocked(true);
    EXPECT_TRUE(platform.sessionLock().isLocked());
    desktop->setLocked(false);
    EXPECT_EQ(told, (std::vector{true, false}));
  });
}

TEST_P(ContractPortsTest, AHotKeyIsGrantedUnlessAnotherProgramHasIt) {
  desktop->takeKey(35);
  on([this](Platform& platform) {
    auto& keys = platform.hotKeys();
    platform::HotKeyID pressed;
    const auto handler = keys.installHandler(
        [](const platform::HotKeyEvent* event, void* context) {
          *static_cast<platform::HotKeyID*>(context) = event->hotKeyID().value();
          return 0;
        },
        &pressed);
    ASSERT_TRUE(handler);
    EXPECT_FALSE(keys.registerHotKey(35, 0x1900, {7, 1}));
    const auto key = keys.registerHotKey(2, 0x1900, {7, 2});
    ASSERT_TRUE(key);
    EXPECT_TRUE(keys.isHeld(*key));
    EXPECT_TRUE(desktop->pressHotKey(2));
    EXPECT_EQ(pressed, (platform::HotKeyID{7, 2}));
    keys.unregisterHotKey(*key);
    EXPECT_FALSE(desktop->pressHotKey(2));
    keys.removeHandler(*handler);
  });
}

TEST_P(ContractPortsTest, TheLoginItemIsOnOrSaysWhyNot) {
  on([this](Platform& platform) {
    auto& item = platform.loginItem();
    EXPECT_EQ(item.status(), platform::LoginItemStatus::notRegistered);
    EXPECT_TRUE(item.registerItem());
    EXPECT_EQ(item.status(), platform::LoginItemStatus::enabled);
    EXPECT_TRUE(item.unregisterItem());
    EXPECT_EQ(item.status(), platform::LoginItemStatus::notRegistered);
    desktop->refuseLoginItem("It is managed by somebody else.");
    EXPECT_EQ(item.registerItem().error().localizedDescription, "It is managed by somebody else.");
    EXPECT_EQ(item.status(), platform::LoginItemStatus::notRegistered);
  });
}

TEST_P(ContractPortsTest, TheButtonsOfAnAlertAreCountedFromTheFirst) {
  desktop->answerAlert(platform::alertFirstButtonReturn + 1);
  on([](Platform& platform) {
    const platform::Alert alert{.messageText = "One or two?", .informativeText = "", .buttons = {"One", "Two", "None"}};
    EXPECT_EQ(platform.dialogs().runModal(alert), platform::alertFirstButtonReturn + 1);
    EXPECT_EQ(platform.dialogs().runModal(alert), platform::alertFirstButtonReturn + 2) << "closed: as by the last one";
  });
}

TEST_P(ContractPortsTest, ThePermissionIsLookedAtWithoutAsking) {
  desktop->allowCapture(false, true);
  on([](Platform& platform) {
    EXPECT_FALSE(platform.screenCaptureAccess().preflight());
    EXPECT_TRUE(platform.screenCaptureAccess().request());
    EXPECT_TRUE(platform.screenCaptureAccess().preflight());
  });
}

TEST_P(ContractPortsTest, ARefusalOfThePermissionIsNoGrant) {
  desktop->allowCapture(false);
  on([](Platform& platform) {
    EXPECT_FALSE(platform.screenCaptureAccess().request());
    EXPECT_FALSE(platform.screenCaptureAccess().preflight());
  });
}

TEST_P(ContractPortsTest, AWindowIsOnTheScreenBetweenItsOrders) {
  on([this](Platform& platform) {
    auto window = platform.windows().makeWindow({.contentRect = {{1, 2}, {30, 40}}});
    window->setContentView(platform.views().makeView({{0, 0}, {30, 40}}));
    EXPECT_TRUE(desktop->shownFrames().empty());
    window->orderFrontRegardless();
    EXPECT_EQ(desktop->shownFrames(), (std::vector<platform::Rect>{{{1, 2}, {30, 40}}}));
    window->setFrame({{5, 6}, {70, 80}}, true);
    EXPECT_EQ(window->frame(), (platform::Rect{{5, 6}, {70, 80}}));
    window->orderOut();
    EXPECT_TRUE(desktop->shownFrames().empty());
    window->orderFrontRegardless();
    window = nullptr;
    EXPECT_TRUE(desktop->shownFrames().empty()) << "dropping it takes it off the screen";
  });
}

TEST_P(ContractPortsTest, CommandsReachWhoClaimedThem) {
  on([this](Platform& platform) {
    auto& control = platform.remoteControl();
    control.announceQuestion();  // harmless when nobody waits
    const auto claim = control.claim(
        [](const auto& words, const auto& completion) { completion({static_cast<int>(words.size()), words.front()}); });
    EXPECT_EQ(claim, platform::RemoteControl::Claim::first);
    EXPECT_EQ(desktop->command({"peek", "", "3"}), (platform::RemoteReply{3, "peek"}));
  });
}

TEST_P(ContractPortsTest, AnEnvironmentVariableIsThereOrAbsent) {
  desktop->setEnvironment("QUILLFADE_CONTRACT", "ü");
  on([](Platform& platform) {
    EXPECT_EQ(platform.process().environmentVariable("QUILLFADE_CONTRACT"), "ü");
    EXPECT_EQ(platform.process().environmentVariable("QUILLFADE_NONE"), std::nullopt);
    EXPECT_TRUE(platform.process().homeDirectory().starts_with('/'));
    EXPECT_FALSE(platform.process().homeDirectory().ends_with('/'));
  });
}

}  // namespace
}  // namespace contract
