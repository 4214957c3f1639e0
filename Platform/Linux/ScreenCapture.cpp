#include "Platform/Linux/ScreenCapture.h"

#include <algorithm>
#include <utility>

#include "Platform/Linux/X11/CaptureStream.h"

namespace platform::x11 {

ScreenCapture::ScreenCapture(const Connection& connection, const DesktopScreens& screens, RunLoop& runLoop,
                             std::vector<std::uint32_t> ownClients, WindowList& windows, const OverlayStage& stage)
    : connection_(connection),
      screens_(screens),
      runLoop_(runLoop),
      ownClients_(std::move(ownClients)),
      windows_(windows),
      stage_(stage) {}

void ScreenCapture::shareableContent(ShareableContentOptions options, ContentCompletion completion) {
  waiting_.push_back({options, std::move(completion)});
  settle();
}

// A window of ours that is about to appear belongs on the list: without it, the next look at the list would find a
// change.
void ScreenCapture::settle() {
  if (stage_.awaitsWindows()) return;
  for (auto& request : std::exchange(waiting_, {})) {
    runLoop_.post(
        [result = content(request.options), completion = std::move(request.completion)] { completion(result); });
  }
}

std::expected<ShareableContent, Error> ScreenCapture::content(const ShareableContentOptions& options) {
  if (!preflight()) return std::unexpected(Error{missingExtensionsSentence(connection_.missingExtensions())});
  ShareableContent result;
  for (const auto& screen : screens_.all()) {
    if (screen.displayID) result.displays.push_back({*screen.displayID});
  }
  windows_.setScreens(screens_.geometries());
  result.windows = windows_.windows(options);
  return result;
}

std::shared_ptr<platform::CaptureStream> ScreenCapture::makeStream(const ContentFilter& filter,
                                                                   const StreamConfiguration& configuration,
                                                                   std::weak_ptr<StreamDelegate> delegate) {
  auto settings = captureStreamSettings(configuration, geometry(filter.display));
  for (const auto& window : filter.excludingWindows) settings.excludedWindows.push_back(window.windowID);
  settings.ownClients = ownClients_;
  settings.serial = ++streamCount_;
  return std::make_shared<CaptureStream>(std::move(settings), std::move(delegate));
}

ScreenGeometry ScreenCapture::geometry(const CaptureDisplay& display) const {
  const auto screens = screens_.all();
  const auto geometries = screens_.geometries();
  const auto found = std::ranges::find(screens, display.displayID, &Screen::displayID);
  const auto index = static_cast<std::size_t>(found - screens.begin());
  // A display that went since it was listed has no pixels; the stream then has nothing to show but starts all the same.
  return index < geometries.size() ? geometries[index] : ScreenGeometry{};
}

}  // namespace platform::x11
