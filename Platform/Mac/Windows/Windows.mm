#include "Platform/Mac/Windows/Windows.h"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Appearance.h"
#include "Platform/Mac/Views/Views.h"

// A borderless window refuses the keyboard unless it says otherwise.
@interface QLFWindow : NSWindow
@property(nonatomic) BOOL allowsKey;
@property(nonatomic) BOOL allowsMain;
@end

@implementation QLFWindow

- (BOOL)canBecomeKeyWindow {
  return self.allowsKey;
}

- (BOOL)canBecomeMainWindow {
  return self.allowsMain;
}

@end

namespace platform::mac::windows {
namespace {

static_assert(static_cast<NSUInteger>(WindowStyle::borderless) == NSWindowStyleMaskBorderless);
static_assert(static_cast<NSUInteger>(BackingStore::buffered) == NSBackingStoreBuffered);
static_assert(static_cast<NSInteger>(AnimationBehavior::standard) == NSWindowAnimationBehaviorDefault);
static_assert(static_cast<NSInteger>(AnimationBehavior::none) == NSWindowAnimationBehaviorNone);
static_assert(static_cast<NSUInteger>(WindowSharing::none) == NSWindowSharingNone);
static_assert(static_cast<NSUInteger>(WindowSharing::readOnly) == NSWindowSharingReadOnly);
static_assert(collectionbehavior::canJoinAllSpaces == NSWindowCollectionBehaviorCanJoinAllSpaces);
static_assert(collectionbehavior::stationary == NSWindowCollectionBehaviorStationary);
static_assert(collectionbehavior::ignoresCycle == NSWindowCollectionBehaviorIgnoresCycle);
static_assert(collectionbehavior::fullScreenAuxiliary == NSWindowCollectionBehaviorFullScreenAuxiliary);

class BorderlessWindow final : public Window {
 public:
  explicit BorderlessWindow(NSWindow* window) : window_(window) {}
  ~BorderlessWindow() override { [window_ orderOut:nil]; }
  BorderlessWindow(const BorderlessWindow&) = delete;
  BorderlessWindow& operator=(const BorderlessWindow&) = delete;

  void setContentView(std::shared_ptr<View> view) override {
    window_.contentView = views::nsView(*view);
    contentView_ = std::move(view);
  }
  void setFrame(const Rect& frame, bool display) override {
    [window_ setFrame:foundation::nsRect(frame) display:display];
  }
  [[nodiscard]] Rect frame() const override { return foundation::fromNSRect(window_.frame); }
  void orderFrontRegardless() override { [window_ orderFrontRegardless]; }
  void makeKeyAndOrderFront() override { [window_ makeKeyAndOrderFront:nil]; }
  void makeKey() override { [window_ makeKeyWindow]; }
  void makeFirstResponder(View& view) override { [window_ makeFirstResponder:views::nsView(view)]; }
  void orderOut() override { [window_ orderOut:nil]; }

 private:
  NSWindow* window_;
  std::shared_ptr<View> contentView_;
};

}  // namespace

std::unique_ptr<Window> Windows::makeWindow(const WindowAttributes& attributes) {
  QLFWindow* window = [[QLFWindow alloc] initWithContentRect:foundation::nsRect(attributes.contentRect)
                                                   styleMask:static_cast<NSWindowStyleMask>(attributes.style)
                                                     backing:static_cast<NSBackingStoreType>(attributes.backing)
                                                       defer:attributes.isDeferred];
  window.allowsKey = attributes.canBecomeKey;
  window.allowsMain = attributes.canBecomeMain;
  window.level = attributes.level;
  window.collectionBehavior = attributes.collectionBehavior;
  // Never set to NO: AppKit reads that as a request for clicks on the clear parts as well, which is not its default.
  if (attributes.ignoresMouseEvents) window.ignoresMouseEvents = YES;
  window.hasShadow = attributes.hasShadow;
  window.opaque = attributes.isOpaque;
  window.backgroundColor = toolkit::nsColor(attributes.backgroundColor);
  window.releasedWhenClosed = attributes.isReleasedWhenClosed;
  window.movable = attributes.isMovable;
  window.animationBehavior = static_cast<NSWindowAnimationBehavior>(attributes.animationBehavior);
  // A wish: from macOS 15 on, some captures are reported to take a window of the type none all the same.
  if (attributes.sharing) window.sharingType = static_cast<NSWindowSharingType>(*attributes.sharing);
  return std::make_unique<BorderlessWindow>(window);
}

WindowLevel Windows::shieldingLevel() const { return CGShieldingWindowLevel(); }

EventMonitor Windows::addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) {
  id token = [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                   handler:^NSEvent*(NSEvent* event) {
                                                     return handler({event.keyCode}) ? nil : event;
                                                   }];
  const EventMonitor monitor{++lastMonitor_};
  monitors_.emplace(monitor, token);
  return monitor;
}

void Windows::removeMonitor(EventMonitor monitor) {
  const auto found = monitors_.find(monitor);
  if (found == monitors_.end()) return;
  [NSEvent removeMonitor:found->second];
  monitors_.erase(found);
}

}  // namespace platform::mac::windows
