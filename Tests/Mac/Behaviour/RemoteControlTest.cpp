// Commands from another process, which the test itself stands for here.
#include "Platform/RemoteControl.h"

#include <chrono>

#include "Platform/Examination.h"
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using platform::RemoteControl;
using platform::RemoteReply;

class RemoteControlTest : public MacTest {
 protected:
  static constexpr std::chrono::seconds limit{10};

  static std::expected<RemoteReply, platform::Error> send(const Strings& words) {
    return platform::sendToRunningInstance(words, limit);
  }
  // For which nobody stands here: what another instance would say.
  static std::string failureOf(const std::expected<RemoteReply, platform::Error>& reply) {
    return reply ? "none" : reply.error().localizedDescription;
  }
};

TEST_F(RemoteControlTest, ACommandReachesTheRunningInstanceAndIsAnswered) {
  launched([this] {
    EXPECT_EQ(send({"whole-screen"}), (RemoteReply{0, ""}));
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{0, 0}, {1440, 900}}}));
    const auto status = send({"status"});
    ASSERT_TRUE(status);
    EXPECT_TRUE(status->output.starts_with("Annotations: hidden\nArea:        1440 × 900 at (0, 0)\n"))
        << status->output;
    EXPECT_EQ(send({"toggle"}), (RemoteReply{0, ""}));
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_F(RemoteControlTest, AReplyMayWaitForTheCaptureService) {
  world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
  launched([] {
    const auto reply = send({"windows"});
    ASSERT_TRUE(reply);
    EXPECT_TRUE(reply->output.contains("org.example.ink")) << reply->output;
  });
}

TEST_F(RemoteControlTest, AMistakeIsAnsweredAtOnce) {
  launched([] {
    EXPECT_EQ(send({"dance"})->status, 2);
    EXPECT_EQ(send({"peek", "0"})->status, 2);
    EXPECT_EQ(send({"peek", ""})->status, 2) << "an empty word is a word";
  });
}

TEST_F(RemoteControlTest, AQuestionToTheUserIsAnnounced) {
  world.captureAllowed = false;
  world.alertAnswers = {1001};
  launched([this] {
    EXPECT_EQ(send({"status"})->status, 0);
    int questions = 0;
    const auto reply = platform::sendToRunningInstance({"whole-screen"}, limit, [&] { ++questions; });
    ASSERT_TRUE(reply);
    EXPECT_EQ(world.alerts.size(), 1U);
    EXPECT_EQ(questions, 1) << "to nobody who was answered before";
  });
}

TEST_F(RemoteControlTest, AQuestionNeedsNobodyWhoListensForIt) {
  world.captureAllowed = false;
  world.alertAnswers = {1001};
  launched([this] {
    EXPECT_TRUE(send({"whole-screen"}));
    EXPECT_EQ(world.alerts.size(), 1U);
  });
}

TEST_F(RemoteControlTest, CommandsGetInWhileAnAlertIsOpen) {
  world.captureAllowed = false;
  world.alertAnswers = {1001};
  launched([this] {
    std::string meanwhile;
    world.duringAlert = [&] {
      if (const auto reply = send({"keys"})) meanwhile = reply->output;
    };
    choose("Whole Screen");
    EXPECT_EQ(world.alerts.size(), 1U);
    EXPECT_FALSE(meanwhile.empty());
  });
}

TEST_F(RemoteControlTest, CommandsGetInWhileTheMenuIsOpen) {
  launched([this] {
    world.openMenu();
    EXPECT_EQ(send({"whole-screen"}), (RemoteReply{0, ""}));
    EXPECT_EQ(shownFrames().size(), 1U);
    world.closeMenu();
  });
}

TEST_F(RemoteControlTest, QuitIsAnsweredBeforeTheEnd) {
  launched([this] {
    EXPECT_EQ(send({"quit"}), (RemoteReply{0, ""}));
    EXPECT_TRUE(world.isTerminated);
  });
}

TEST_F(RemoteControlTest, NothingIsAnsweredWhereNothingRuns) {
  fake::inPool([] { EXPECT_EQ(failureOf(send({"toggle"})), "Quillfade is not running."); });
}

TEST_F(RemoteControlTest, ASecondInstanceFindsTheFirst) {
  launched([this] {
    const auto second = platform::makePlatform({});
    testing::internal::CaptureStdout();
    EXPECT_EQ(runOnlyInstance(*second), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Quillfade is already running.\n");
    EXPECT_EQ(world.statusItems(), 1);
    EXPECT_EQ(world.takenPorts, 0) << "the system writes a message each time";
    EXPECT_EQ(send({"status"})->status, 0) << "the first one is as before";
  });
}

TEST_F(RemoteControlTest, TheNextInstanceIsTheFirstAgain) {
  launched([] {});
  launched([] { EXPECT_EQ(send({"status"})->status, 0); });
}

TEST_F(RemoteControlTest, WithoutAPortEverythingElseWorks) {
  world.refusesPorts = true;
  testing::internal::CaptureStderr();
  launched([this] {
    choose("Whole Screen");
    EXPECT_EQ(shownFrames().size(), 1U);
    EXPECT_EQ(failureOf(send({"toggle"})), "Quillfade is not running.");
  });
  EXPECT_TRUE(testing::internal::GetCapturedStderr().contains("No port can be opened"));
}

TEST_F(RemoteControlTest, AnAskerWithoutAPortDoesNotAsk) {
  launched([this] {
    world.refusesPorts = true;
    EXPECT_EQ(failureOf(send({"whole-screen"})), "A reply of the running Quillfade could not be received.");
    fake::settle();
    EXPECT_TRUE(shownFrames().empty());
  });
}

class RemotePeersTest : public RemoteControlTest {
 protected:
  void claimed(const RemoteControl::Handler& handler, const std::function<void()>& test) {
    fake::inPool([&] {
      first = platform::makePlatform({});
      ASSERT_EQ(first->remoteControl().claim(handler), RemoteControl::Claim::first);
      fake::inPool(test);
      first = nullptr;
      fake::settle();
    });
  }
  std::unique_ptr<platform::Platform> first;
};

TEST_F(RemotePeersTest, WhoGivesNoAnswerIsWaitedForOnlySoLong) {
  claimed([](const auto&, const auto&) {},
          [] {
            const auto reply = platform::sendToRunningInstance({"toggle"}, std::chrono::milliseconds{20});
            EXPECT_EQ(failureOf(reply), "The running Quillfade did not answer.");
          });
}

TEST_F(RemotePeersTest, AnInstanceThatGoesWithoutAWordIsMissed) {
  claimed([this](const auto&, const auto&) { first->runLoop().post([this] { first = nullptr; }); },
          [] {
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(failureOf(send({"toggle"})), "The running Quillfade did not answer.");
            EXPECT_LT(std::chrono::steady_clock::now() - start, limit);
          });
}

TEST_F(RemotePeersTest, AnInstanceThatIsOvertakenLeavesToTheOther) {
  fake::inPool([&] {
    world.beforePort = [this] {
      first = platform::makePlatform({});
      EXPECT_EQ(first->remoteControl().claim([](const auto&, const auto&) {}), RemoteControl::Claim::first);
    };
    const auto second = platform::makePlatform({});
    EXPECT_EQ(second->remoteControl().claim([](const auto&, const auto&) {}), RemoteControl::Claim::taken);
    first = nullptr;
    fake::settle();
  });
}

TEST_F(RemotePeersTest, TheLastWordsOfAnInstanceAreHeard) {
  claimed(
      [this](const auto&, const RemoteControl::Completion& completion) {
        completion({7, "good\nbye"});
        first->runLoop().post([this] { first = nullptr; });
      },
      [] { EXPECT_EQ(send({"quit"}), (RemoteReply{7, "good\nbye"})); });
}

TEST_F(RemotePeersTest, AnAskerThatWentAwayGetsNothing) {
  RemoteControl::Completion answer;
  claimed([&answer](const auto&, const RemoteControl::Completion& completion) { answer = completion; },
          [&] {
            (void)platform::sendToRunningInstance({"toggle"}, std::chrono::milliseconds{20});
            answer({0, "too late"});
            fake::settle();
            first->remoteControl().announceQuestion();
            fake::settle();
          });
  fake::inPool([&] { answer({0, "far too late"}); });
}

TEST_F(RemotePeersTest, AMessageThatIsNoCommandDoesNoHarm) {
  std::vector<Strings> heard;
  claimed(
      [&heard](const auto& words, const RemoteControl::Completion& completion) {
        heard.push_back(words);
        completion({0, "heard"});
      },
      [&] {
        world.sendToPort("org.quillfade.Quillfade.commands", "");
        world.sendToPort("org.quillfade.Quillfade.commands", "nobody");
        fake::settle();
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_TRUE(heard[0].empty()) << "the name of a port that nobody has";
        EXPECT_EQ(send({"status"}), (RemoteReply{0, "heard"}));
      });
}

using ExaminationTest = MacTest;

TEST_F(ExaminationTest, TheLookFromOutsideChangesNothing) {
  world.defaults = {{"style", std::int64_t{1}}, {"enabled", true}};
  world.hotKeySetup.taken = {keyP};
  world.loginItemStatus = 2;
  fake::inPool([] {
    const auto seen = platform::examineDesktop({.hotKeys = {{keyD, controlOptionCommand}, {keyP, controlOptionCommand}},
                                                .logFile = "Library/Logs/Quillfade.log",
                                                .settings = {"style", "region"},
                                                .mayCapture = false});
    ASSERT_EQ(seen.findings.size(), 3U);
    EXPECT_EQ(seen.findings[0].health, platform::Health::fails);
    EXPECT_EQ(seen.findings[1].health, platform::Health::limited);
    EXPECT_EQ(seen.findings[1].detail, "waits for your approval");
    EXPECT_EQ(seen.findings[2].health, platform::Health::limited) << "there is no such directory";
    EXPECT_EQ(seen.hotKeys, (std::vector{platform::HotKeyAnswer::shared, platform::HotKeyAnswer::unknown}));
    EXPECT_EQ(seen.settings.size(), 1U);
    EXPECT_EQ(seen.settings.at("style"), platform::SettingValue{std::int64_t{1}});
    EXPECT_EQ(seen.settingsFile, "/Users/presenter/Library/Preferences/org.quillfade.Quillfade.plist");
  });
  EXPECT_TRUE(world.hotKeys().empty());
  EXPECT_TRUE(world.defaultWrites.empty());
  EXPECT_EQ(world.preflights, 0);
  EXPECT_TRUE(world.policies.empty());
}

TEST_F(ExaminationTest, WhatNobodyKnowsIsNotClaimed) {
  world.loginItemStatus = 3;
  fake::inPool([] {
    const auto seen = platform::examineDesktop({.hotKeys = {}, .logFile = "quillfade.log", .settings = {}});
    EXPECT_EQ(seen.findings.at(0).health, platform::Health::unseen);
    EXPECT_EQ(seen.findings.at(1).health, platform::Health::limited) << "the system knows of no application";
  });
}

TEST_F(ExaminationTest, NothingIsWrongWhereEverythingIsThere) {
  world.home = testing::TempDir();
  while (world.home.ends_with('/')) world.home.pop_back();
  world.loginItemStatus = 1;
  fake::inPool([this] {
    const auto seen =
        platform::examineDesktop({.hotKeys = {}, .logFile = "quillfade.log", .settings = {}, .mayCapture = true});
    for (const auto& finding : seen.findings) EXPECT_EQ(finding.health, platform::Health::works) << finding.subject;
    EXPECT_EQ(seen.findings.at(1).detail, "on");
    EXPECT_EQ(seen.findings.at(2).detail, world.home + "/quillfade.log");
  });
}

}  // namespace
}  // namespace quillfade
