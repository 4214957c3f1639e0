// What the application never asks for in a scene of its own: the edges of the ports.
#include <atomic>
#include <thread>

#include "Platform/Lens.h"
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using PortsTest = MacTest;

TEST_F(PortsTest, WorkRunsInTheOrderOfItsTime) {
  on([](auto& platform) {
    auto& loop = platform.runLoop();
    Strings ran;
    const auto note = [&ran](const char* what) { return [&ran, what] { ran.emplace_back(what); }; };
    const auto late = loop.after(2, note("late"));
    const auto soon = loop.after(1, note("soon"));
    const auto cancelled = loop.after(0.5, note("cancelled"));
    loop.post(note("posted"));
    EXPECT_TRUE(ran.empty()) << "never inside the call";
    cancelled->cancel();
    cancelled->cancel();
    fake::settle();
    EXPECT_EQ(ran, (Strings{"posted"}));
    fake::advance(3);
    EXPECT_EQ(ran, (Strings{"posted", "soon", "late"}));
    late->cancel();  // harmless
  });
}

// The main queue stands still while one of its jobs has a loop of its own, such as that of an alert.
TEST_F(PortsTest, OnlyACommandRunsInTheLoopOfAJob) {
  on([](auto& platform) {
    auto& loop = platform.runLoop();
    Strings ran;
    loop.post([&] {
      loop.post([&] { ran.emplace_back("posted"); });
      loop.postCommand([&] { ran.emplace_back("command"); });
      fake::setTracking(true);
      fake::settle();
      fake::setTracking(false);
      EXPECT_EQ(ran, (Strings{"command"}));
    });
    fake::settle();
    EXPECT_EQ(ran, (Strings{"command", "posted"}));
    EXPECT_EQ(fake::liveTimers(), 0);
  });
}

TEST_F(PortsTest, DroppingAHandleCancelsNothing) {
  on([](auto& platform) {
    bool ran = false;
    (void)platform.runLoop().after(1, [&ran] { ran = true; });
    fake::advance(1);
    EXPECT_TRUE(ran);
  });
}

TEST_F(PortsTest, ATimerFiresUntilItIsInvalidated) {
  on([](auto& platform) {
    int fired = 0;
    const auto timer = platform.runLoop().every(1, [&fired] { ++fired; });
    fake::advance(3.5);
    EXPECT_EQ(fired, 3);
    fake::setTracking(true);
    fake::advance(2);
    EXPECT_EQ(fired, 3) << "only in the common modes";
    platform.runLoop().addToCommonModes(*timer);
    fake::advance(1);
    EXPECT_EQ(fired, 5) << "late firings are not made up for";
    fake::setTracking(false);
    timer->invalidate();
    timer->invalidate();
    fake::advance(5);
    EXPECT_EQ(fired, 5);
  });
}

TEST_F(PortsTest, ASerialQueueWorksInOrderOffTheMainThread) {
  on([](auto& platform) {
    const auto queue = platform.runLoop().makeSerialQueue("order", platform::QualityOfService::userInteractive);
    std::vector<int> order;
    bool wasOnQueue = true;
    for (int i = 0; i < 100; ++i) {
      queue->perform([&, i] {
        order.push_back(i);
        wasOnQueue &= fake::currentQueue() == "order" && !fake::isMainThread();
      });
    }
    fake::settle();
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_TRUE(wasOnQueue);
  });
}

TEST_F(PortsTest, WorkThatNeverRunsGoes) {
  const auto kept = std::make_shared<int>(1);
  on([&](auto& platform) {
    (void)platform.runLoop().after(100, [kept] {});
    EXPECT_EQ(kept.use_count(), 2);
  });
  fake::dropWork();
  EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(PortsTest, FilesFailWithAReason) {
  world.files.contents["/log"] = "12345";
  on([this](auto& platform) {
    auto& files = platform.files();
    EXPECT_TRUE(files.fileExists("/log"));
    EXPECT_FALSE(files.fileExists("/other"));
    EXPECT_EQ(files.openForWriting("/other").error().localizedDescription, "The file could not be opened.");
    EXPECT_EQ(files.write("/nowhere/log", "text").error().localizedDescription, "The file could not be written.");
    auto file = files.openForWriting("/log");
    ASSERT_TRUE(file);
    world.files.failures = {.seek = true, .write = true, .close = true};
    EXPECT_EQ((*file)->seekToEndOfFile().error().localizedDescription, "There is no end of the file.");
    EXPECT_EQ((*file)->write("6").error().localizedDescription, "There is no space left.");
    world.files.failures.withoutReason = true;
    EXPECT_EQ((*file)->write("6").error().localizedDescription, "NSFileHandleOperationException");
    EXPECT_EQ((*file)->close().error().localizedDescription, "The system gave no reason.");
    world.files.failures = {};
    const auto forgotten = files.openForWriting("/log");
    EXPECT_EQ(world.files.openHandles, 1);
  });
  EXPECT_EQ(world.files.openHandles, 0);
}

TEST_F(PortsTest, TheProcessKnowsItsSurroundings) {
  world.environment = {{"LANG", "de"}};
  on([this](auto& platform) {
    EXPECT_EQ(platform.process().environmentVariable("LANG"), "de");
    EXPECT_EQ(platform.process().environmentVariable("OTHER"), std::nullopt);
    EXPECT_EQ(platform.process().bundleIdentifier(), "org.quillfade.Quillfade");
    world.bundleIdentifier = std::nullopt;
    EXPECT_EQ(platform.process().bundleIdentifier(), std::nullopt);
    EXPECT_EQ(platform.process().homeDirectory(), "/Users/presenter");
    EXPECT_EQ(platform.texts().translated("Mode"), "Mode");
  });
}

TEST_F(PortsTest, WindowsAreMeasuredFromTheBottom) {
  world.screens = {{}, {.frame = {{1440, -100}, {1000, 900}}, .number = std::nullopt}};
  world.capture.windows = {{.number = 4, .layer = -1, .frame = {{10, 20}, {30, 40}}, .owner = "a", .isOnScreen = false},
                           {.number = 5, .frame = {{1500, 800}, {10, 10}}, .owner = std::nullopt}};
  on([](auto& platform) {
    const auto all = platform.screens().all();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].displayID, 69U);
    EXPECT_EQ(all[1].displayID, std::nullopt);
    std::vector<platform::CaptureWindow> windows;
    platform.capture().shareableContent({}, [&](const auto& content) { windows = content->windows; });
    EXPECT_TRUE(windows.empty()) << "never inside the call";
    fake::settle();
    ASSERT_EQ(windows.size(), 2U);
    EXPECT_EQ(windows[0].frame, (platform::Rect{{10, 840}, {30, 40}}));
    EXPECT_FALSE(windows[0].isOnScreen);
    EXPECT_EQ(windows[0].windowLayer, -1);
    EXPECT_EQ(windows[1].frame, (platform::Rect{{1500, 90}, {10, 10}}));
    EXPECT_EQ(windows[1].owningApplication, std::nullopt);
  });
}

TEST_F(PortsTest, WithoutAScreenNothingIsMeasured) {
  world.screens.clear();
  world.mainScreen = std::nullopt;
  world.capture.windows = {{.number = 4, .frame = {{10, 20}, {30, 40}}, .owner = "a"}};
  on([](auto& platform) {
    EXPECT_EQ(platform.screens().main(), std::nullopt);
    std::vector<platform::CaptureWindow> windows;
    platform.capture().shareableContent({}, [&](const auto& content) { windows = content->windows; });
    fake::settle();
    EXPECT_EQ(windows.at(0).frame, (platform::Rect{{10, -60}, {30, 40}}));
  });
}

TEST_F(PortsTest, AStreamOfNoDisplayFailsWhenItIsUsed) {
  on([](auto& platform) {
    const auto stream = platform.capture().makeStream({{12345}, {}}, {}, {});
    const auto queue = platform.runLoop().makeSerialQueue("q", platform::QualityOfService::userInteractive);
    const platform::Error gone{"The display to capture is no longer there."};
    EXPECT_EQ(stream->addOutput({}, platform::StreamOutputType::screen, queue).error(), gone);
    std::vector<platform::Error> errors;
    stream->startCapture([&](const auto& result) { errors.push_back(result.error()); });
    stream->stopCapture([&](const auto& result) { errors.push_back(result.error()); });
    EXPECT_TRUE(errors.empty()) << "never inside the call";
    fake::settle();
    EXPECT_EQ(errors, (std::vector{gone, gone}));
    stream->admit({1, 2});
  });
}

TEST_F(PortsTest, AStreamThatIsDroppedWhileItRunsIsStopped) {
  on([this](auto& platform) {
    platform.capture().shareableContent({}, [](const auto&) {});
    fake::settle();
    const auto queue = platform.runLoop().makeSerialQueue("q", platform::QualityOfService::userInteractive);
    auto stream = platform.capture().makeStream({{69}, {}}, {}, {});
    ASSERT_TRUE(stream->addOutput({}, platform::StreamOutputType::screen, queue));
    stream->startCapture([](const auto&) {});
    fake::settle();
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
    world.deliver(1, {.number = 1});  // to nobody
    fake::settle();
    stream.reset();
    fake::settle();
    EXPECT_TRUE(world.runningStreams().empty());
  });
}

struct Output final : platform::StreamOutput {
  void streamDidOutput(std::shared_ptr<const platform::SampleBuffer> /*sample*/,
                       platform::StreamOutputType /*type*/) override {
    ++frames;
  }
  std::atomic<int> frames = 0;
};

TEST_F(PortsTest, NoFrameIsForwardedOnceTheStopIsComplete) {
  on([this](auto& platform) {
    platform.capture().shareableContent({}, [](const auto&) {});
    fake::settle();
    const auto output = std::make_shared<Output>();
    const auto queue = platform.runLoop().makeSerialQueue("q", platform::QualityOfService::userInteractive);
    const auto stream = platform.capture().makeStream({{69}, {}}, {}, {});
    ASSERT_TRUE(stream->addOutput(output, platform::StreamOutputType::screen, queue));
    stream->startCapture([](const auto&) {});
    fake::settle();
    world.deliver(1, {.number = 1});
    fake::settle();
    std::atomic<bool> isComplete = false;
    stream->stopCapture([&, caller = std::this_thread::get_id()](const auto&) {
      EXPECT_TRUE(std::this_thread::get_id() != caller) << "never inside the call";
      isComplete = true;
    });
    fake::settle();
    EXPECT_TRUE(isComplete);
    world.deliverLate(1, {.number = 2});
    fake::settle();
    EXPECT_EQ(output->frames, 1);
  });
}

TEST_F(PortsTest, AMonitorIsRemovedOnce) {
  on([this](auto& platform) {
    const auto monitor =
        platform.windows().addLocalKeyDownMonitor([](const auto& event) { return event.keyCode == 1; });
    EXPECT_TRUE(world.pressKey(1));
    EXPECT_FALSE(world.pressKey(2));
    platform.windows().removeMonitor(monitor);
    platform.windows().removeMonitor(monitor);
    EXPECT_EQ(world.monitors(), 0);
  });
}

TEST_F(PortsTest, AViewWithoutItsResponderIsAPlainOne) {
  on([this](auto& platform) {
    auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}, .canBecomeKey = true});
    auto view = platform.views().makeView({{0, 0}, {10, 10}}, std::weak_ptr<platform::ViewResponder>{});
    window->setContentView(view);
    window->makeKeyAndOrderFront();
    window->makeKey();
    window->makeFirstResponder(*view);
    EXPECT_TRUE(view->isInWindow());
    world.mouseDown({1, 1});
    world.mouseDragged({2, 2});
    world.mouseUp({3, 3});
    world.cancel();
    EXPECT_FALSE(world.pressKey(12));
    EXPECT_TRUE(world.draw().empty());
    EXPECT_TRUE(world.windowsOnScreen().front().content.cursors.empty());
    window.reset();
    EXPECT_TRUE(world.windowsOnScreen().empty());
  });
  EXPECT_EQ(world.liveWindows(), 0);
}

struct Drawer final : platform::ViewResponder {
  [[nodiscard]] bool draws() const override { return true; }
  void draw(platform::Canvas& /*canvas*/) override { ++drawn; }
  int drawn = 0;
};

TEST_F(PortsTest, ADrawingViewWithoutItsResponderDrawsNothing) {
  on([this](auto& platform) {
    auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}});
    auto drawer = std::make_shared<Drawer>();
    window->setContentView(platform.views().makeView({{0, 0}, {10, 10}}, drawer));
    window->orderFrontRegardless();
    (void)world.draw();
    EXPECT_EQ(drawer->drawn, 1);
    drawer = nullptr;
    EXPECT_TRUE(world.draw().empty());
  });
}

// Nothing but a value that names no reason; the rest of the words are for people.
TEST_F(PortsTest, WhatIsNotOfferedHereSaysSo) {
  EXPECT_TRUE(platform::runThroughLens({"program"}, {}).error().localizedDescription.starts_with("On macOS"));
  EXPECT_TRUE(platform::installLensEntry("program", {}).error().localizedDescription.starts_with("On macOS"));
  EXPECT_TRUE(platform::removeLensEntry("program").error().localizedDescription.starts_with("On macOS"));
  EXPECT_TRUE(platform::makeRulesFile()->path().empty());
  EXPECT_EQ(platform::makeRulesFile()->read().value(), std::nullopt);
}

}  // namespace
}  // namespace quillfade
