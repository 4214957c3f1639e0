#include <cmath>
#include <functional>

#include "Tests/Simulated/SimulatedCaptureTest.h"

namespace quillfade {
namespace {

using SimulatedContractDeathTest = SimulatedCaptureTest;

TEST_F(SimulatedContractDeathTest, MainThreadPortsRefuseOtherThreads) {
  EXPECT_DEATH(simulated::runOnAnotherThread([this] { static_cast<void>(desktop.screens().all()); }),
               "Screens::all was called off the main thread");
  EXPECT_DEATH(simulated::runOnAnotherThread([this] { desktop.settings().set("key", true); }), "off the main thread");
}

TEST_F(SimulatedContractDeathTest, AnAlertDoesNotHoldBackWhatIsPosted) {
  const auto ask = [this] {
    desktop.dialogs().runModal({.messageText = "?", .informativeText = "", .buttons = {"OK"}});
  };
  desktop.runLoop().postCommand(ask);
  desktop.runLoop().settle();
  desktop.runLoop().post(ask);
  EXPECT_DEATH(desktop.runLoop().settle(), "an alert was shown by a posted job");
}

TEST_F(SimulatedContractDeathTest, AStreamIsStartedOnceAndWithAnOutput) {
  const auto bare = desktop.capture().makeStream({}, {}, output);
  EXPECT_DEATH(bare->startCapture(noteCompletion()), "before addOutput");
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  EXPECT_DEATH(stream->startCapture(noteCompletion()), "called twice");
  EXPECT_DEATH(static_cast<void>(stream->addOutput(output, platform::StreamOutputType::screen, queue)),
               "after the start");
}

TEST_F(SimulatedContractDeathTest, AStreamIsStoppedOnceAndOnlyWhileItRuns) {
  const auto stream = makeStream();
  EXPECT_DEATH(stream->stopCapture(noteCompletion()), "does not run");
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  stream->stopCapture(noteCompletion());
  EXPECT_DEATH(stream->stopCapture(noteCompletion()), "does not run");
}

TEST_F(SimulatedContractDeathTest, AStoppedStreamDeliversNothing) {
  const auto stream = makeStream();
  EXPECT_DEATH(newest().deliver(simulated::completeFrame()), "does not run");
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  stream->stopCapture(noteCompletion());
  desktop.runLoop().settle();
  EXPECT_DEATH(newest().deliver(simulated::completeFrame()), "does not run");
}

TEST_F(SimulatedContractDeathTest, ARequestIsAnsweredOnce) {
  desktop.capture().startAnswering.isHeld = true;
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  newest().startRequest()->answer({});
  EXPECT_DEATH(newest().startRequest()->answer({}), "answered twice");
}

TEST_F(SimulatedContractDeathTest, FramesAreFinite) {
  const auto window = desktop.windows().makeWindow({});
  EXPECT_DEATH(window->setFrame({{std::nan(""), 0}, {1, 1}}, true), "Window::setFrame");
  EXPECT_DEATH(desktop.views().makeView({{0, 0}, {HUGE_VAL, 1}}), "View::setFrame");
}

TEST_F(SimulatedContractDeathTest, OnlyAWindowThatMayTakesTheKeyboard) {
  const auto window = desktop.windows().makeWindow({});
  EXPECT_DEATH(window->makeKeyAndOrderFront(), "cannot become key");
}

TEST_F(SimulatedContractDeathTest, AViewHasOneSuperview) {
  const auto first = desktop.views().makeView({});
  const auto second = desktop.views().makeView({});
  const auto child = desktop.views().makeView({});
  first->addSubview(child);
  EXPECT_DEATH(second->addSubview(child), "in use");
  EXPECT_DEATH(second->centerSubview(*child), "no subview");
  EXPECT_DEATH(static_cast<void>(second->convertWindowRectToScreen({})), "in no window");
}

TEST_F(SimulatedContractDeathTest, HandlersMonitorsAndKeysAreGivenBackOnce) {
  auto& keys = desktop.hotKeys();
  const auto handler = keys.installHandler([](const platform::HotKeyEvent*, void*) { return 0; }, nullptr);
  keys.removeHandler(*handler);
  EXPECT_DEATH(keys.removeHandler(*handler), "not installed");
  const auto reference = keys.registerHotKey(2, 6400, {1, 1});
  keys.unregisterHotKey(*reference);
  EXPECT_DEATH(keys.unregisterHotKey(*reference), "not held");
  const auto monitor = desktop.windows().addLocalKeyDownMonitor([](const platform::KeyEvent&) { return false; });
  desktop.windows().removeMonitor(monitor);
  EXPECT_DEATH(desktop.windows().removeMonitor(monitor), "not installed");
}

TEST_F(SimulatedContractDeathTest, AClosedFileIsNotUsed) {
  desktop.files().put("/tmp/file", "");
  auto handle = desktop.files().openForWriting("/tmp/file");
  ASSERT_TRUE((*handle)->close());
  EXPECT_DEATH(static_cast<void>((*handle)->write("x")), "closed handle");
}

TEST_F(SimulatedContractDeathTest, NothingOutlivesTheDesktop) {
  EXPECT_DEATH(
      {
        auto second = std::make_unique<simulated::Desktop>();
        const auto window = second->windows().makeWindow({});
        second = nullptr;
      },
      "a window outlives the desktop");
}

TEST_F(SimulatedContractDeathTest, AnAlertIsAnsweredWithOneOfItsButtons) {
  desktop.dialogs().answerWith(platform::alertFirstButtonReturn + 1);
  EXPECT_DEATH(desktop.dialogs().runModal({"Question", "", {"OK"}}), "button that it lacks");
}

TEST_F(SimulatedContractDeathTest, WorkThatNeverEndsIsReported) {
  std::function<void()> again = [&] { desktop.runLoop().post(again); };
  again();
  EXPECT_DEATH(desktop.runLoop().runUntilIdle(), "without end");
}

}  // namespace
}  // namespace quillfade
