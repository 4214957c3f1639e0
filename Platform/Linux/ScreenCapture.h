// The capture service of an X11 desktop, and the permission to use it.
//
// X11 asks nobody's permission. Capturing is allowed wherever the server has the extensions it needs. The X server of a
// Wayland session has only part of what is on the screen: nothing is copied there, but the windows that are left out
// are held open.
// Threads, ownership, failure: as the ports say.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Linux/Compositor/RootBackground.h"
#include "Platform/Linux/Cover/OverlayStage.h"
#include "Platform/Linux/Holes/HoleEngine.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Stream/CaptureStream.h"
#include "Platform/Linux/Toolkit/DesktopScreens.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Permission.h"
#include "Platform/RunLoop.h"

namespace platform::linux {

class ScreenCapture final : public CaptureService, public ScreenCaptureAccess {
 public:
  // `ownClients`: the resource bases of this program's connections. Without `holes`, pictures are copied.
  ScreenCapture(xcb::Connection& connection, const toolkit::DesktopScreens& screens, RunLoop& runLoop,
                std::vector<std::uint32_t> ownClients, scene::WindowList& windows, cover::OverlayStage& stage,
                holes::HoleEngine* holes);
  ~ScreenCapture() override;
  ScreenCapture(const ScreenCapture&) = delete;
  ScreenCapture& operator=(const ScreenCapture&) = delete;

  void shareableContent(ShareableContentOptions options, ContentCompletion completion) override;
  std::shared_ptr<void> observeContent(std::function<void()> changed) override;
  std::shared_ptr<platform::CaptureStream> makeStream(const ContentFilter& filter,
                                                      const StreamConfiguration& configuration,
                                                      std::weak_ptr<StreamDelegate> delegate) override;

  // Answers requests that wait for an event. Call it after each batch of events.
  void settle();

  [[nodiscard]] bool preflight() override { return missingExtensions().empty(); }
  bool request() override { return preflight(); }

 private:
  struct Request {
    ShareableContentOptions options;
    ContentCompletion completion;
  };

  [[nodiscard]] std::vector<std::string> missingExtensions() const;
  [[nodiscard]] std::expected<ShareableContent, Error> content(const ShareableContentOptions& options);
  [[nodiscard]] xcb::ScreenGeometry geometry(const CaptureDisplay& display) const;
  [[nodiscard]] std::shared_ptr<stream::CaptureStream> makeCopyingStream(stream::CaptureStreamSettings settings,
                                                                         std::weak_ptr<StreamDelegate> delegate);
  void contentChanged();
  void watchBackground();
  void checkBackground();

  xcb::Connection& connection_;
  holes::HoleEngine* holes_;
  const toolkit::DesktopScreens& screens_;
  RunLoop& runLoop_;
  std::vector<std::uint32_t> ownClients_;
  scene::WindowList& windows_;
  cover::OverlayStage& stage_;
  std::vector<Request> waiting_;
  std::vector<std::weak_ptr<std::function<void()>>> observers_;
  // Watched while there are streams.
  std::optional<compositor::RootBackground> background_;
  bool isBackgroundDue_ = false;
  std::vector<std::weak_ptr<stream::CaptureStream>> streams_;
  std::uint64_t streamCount_ = 0;
};

}  // namespace platform::linux
