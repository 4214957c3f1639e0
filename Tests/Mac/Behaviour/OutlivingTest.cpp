// Objects of the system may outlive what they forward to: then they do nothing. And what else no scene brings about.
#include "Platform/Canvas.h"
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using OutlivingTest = MacTest;

struct Asked : platform::ViewResponder {
  [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
  bool keyDown(const platform::KeyEvent& event) override { return event.keyCode == 1; }
  void cancelOperation() override { ++cancelled; }
  int cancelled = 0;
};

TEST_F(OutlivingTest, AFirstResponderThatIsGoneTakesNoKey) {
  on([this](auto& platform) {
    platform.sharedApplication()->activateIgnoringOtherApps();
    auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}, .canBecomeKey = true});
    auto asked = std::make_shared<Asked>();
    auto view = platform.views().makeView({{0, 0}, {10, 10}}, asked);
    window->setContentView(view);
    window->makeKeyAndOrderFront();
    window->makeFirstResponder(*view);
    EXPECT_TRUE(world.pressKey(1));
    EXPECT_FALSE(world.pressKey(2)) << "it goes on";
    world.cancel();
    EXPECT_EQ(asked->cancelled, 1);
    asked = nullptr;
    EXPECT_FALSE(world.pressKey(1));
    world.cancel();
  });
}

TEST_F(OutlivingTest, AViewWhoseResponderRefusesTheKeyboardHasNone) {
  on([this](auto& platform) {
    platform.sharedApplication()->activateIgnoringOtherApps();
    auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}, .canBecomeKey = true});
    const auto plain = std::make_shared<platform::ViewResponder>();
    auto view = platform.views().makeView({{0, 0}, {10, 10}}, plain);
    window->setContentView(view);
    window->makeKeyAndOrderFront();
    window->makeFirstResponder(*view);
    EXPECT_FALSE(world.pressKey(1));
  });
}

struct Told : platform::MenuDelegate {
  void menuWillBeListed(platform::Menu& /*menu*/) override {}
  void menuWillOpen(platform::Menu& /*menu*/) override { ++opened; }
  void menuDidClose(platform::Menu& menu) override {
    ++closed;
    menu.removeAllItems();
  }
  int opened = 0;
  int closed = 0;
};

TEST_F(OutlivingTest, AMenuWhoseDelegateIsGoneOpensAndCloses) {
  on([this](auto& platform) {
    const auto item = platform.statusBar().makeStatusItem(-1);
    const auto menu = platform.statusBar().makeMenu();
    auto told = std::make_shared<Told>();
    menu->setDelegate(told);
    item->setMenu(menu);
    world.openMenu();
    world.closeMenu();
    EXPECT_EQ(told->opened, 1);
    EXPECT_EQ(told->closed, 1);
    told = nullptr;
    world.openMenu();
    world.closeMenu();
    item->setMenu(nullptr);
    EXPECT_EQ(item->menu(), nullptr);
  });
}

TEST_F(OutlivingTest, ALineThatIsTakenAwayAsTheMenuClosesDoesNothing) {
  on([this](auto& platform) {
    const auto item = platform.statusBar().makeStatusItem(-1);
    const auto menu = platform.statusBar().makeMenu();
    const auto told = std::make_shared<Told>();
    menu->setDelegate(told);
    item->setMenu(menu);
    int chosen = 0;
    menu->addItem({.title = "Line", .action = [&chosen](const auto&) { ++chosen; }});
    world.choose("Line");
    EXPECT_EQ(told->closed, 1);
    EXPECT_EQ(chosen, 0);
  });
}

struct Ended : platform::StreamDelegate {
  void streamDidStop(const platform::Error& /*error*/) override {}
};

TEST_F(OutlivingTest, AStreamMayEndWhenNobodyIsLeftToTell) {
  on([this](auto& platform) {
    platform.capture().shareableContent({}, [](const auto&) {});
    fake::settle();
    const auto queue = platform.runLoop().makeSerialQueue("q", platform::QualityOfService::userInteractive);
    auto ended = std::make_shared<Ended>();
    const auto stream = platform.capture().makeStream({{69}, {}}, {}, ended);
    ASSERT_TRUE(stream->addOutput({}, platform::StreamOutputType::screen, queue));
    stream->startCapture([](const auto&) {});
    fake::settle();
    ended = nullptr;
    world.endStream(1, "The display was taken away.");
    fake::settle();
    EXPECT_TRUE(world.runningStreams().empty());
  });
}

TEST_F(OutlivingTest, AStreamThatWasNeverSetUpFailsToStop) {
  on([](auto& platform) {
    platform.capture().shareableContent({}, [](const auto&) {});
    fake::settle();
    const auto stream = platform.capture().makeStream({{69}, {}}, {}, {});
    bool hasFailed = false;
    stream->stopCapture([&](const auto& result) { hasFailed = !result; });
    EXPECT_FALSE(hasFailed) << "never inside the call";
    fake::settle();
    EXPECT_TRUE(hasFailed);
  });
}

TEST_F(OutlivingTest, AnAnswerThatComesAfterTheServiceIsStillGiven) {
  world.capture.content.isHeld = true;
  bool isAnswered = false;
  on([&](auto& platform) {
    platform.capture().shareableContent({}, [&](const auto& content) { isAnswered = content.has_value(); });
  });
  EXPECT_FALSE(isAnswered);
  world.answerHeld();
  fake::settle();
  EXPECT_TRUE(isAnswered);
}

struct Launched : platform::ApplicationDelegate {
  void applicationDidFinishLaunching() override {}
};

TEST_F(OutlivingTest, AnApplicationWithoutItsDelegateLaunchesAllTheSame) {
  on([this](auto& platform) {
    bool hasRun = false;
    world.script = [&hasRun] { hasRun = true; };
    auto launched = std::make_shared<Launched>();
    platform.sharedApplication()->setDelegate(launched);
    launched = nullptr;
    platform.sharedApplication()->run();
    EXPECT_TRUE(hasRun);
  });
}

TEST_F(OutlivingTest, AHandlerOfHotKeysGoesWithItsDesktop) {
  on([this](auto& platform) {
    EXPECT_TRUE(platform.hotKeys().installHandler([](const platform::HotKeyEvent*, void*) { return 0; }, nullptr));
    EXPECT_EQ(world.hotKeyHandlers(), 1);
  });
  EXPECT_EQ(world.hotKeyHandlers(), 0);
}

struct EmptyDrawing : platform::ViewResponder {
  [[nodiscard]] bool draws() const override { return true; }
  void draw(platform::Canvas& canvas) override { canvas.fillEvenOdd({}, platform::colors::black); }
};

TEST_F(OutlivingTest, AShapeOfNothingIsNotDrawn) {
  on([this](auto& platform) {
    const auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}});
    const auto drawer = std::make_shared<EmptyDrawing>();
    window->setContentView(platform.views().makeView({{0, 0}, {10, 10}}, drawer));
    window->orderFrontRegardless();
    EXPECT_TRUE(world.draw().empty());
  });
}

TEST_F(OutlivingTest, APictureKeepsItsProportionsWhereThatIsAskedFor) {
  on([this](auto& platform) {
    const auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}});
    const auto view = platform.views().makeView({{0, 0}, {10, 10}});
    const auto layer = platform.views().makeDisplayLayer();
    view->setLayerBackground(platform::colors::black);
    view->addSublayer(layer);
    window->setContentView(view);
    window->orderFrontRegardless();
    const auto gravity = [this] { return world.windowsOnScreen().at(0).content.sublayers.at(0).gravity; };
    layer->setVideoGravity(platform::VideoGravity::resize);
    EXPECT_EQ(gravity(), "resize");
    layer->setVideoGravity(platform::VideoGravity::resizeAspect);
    EXPECT_EQ(gravity(), "resize aspect");
  });
}

TEST_F(OutlivingTest, ALabelHasTheWeightThatIsAskedFor) {
  on([this](auto& platform) {
    const auto window = platform.windows().makeWindow({.contentRect = {{0, 0}, {100, 100}}});
    const auto label = platform.views().makeLabel("text");
    window->setContentView(label);
    window->orderFrontRegardless();
    const auto font = [this] { return world.windowsOnScreen().at(0).content.font; };
    label->setStyle({{.size = 13}, platform::colors::white});
    EXPECT_TRUE(font().ends_with(" regular")) << font();
    label->setStyle({{.size = 13, .weight = platform::FontWeight::medium}, platform::colors::white});
    EXPECT_TRUE(font().ends_with(" medium")) << font();
  });
}

}  // namespace
}  // namespace quillfade
