#include "Quillfade/CommandLine/RemoteCommands.h"

#include <functional>
#include <utility>

#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/RunningReport.h"
#include "Tests/Quillfade/Application/CommandsTest.h"

namespace quillfade {
namespace {

using platform::RemoteReply;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const RemoteReply done{exitstatus::success, ""};
const RemoteReply settingsOpened{exitstatus::failure,
                                 "The live style has no permission; the system settings have been opened.\n"};

class RemoteCommands : public CommandsTest {
 protected:
  void send(const Strings& words) {
    runRemoteCommand(desktop, delegate, words, [this](RemoteReply reply) { replies.push_back(std::move(reply)); });
  }
  RemoteReply run(const Strings& words) {
    const std::size_t before = replies.size();
    send(words);
    desktop.runLoop().settle();
    EXPECT_THAT(replies, SizeIs(before + 1)) << "Each command is answered once.";
    return replies.back();
  }

  std::vector<RemoteReply> replies;
};

// Everything that a command changes on a desktop, counted from the launch.
Strings everythingDone(bool isCovered, const std::function<void(simulated::Desktop&, AppDelegate&)>& command) {
  simulated::Desktop desktop;
  const auto delegate = std::make_shared<AppDelegate>(desktop);
  delegate->applicationDidFinishLaunching();
  if (isCovered) {
    delegate->overlay().setRegion({{100, 100}, {800, 600}});
    delegate->overlay().setEnabled(true);
  }
  desktop.runLoop().settle();
  desktop.record().clear();
  command(desktop, *delegate);
  desktop.runLoop().settle();
  return desktop.record().entries();
}

class SameAsTheMenu : public testing::TestWithParam<std::pair<Strings, std::function<void(AppDelegate&)>>> {};

TEST_P(SameAsTheMenu, ACommandDoesExactlyWhatTheMenusDoes) {
  const auto& [words, method] = GetParam();
  for (const bool isCovered : {false, true}) {
    const auto fromOutside = everythingDone(isCovered, [&](simulated::Desktop& desktop, AppDelegate& delegate) {
      runRemoteCommand(desktop, delegate.weak_from_this(), words,
                       [](const RemoteReply& reply) { EXPECT_EQ(reply, done); });
    });
    const auto fromTheMenu =
        everythingDone(isCovered, [&](simulated::Desktop&, AppDelegate& delegate) { method(delegate); });
    EXPECT_EQ(fromOutside, fromTheMenu);
    EXPECT_TRUE(!fromTheMenu.empty() || (words.front() == "peek" && !isCovered));
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SameAsTheMenu,
                         testing::Values(SameAsTheMenu::ParamType{Strings{"toggle"}, &AppDelegate::toggleCover},
                                         SameAsTheMenu::ParamType{Strings{"peek"}, &AppDelegate::peek},
                                         SameAsTheMenu::ParamType{Strings{"whole-screen"}, &AppDelegate::wholeScreen},
                                         SameAsTheMenu::ParamType{Strings{"select-area"}, &AppDelegate::selectArea},
                                         SameAsTheMenu::ParamType{Strings{"outline", "off"},
                                                                  &AppDelegate::toggleOutline},
                                         SameAsTheMenu::ParamType{Strings{"quit"}, &AppDelegate::quit}),
                         [](const auto& command) {
                           std::string name = command.param.first.front();
                           std::erase(name, '-');
                           return name;
                         });

TEST_F(RemoteCommands, TheHotKeysAreListedWithTheirState) {
  desktop.hotKeys().takenKeyCodes = {3};
  launch();
  const RemoteReply reply = run({"keys"});
  EXPECT_EQ(reply.status, exitstatus::success);
  EXPECT_THAT(reply.output, HasSubstr("Control+Alt+Super+D  toggle        bound\n"));
  EXPECT_THAT(reply.output, HasSubstr("Control+Alt+Super+F  whole-screen  taken by another program\n"));
}

TEST_F(RemoteCommands, AHotKeyThatIsLostLaterIsListedAsTakenUntilItIsFoundAgain) {
  launch();
  desktop.hotKeys().takenKeyCodes = {3};
  EXPECT_THAT(run({"keys"}).output, HasSubstr("Control+Alt+Super+F  whole-screen  taken by another program\n"));
  desktop.hotKeys().takenKeyCodes.clear();
  EXPECT_THAT(run({"keys"}).output, HasSubstr("Control+Alt+Super+F  whole-screen  bound\n"));
}

TEST_F(RemoteCommands, ADoctorHearsOfTheKeysAndThePermission) {
  launch();
  for (const bool isGranted : {true, false}) {
    desktop.screenCaptureAccess().isGranted = isGranted;
    const RunningReport report = parseRunningReport(run({"doctor"}).output);
    EXPECT_EQ(report.mayCapture, isGranted);
    EXPECT_EQ(report.hotKeys, delegate->hotKeyStates());
  }
}

TEST_F(RemoteCommands, QuittingIsAnsweredBeforeTheApplicationIsOver) {
  launch();
  runRemoteCommand(desktop, delegate, {"quit"}, [this](const RemoteReply& reply) {
    EXPECT_FALSE(desktop.sharedApplication()->isTerminated());
    replies.push_back(reply);
  });
  desktop.runLoop().settle();
  EXPECT_THAT(replies, ElementsAre(done));
  EXPECT_TRUE(desktop.sharedApplication()->isTerminated());
}

TEST_F(RemoteCommands, APeekLastsAsLongAsAsked) {
  launchWithCoverOn();
  EXPECT_EQ(run({"peek", "2.5"}), done);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(2.4);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(0.2);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(RemoteCommands, APeekWithoutACoverDoesNothing) {
  launch();
  EXPECT_EQ(run({"peek"}), done);
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
}

TEST_F(RemoteCommands, TheOutlineIsSetNotFlipped) {
  launchWithCoverOn();
  ASSERT_TRUE(overlay().showsOutline());
  const auto writes = desktop.settings().writes().size();
  EXPECT_EQ(run({"outline", "on"}), done);
  EXPECT_EQ(desktop.settings().writes().size(), writes) << "It is on already.";
  EXPECT_EQ(run({"outline", "off"}), done);
  EXPECT_FALSE(overlay().showsOutline());
  EXPECT_EQ(run({"outline", "off"}), done);
  EXPECT_FALSE(overlay().showsOutline());
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(RemoteCommands, TheSolidStyleNeedsNoPermission) {
  launchWithoutPermission();
  EXPECT_EQ(run({"style", "solid"}), done);
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 0);
}

TEST_F(RemoteCommands, TheLiveStyleComesBackWithPermission) {
  launchWithCoverOn(CoverStyle::solid);
  EXPECT_EQ(run({"style", "live"}), done);
  EXPECT_EQ(overlay().style(), CoverStyle::live);
  EXPECT_THAT(overlay().liveMirrors(), SizeIs(1));
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(RemoteCommands, TheLiveStyleAsksForPermissionWhenThereIsNone) {
  desktop.screenCaptureAccess().grantsOnRequest = true;
  launchWithoutPermission();
  overlay().setStyle(CoverStyle::solid);
  EXPECT_EQ(run({"style", "live"}), done);
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 1);
  EXPECT_EQ(overlay().style(), CoverStyle::live);
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(RemoteCommands, TheLiveStyleIsNotSetWhenTheUserOpensTheSettings) {
  launchWithoutPermission();
  overlay().setStyle(CoverStyle::solid);
  desktop.dialogs().answerWith(openSettings);
  EXPECT_EQ(run({"style", "live"}), settingsOpened);
  ASSERT_THAT(alerts(), SizeIs(1));
  EXPECT_EQ(alerts()[0].messageText, "Screen Recording permission needed");
  EXPECT_THAT(desktop.workspace().openedURLs(), SizeIs(1));
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
}

TEST_F(RemoteCommands, TheUserWhoPrefersTheSolidCoverGetsItWhateverTheStyleWas) {
  launchWithoutPermission();
  for (const CoverStyle before : allCoverStyles) {
    overlay().setStyle(before);
    desktop.dialogs().answerWith(useSolidCover);
    EXPECT_EQ(
        run({"style", "live"}),
        (RemoteReply{exitstatus::failure, "The live style has no permission; the solid cover has been chosen.\n"}));
    EXPECT_EQ(overlay().style(), CoverStyle::solid);
  }
  EXPECT_THAT(alerts(), SizeIs(2));
  EXPECT_THAT(desktop.workspace().openedURLs(), IsEmpty());
}

TEST_F(RemoteCommands, TheReplyWaitsForTheAnswerToAnAlert) {
  launchWithoutPermission();
  desktop.dialogs().setDuringAlert([&] { EXPECT_THAT(replies, IsEmpty()); });
  desktop.dialogs().answerWith(useSolidCover);
  EXPECT_EQ(run({"toggle"}), done);
  EXPECT_THAT(alerts(), SizeIs(1));
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(RemoteCommands, ACommandThatTheUserLeavesForTheSettingsIsAFailureWithItsReason) {
  launchWithoutPermission();
  for (const char* command : {"toggle", "whole-screen", "select-area"}) {
    desktop.dialogs().answerWith(openSettings);
    EXPECT_EQ(run({command}), settingsOpened) << command;
  }
  EXPECT_FALSE(overlay().isEnabled());
}

TEST_F(RemoteCommands, ASecondCommandThatWouldAskIsAFailureAtOnce) {
  launchWithoutPermission();
  desktop.dialogs().setDuringAlert([&] {
    for (const Strings& command : std::vector<Strings>{{"toggle"}, {"style", "live"}}) {
      send(command);
      while (desktop.runLoop().runOne()) {
      }
      ASSERT_FALSE(replies.empty());
      EXPECT_EQ(
          replies.back(),
          (RemoteReply{exitstatus::failure, "Quillfade is waiting for an answer on the screen: answer that first.\n"}));
    }
  });
  desktop.dialogs().answerWith(useSolidCover);
  send({"toggle"});
  desktop.runLoop().settle();
  EXPECT_THAT(replies, SizeIs(3));
  EXPECT_EQ(replies.back(), done);
  EXPECT_THAT(alerts(), SizeIs(1));
}

TEST_F(RemoteCommands, WhileTheSessionIsLockedCommandsThatNeedTheScreenFail) {
  const RemoteReply locked{exitstatus::failure, "The session is locked.\n"};
  launchWithCoverOn();
  desktop.sessionLock().setLocked(true);
  EXPECT_EQ(run({"select-area"}), locked);
  EXPECT_THAT(run({"status", "--json"}).output, HasSubstr("\"enabled\": true"));
  EXPECT_EQ(run({"whole-screen"}), done) << "It shows when the session is unlocked.";
  EXPECT_EQ(run({"peek", "1"}), done);
  EXPECT_EQ(run({"toggle"}), done);
  EXPECT_EQ(run({"toggle"}), done);
  desktop.screenCaptureAccess().isGranted = false;
  for (const Strings& command : std::vector<Strings>{{"toggle"}, {"whole-screen"}, {"style", "live"}}) {
    EXPECT_EQ(run(command), locked) << command.front();
  }
  EXPECT_THAT(alerts(), IsEmpty());
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.sessionLock().setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(platform::Rect{{0, 0}, {1440, 900}}));
}

TEST_F(RemoteCommands, ACoverThatFitsOnNoScreenIsAFailure) {
  launch();
  overlay().setRegion({{5000, 5000}, {300, 300}});
  EXPECT_EQ(run({"toggle"}), (RemoteReply{exitstatus::failure, "No screen shows enough of the area.\n"}));
  desktop.arrangeScreens({});
  EXPECT_EQ(run({"whole-screen"}), (RemoteReply{exitstatus::failure, "There is no screen.\n"}));
}

TEST_F(RemoteCommands, WhoeverWaitsIsToldAboutTheQuestionBeforeItIsAsked) {
  launchWithoutPermission();
  run({"status"});
  EXPECT_EQ(desktop.record().indexOf("remote control: announce a question"), std::nullopt);
  run({"toggle"});
  EXPECT_LT(placeOf("remote control: announce a question"),
            placeOf("dialogs: alert Screen Recording permission needed"));
}

TEST_F(RemoteCommands, OtherCommandsComeThroughWhileAnAlertIsUp) {
  launchWithoutPermission();
  desktop.dialogs().setDuringAlert([&] {
    send({"status"});
    while (desktop.runLoop().runOne()) {
    }
    EXPECT_THAT(replies, SizeIs(1));
  });
  desktop.dialogs().answerWith(useSolidCover);
  send({"toggle"});
  desktop.runLoop().settle();
  ASSERT_THAT(replies, SizeIs(2));
  EXPECT_THAT(replies[0].output, HasSubstr("Annotations: shown"));
  EXPECT_EQ(replies[1], done);
}

TEST_F(RemoteCommands, TheStatusIsForPeopleOrForPrograms) {
  launchWithCoverOn();
  const RemoteReply text = run({"status"});
  EXPECT_EQ(text.status, 0);
  EXPECT_THAT(text.output, testing::StartsWith("Annotations: hidden\n"));
  EXPECT_THAT(run({"status", "--json"}).output, testing::StartsWith("{\"enabled\": true"));
}

TEST_F(RemoteCommands, TheWindowsAreThoseThatTheCaptureServiceListsNow) {
  launch();
  desktop.capture().content.windows = {listedWindow(42, "Ink", 500)};
  const RemoteReply reply = run({"windows"});
  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.output, HasSubstr("\n42  Ink    500    1440x900  100%    left out   large, on an overlay layer\n"));
}

TEST_F(RemoteCommands, WindowsThatCannotBeListedAreAFailureWithTheServicesReason) {
  launch();
  desktop.capture().contentAnswering.failure = "The display has gone.";
  EXPECT_EQ(run({"windows"}), (RemoteReply{exitstatus::failure, "The display has gone.\n"}));
}

TEST_F(RemoteCommands, WordsThatAreNotACommandChangeNothing) {
  launch();
  desktop.record().clear();
  EXPECT_EQ(run({"explode"}), (RemoteReply{exitstatus::usage, "Unknown command \"explode\".\n"}));
  EXPECT_EQ(run({"style"}), (RemoteReply{exitstatus::usage, "style accepts \"solid\" or \"live\".\n"}));
  EXPECT_THAT(desktop.record().entries(), IsEmpty());
}

TEST_F(RemoteCommands, NothingIsCarriedOutBeforeTheLaunchIsComplete) {
  const RemoteReply starting{exitstatus::failure, "Quillfade is still starting.\n"};
  EXPECT_EQ(run({"toggle"}), starting) << "There is no delegate yet.";
  delegate = std::make_shared<AppDelegate>(desktop);
  EXPECT_EQ(run({"toggle"}), starting) << "It is not launched yet.";
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(run({"toggle"}), done);
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(RemoteCommands, ADelegateThatGoesBeforeItsTurnIsLeftAlone) {
  launch();
  send({"toggle"});
  delegate = nullptr;
  desktop.runLoop().settle();
  ASSERT_THAT(replies, SizeIs(1));
  EXPECT_EQ(replies[0].status, exitstatus::failure);
}

}  // namespace
}  // namespace quillfade
