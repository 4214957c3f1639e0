// Screens, windows, views and the status bar.

#import <AppKit/AppKit.h>

#include "Platform/Mac/Toolkit/Screens.h"
#include "Platform/Mac/Tray/Menu.h"
#include "Platform/Mac/Tray/StatusBar.h"
#include "Platform/Mac/Views/Views.h"
#include "Platform/Mac/Windows/Windows.h"
#include "Tests/Mac/Native/Native.h"

namespace platform::mac {
namespace {

using native::comesTrue;
using toolkit::Screens;
using tray::StatusBar;
using views::nsView;
using views::Views;
using windows::Windows;

constexpr Rect frame{{100, 120}, {300, 200}};

// As the application makes the window of a mirror.
WindowAttributes coverAttributes(const Windows& windows) {
  WindowAttributes attributes{.contentRect = frame, .level = windows.shieldingLevel()};
  attributes.collectionBehavior = collectionbehavior::canJoinAllSpaces | collectionbehavior::stationary |
                                  collectionbehavior::ignoresCycle | collectionbehavior::fullScreenAuxiliary;
  attributes.ignoresMouseEvents = true;
  attributes.hasShadow = false;
  attributes.backgroundColor = colors::black;
  attributes.isReleasedWhenClosed = false;
  attributes.isMovable = false;
  attributes.animationBehavior = AnimationBehavior::none;
  attributes.sharing = WindowSharing::none;
  return attributes;
}

NSWindow* windowOfLevel(WindowLevel level) {
  for (NSWindow* window in [NSApplication sharedApplication].windows) {
    if (window.level == level) return window;
  }
  return nil;
}

TEST(MacScreens, ThePrimaryScreenIsTheOrigin) {
  const auto screens = Screens().all();
  ASSERT_FALSE(screens.empty());
  EXPECT_EQ(screens[0].frame.origin, (Point{0, 0}));
  EXPECT_TRUE(screens[0].displayID.has_value());
  EXPECT_GE(screens[0].backingScaleFactor, 1);
}

TEST(MacWindows, ACoverIsMadeAsItWasAskedFor) {
  Windows windows;
  auto cover = windows.makeWindow(coverAttributes(windows));
  cover->setFrame(frame, true);
  cover->orderFrontRegardless();
  NSWindow* window = windowOfLevel(windows.shieldingLevel());
  ASSERT_NE(window, nil);
  EXPECT_TRUE(window.visible);
  EXPECT_EQ(window.collectionBehavior, 0x151U);
  EXPECT_TRUE(window.ignoresMouseEvents);
  EXPECT_FALSE(window.hasShadow);
  EXPECT_TRUE(window.opaque);
  EXPECT_FALSE(window.movable);
  EXPECT_EQ(window.sharingType, NSWindowSharingNone);
  EXPECT_EQ(window.animationBehavior, NSWindowAnimationBehaviorNone);
  EXPECT_FALSE(window.canBecomeKeyWindow);
  EXPECT_EQ(cover->frame(), frame);
  cover = nullptr;
  EXPECT_FALSE(window.visible) << "A window that is dropped leaves the screen.";
}

class Responder : public ViewResponder {
 public:
  explicit Responder(bool draws) : draws_(draws) {}
  void layout() override { ++layouts; }
  [[nodiscard]] bool draws() const override { return draws_; }
  void draw(Canvas& canvas) override {
    ++drawings;
    canvas.strokeRect({{1, 1}, {10, 10}}, 1, colors::black);
    EXPECT_GT(canvas.measureText("wide", {.font = {.size = 13}, .color = colors::black}).width, 0);
  }
  int layouts = 0;
  int drawings = 0;

 private:
  bool draws_;
};

TEST(MacViews, AViewIsLaidOutAndDrawnIfItSaysThatItDraws) {
  Windows windows;
  Views views;
  for (const bool draws : {true, false}) {
    const auto responder = std::make_shared<Responder>(draws);
    const auto window = windows.makeWindow(coverAttributes(windows));
    const auto view = views.makeView({{0, 0}, {300, 200}}, responder);
    EXPECT_FALSE(view->isInWindow());
    window->setContentView(view);
    window->setFrame(frame, true);
    window->orderFrontRegardless();
    view->setNeedsDisplay();
    EXPECT_TRUE(comesTrue([&] { return responder->layouts > 0 && (!draws || responder->drawings > 0); }));
    EXPECT_EQ(responder->drawings > 0, draws);
    EXPECT_TRUE(view->isInWindow());
    EXPECT_EQ(view->convertWindowRectToScreen({{0, 0}, {10, 10}}), (Rect{frame.origin, {10, 10}}));
  }
}

TEST(MacViews, ALayerAndALabelLieInAViewWithABackground) {
  Views views;
  const auto view = views.makeView({{0, 0}, {300, 200}});
  view->setLayerBackground(colors::black);
  const auto layer = views.makeDisplayLayer();
  layer->setVideoGravity(VideoGravity::resize);
  view->addSublayer(layer);
  views.withoutImplicitAnimations([&] { layer->setFrame(view->bounds()); });
  const auto label = views.makeLabel("Waiting");
  label->setStyle({.font = {.size = 15, .weight = FontWeight::medium}, .color = colors::white.withAlpha(0.65)});
  view->addSubview(label);
  view->centerSubview(*label);
  NSView* native = nsView(*view);
  EXPECT_TRUE(native.wantsLayer);
  EXPECT_NE(native.layer, nil);
  EXPECT_NE(layer->sampleBufferRenderer().status(), RendererStatus::failed);
}

TEST(MacStatusBar, TheItemHasAButtonAndTheSymbolsExist) {
  StatusBar bar;
  const auto item = bar.makeStatusItem(platform::StatusBar::squareLength);
  ASSERT_NE(item->button(), nullptr);
  for (const char* name : {"pencil", "pencil.slash"}) {
    const auto image = bar.systemSymbol(name, "Quillfade");
    ASSERT_NE(image, nullptr) << name;
    item->button()->setImage(image);
    EXPECT_NE(item->button()->image(), nullptr);
  }
  EXPECT_EQ(bar.systemSymbol("no such symbol", "none"), nullptr);
}

TEST(MacStatusBar, AMenuHoldsItsItems) {
  const auto menu = tray::Menu::make();
  menu->addItem({.title = "Information"});
  menu->addItem({.isSeparator = true});
  menu->addItem({.title = "Mode", .submenu = {{.title = "One"}, {.title = "Two"}}});
  EXPECT_EQ(menu->menu().numberOfItems, 3);
  menu->removeAllItems();
  EXPECT_EQ(menu->menu().numberOfItems, 0);
}

}  // namespace
}  // namespace platform::mac
