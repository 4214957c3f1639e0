#include "Platform/Mac/Capture/CaptureContent.h"

#include <algorithm>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Screens.h"

namespace platform::mac::capture {
namespace {

static_assert(static_cast<OSType>(PixelFormat::bgra32) == kCVPixelFormatType_32BGRA);

CaptureWindow describe(SCWindow* window, double primaryHeight) {
  CaptureWindow described{
      .windowID = window.windowID,
      .windowLayer = window.windowLayer,
      .frame = toolkit::fromTopLeft(foundation::fromNSRect(window.frame), primaryHeight),
      .isOnScreen = static_cast<bool>(window.onScreen),
  };
  if (SCRunningApplication* owner = window.owningApplication) {
    described.owningApplication = RunningApplication{foundation::stdString(owner.bundleIdentifier)};
  }
  return described;
}

SCDisplay* findDisplay(SCShareableContent* content, std::uint32_t displayID) {
  for (SCDisplay* display in content.displays) {
    if (display.displayID == displayID) return display;
  }
  return nil;
}

bool contains(const std::vector<CaptureWindow>& windows, std::uint32_t windowID) {
  return std::ranges::find(windows, windowID, &CaptureWindow::windowID) != windows.end();
}

}  // namespace

ShareableContent describe(SCShareableContent* content) {
  const double primaryHeight = toolkit::primaryScreenHeight();
  ShareableContent described;
  for (SCDisplay* display in content.displays) described.displays.push_back({display.displayID});
  for (SCWindow* window in content.windows) described.windows.push_back(describe(window, primaryHeight));
  return described;
}

SCContentFilter* contentFilter(const ContentFilter& filter, SCShareableContent* content) {
  SCDisplay* display = findDisplay(content, filter.display.displayID);
  if (display == nil) return nil;
  NSMutableArray<SCWindow*>* excluding = [NSMutableArray array];
  for (SCWindow* window in content.windows) {
    if (contains(filter.excludingWindows, window.windowID)) [excluding addObject:window];
  }
  return [[SCContentFilter alloc] initWithDisplay:display excludingWindows:excluding];
}

SCStreamConfiguration* streamConfiguration(const StreamConfiguration& configuration) {
  const DisplayRect& source = configuration.sourceRect;
  const MediaTime& interval = configuration.minimumFrameInterval;
  SCStreamConfiguration* made = [[SCStreamConfiguration alloc] init];
  made.sourceRect = foundation::nsRect({{source.x, source.y}, {source.width, source.height}});
  made.width = static_cast<std::size_t>(configuration.width);
  made.height = static_cast<std::size_t>(configuration.height);
  made.minimumFrameInterval = CMTimeMake(interval.value, interval.timescale);
  made.pixelFormat = static_cast<OSType>(configuration.pixelFormat);
  made.showsCursor = configuration.showsCursor;
  made.queueDepth = configuration.queueDepth;
  return made;
}

}  // namespace platform::mac::capture
