// The capture service: which displays and windows there are, and live pictures of part of a display, with some windows
// left out.
//
// Threads: call on the main thread. A completion runs on any thread, exactly once, and never inside the call it was
// given to; one that can no longer run (the desktop is gone) is destroyed. A `StreamOutput` is called on the serial
// queue it was added with, a `StreamDelegate` on any thread.
// Ownership: a stream holds its output and its delegate weakly. Destroying a stream stops it.
// Failure: errors are values, and their descriptions are sentences.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Geometry.h"
#include "Platform/RunLoop.h"

namespace platform {

struct RunningApplication {
  std::string bundleIdentifier;
  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

// What else is known about a window that covers a whole screen and takes the pointer.
enum class ScreenSheet : std::uint8_t {
  none,
  takesPointer,   // see-through; would be on an overlay layer if it let clicks through
  perhapsLocker,  // the same, but it may be a lock screen
  locker,         // hides the screen from everybody, as lock screens do
};

// One window as the service describes it.
struct CaptureWindow {
  std::uint32_t windowID = 0;
  std::int64_t windowLayer = 0;  // 0: ordinary windows; higher is further in front
  Rect frame;                    // points, global space
  bool isOnScreen = false;
  std::optional<RunningApplication> owningApplication;
  std::vector<std::string> names{};  // other names it goes by, the most fitting first
  ScreenSheet sheet = ScreenSheet::none;
  friend bool operator==(const CaptureWindow&, const CaptureWindow&) = default;
};

struct CaptureDisplay {
  std::uint32_t displayID = 0;
  friend bool operator==(const CaptureDisplay&, const CaptureDisplay&) = default;
};

struct ShareableContent {
  std::vector<CaptureDisplay> displays;
  std::vector<CaptureWindow> windows;
  // There are programs of whose windows the service knows nothing: they are seen, whatever is left out.
  bool isPartial = false;
};

struct ShareableContentOptions {
  bool excludingDesktopWindows = false;
  bool onScreenWindowsOnly = false;
  friend bool operator==(const ShareableContentOptions&, const ShareableContentOptions&) = default;
};

// Holds back windows that appear while a stream runs and cover at least this area (square points), so that nobody sees
// one before it has been judged. `admitted` names the windows admitted before the stream was made.
struct HeldBackWindows {
  double fromArea = 0;
  std::vector<std::uint32_t> admitted;
  friend bool operator==(const HeldBackWindows&, const HeldBackWindows&) = default;
};

// The whole picture of one display without these windows. A service that cannot hold windows back shows them at once.
struct ContentFilter {
  CaptureDisplay display;
  std::vector<CaptureWindow> excludingWindows;
  std::optional<HeldBackWindows> holdingBack = {};
};

enum class PixelFormat : std::uint32_t { bgra32 = 0x42475241 };

// A time as a fraction of a second: value / timescale.
struct MediaTime {
  std::int64_t value = 0;
  std::int32_t timescale = 1;
  friend bool operator==(const MediaTime&, const MediaTime&) = default;
};

struct StreamConfiguration {
  DisplayRect sourceRect;  // the part of the display to capture, in points from its top-left corner
  std::int64_t width = 0;  // size of the frames in pixels
  std::int64_t height = 0;
  MediaTime minimumFrameInterval;
  PixelFormat pixelFormat = PixelFormat::bgra32;
  bool showsCursor = false;
  int queueDepth = 0;  // how many frames may be in flight at once
  friend bool operator==(const StreamConfiguration&, const StreamConfiguration&) = default;
};

enum class FrameStatus : std::int64_t { complete = 0, idle = 1, blank = 2, suspended = 3, started = 4, stopped = 5 };

// What a frame says about itself. The status is a plain integer because a service may send values that are not named
// here. It is absent when the frame carries none, or one that is not an integer.
struct FrameInfo {
  std::optional<std::int64_t> status;
};

// One frame. Immutable and shared; the adapter chooses where to keep the picture.
class SampleBuffer {
 public:
  virtual ~SampleBuffer() = default;
  [[nodiscard]] virtual bool isValid() const = 0;
  // Absent when the buffer has no attachments that describe frames.
  [[nodiscard]] virtual std::optional<std::vector<FrameInfo>> attachments() const = 0;
};

enum class StreamOutputType : int { screen = 0, audio = 1 };

class CaptureStream;

class StreamOutput {
 public:
  virtual ~StreamOutput() = default;
  virtual void streamDidOutput(std::shared_ptr<const SampleBuffer> sample, StreamOutputType type) = 0;
};

class StreamDelegate {
 public:
  virtual ~StreamDelegate() = default;
  virtual void streamDidStop(const Error& error) = 0;
};

class CaptureStream {
 public:
  using Completion = std::function<void(std::expected<void, Error>)>;

  virtual ~CaptureStream() = default;
  virtual std::expected<void, Error> addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                               std::shared_ptr<SerialQueue> queue) = 0;
  // Call once, after adding the output. On success the first frame is on its way.
  virtual void startCapture(Completion completion) = 0;
  // No frame is delivered after the completion.
  virtual void stopCapture(Completion completion) = 0;
  // Shows these windows if they are held back. They are not held back again until they have left the screen.
  virtual void admit(const std::vector<std::uint32_t>& windowIDs) = 0;
};

class CaptureService {
 public:
  using ContentCompletion = std::function<void(std::expected<ShareableContent, Error>)>;

  virtual ~CaptureService() = default;
  virtual void shareableContent(ShareableContentOptions options, ContentCompletion completion) = 0;
  // Calls `changed` on the main thread when content that was handed out is out of date: once, until the content is
  // asked for again. A desktop that does not announce its changes never calls, so also ask for the content from time to
  // time. The observation ends when its handle is dropped.
  [[nodiscard]] virtual std::shared_ptr<void> observeContent(std::function<void()> changed) = 0;
  virtual std::shared_ptr<CaptureStream> makeStream(const ContentFilter& filter,
                                                    const StreamConfiguration& configuration,
                                                    std::weak_ptr<StreamDelegate> delegate) = 0;
};

}  // namespace platform
