#include "Platform/Linux/ScreenCapture.h"

#include <algorithm>
#include <utility>

#include "Platform/Linux/EngineLog.h"

namespace platform::linux {

ScreenCapture::ScreenCapture(xcb::Connection& connection, const toolkit::DesktopScreens& screens, RunLoop& runLoop,
                             std::vector<std::uint32_t> ownClients, scene::WindowList& windows,
                             cover::OverlayStage& stage, holes::HoleEngine* holes)
    : connection_(connection),
      holes_(holes),
      screens_(screens),
      runLoop_(runLoop),
      ownClients_(std::move(ownClients)),
      windows_(windows),
      stage_(stage) {
  windows_.setChanged([this] { contentChanged(); });
}

// Steps that were pending when the application ended hold their streams for ever. End those here, while there is still
// a run loop for their last callbacks.
ScreenCapture::~ScreenCapture() {
  windows_.setChanged(nullptr);
  for (const auto& weakStream : streams_)
    if (const auto stream = weakStream.lock()) stream->finish();
}

std::shared_ptr<void> ScreenCapture::observeContent(std::function<void()> changed) {
  std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
  auto observer = std::make_shared<std::function<void()>>(std::move(changed));
  observers_.push_back(observer);
  return observer;
}

void ScreenCapture::contentChanged() {
  for (const auto& weakObserver : observers_) {
    runLoop_.post([weakObserver] {
      if (const auto observer = weakObserver.lock()) (*observer)();
    });
  }
}

void ScreenCapture::shareableContent(ShareableContentOptions options, ContentCompletion completion) {
  waiting_.push_back({options, std::move(completion)});
  settle();
}

// A window of ours that is about to appear belongs on the list; otherwise the next look would find a change.
void ScreenCapture::settle() {
  if (holes_) holes_->settle();
  if (stage_.awaitsWindows()) return;
  for (auto& request : std::exchange(waiting_, {})) {
    runLoop_.post(
        [result = content(request.options), completion = std::move(request.completion)] { completion(result); });
  }
}

std::vector<std::string> ScreenCapture::missingExtensions() const {
  return holes_ ? holes::extensionsMissingForHoles(connection_) : connection_.missingExtensions();
}

std::expected<ShareableContent, Error> ScreenCapture::content(const ShareableContentOptions& options) {
  if (!preflight()) return std::unexpected(Error{xcb::missingExtensionsSentence(missingExtensions())});
  ShareableContent result;
  for (const auto& screen : screens_.all()) {
    if (screen.displayID) result.displays.push_back({*screen.displayID});
  }
  checkBackground();
  windows_.setScreens(screens_.geometries());
  result.windows = windows_.windows(options);
  result.isPartial = holes_ != nullptr;
  qCDebug(engineLog) << result.windows.size() << "windows on" << result.displays.size() << "displays";
  return result;
}

std::shared_ptr<platform::CaptureStream> ScreenCapture::makeStream(const ContentFilter& filter,
                                                                   const StreamConfiguration& configuration,
                                                                   std::weak_ptr<StreamDelegate> delegate) {
  auto settings = stream::captureStreamSettings(configuration, geometry(filter.display));
  for (const auto& window : filter.excludingWindows) settings.excludedWindows.push_back(window.windowID);
  if (filter.holdingBack) settings.holdBack = stream::holdBack(*filter.holdingBack, geometry(filter.display));
  settings.ownClients = ownClients_;
  settings.serial = ++streamCount_;
  qCDebug(engineLog) << "stream" << settings.serial << "without" << settings.excludedWindows;
  std::shared_ptr<platform::CaptureStream> stream;
  if (holes_)
    stream = holes_->makeStream(std::move(settings), std::move(delegate));
  else
    stream = makeCopyingStream(std::move(settings), std::move(delegate));
  // A stream is often made because other windows are to be left out, and those may be overlapped, too.
  stage_.reconsider();
  return stream;
}

std::shared_ptr<stream::CaptureStream> ScreenCapture::makeCopyingStream(stream::CaptureStreamSettings settings,
                                                                        std::weak_ptr<StreamDelegate> delegate) {
  auto stream = std::make_shared<stream::CaptureStream>(std::move(settings), std::move(delegate));
  streams_.push_back(stream);
  watchBackground();
  return stream;
}

void ScreenCapture::watchBackground() {
  if (background_ || !preflight()) return;
  background_.emplace(connection_);
  windows_.leaveOut(background_->window());
}

// The application lists the content from time to time. Every other time is a good moment to look for what no event
// announces, which costs a reply from the server.
void ScreenCapture::checkBackground() {
  std::erase_if(streams_, [](const auto& stream) { return stream.expired(); });
  if (streams_.empty()) return background_.reset();
  isBackgroundDue_ = !isBackgroundDue_;
  if (!background_ || !isBackgroundDue_ || !background_->hasChanged()) return;
  for (const auto& weakStream : streams_)
    if (const auto stream = weakStream.lock()) stream->backgroundChanged();
}

xcb::ScreenGeometry ScreenCapture::geometry(const CaptureDisplay& display) const {
  const auto screens = screens_.all();
  const auto geometries = screens_.geometries();
  const auto found = std::ranges::find(screens, display.displayID, &Screen::displayID);
  const auto index = static_cast<std::size_t>(found - screens.begin());
  // A display that went away since it was listed has no pixels; the stream starts all the same, with nothing to show.
  return index < geometries.size() ? geometries[index] : xcb::ScreenGeometry{};
}

}  // namespace platform::linux
