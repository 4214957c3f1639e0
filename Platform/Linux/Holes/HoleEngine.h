// Holds windows open over the areas of streams: follows the windows of the screen, and does what the book says.
//
// This is how the live style works where a compositor that nobody can look into paints the screen: nothing is copied,
// but the ink is taken away, and what lies beneath is seen as it is.
// Threads: main thread, on the main connection. A call that changes a hole waits for the server.
// Units and axes: device pixels in root coordinates, y down.
// Ownership: always held by a shared pointer; streams hold it weakly. It keeps references to its surroundings, which
// outlive it. All holes are closed when it goes.
// Failure: a sentence for the stream that asks; for the streams that run, through their delegates.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Linux/Holes/HoleBook.h"
#include "Platform/Linux/Holes/HoleCutter.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Stream/CaptureStreamSettings.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/RunLoop.h"

namespace platform::linux::holes {

class HoleEngine final : public scene::SceneListener, public std::enable_shared_from_this<HoleEngine> {
 public:
  // `ownClients`: the resource bases of this program's connections. `token`: tells its holes from those of others.
  // Closes what an earlier process has left open.
  HoleEngine(xcb::Connection& connection, scene::Scene& scene, RunLoop& runLoop, std::vector<std::uint32_t> ownClients,
             std::uint32_t token);
  ~HoleEngine() override;
  HoleEngine(const HoleEngine&) = delete;
  HoleEngine& operator=(const HoleEngine&) = delete;

  [[nodiscard]] std::shared_ptr<platform::CaptureStream> makeStream(stream::CaptureStreamSettings settings,
                                                                    std::weak_ptr<StreamDelegate> delegate);
  // To be called after each batch of events.
  void settle();

  // Whether the owner of the window gave it a shape, if that cannot be told from the window itself.
  [[nodiscard]] std::optional<bool> isShapedByOwner(xcb_window_t window) const;

  // For streams. The hole stands when `open` returns without an error; a stream that is open is opened anew.
  [[nodiscard]] std::expected<void, Error> open(const stream::CaptureStreamSettings& settings,
                                                std::weak_ptr<StreamDelegate> delegate);
  void close(HoleBook::Stream stream);
  void admit(HoleBook::Stream stream, std::span<const xcb_window_t> windows);
  [[nodiscard]] RunLoop& runLoop() { return runLoop_; }

  void windowAdded(const scene::SceneWindow& window) override;
  void windowRemoved(const scene::SceneWindow& window, scene::Departure departure) override;
  void windowChanged(const scene::SceneWindow& before, const scene::SceneWindow& after) override;
  void windowReshaped(const scene::SceneWindow& window) override;
  void windowRestacked(const scene::SceneWindow& /*window*/) override {}
  void compositingManagerChanged(bool /*isRunning*/) override {}

 private:
  [[nodiscard]] bool isOwn(xcb_window_t window) const;
  [[nodiscard]] std::expected<void, Error> carryOut();
  [[nodiscard]] std::expected<void, Error> carryOut(const HoleBook::Step& step);
  void mend(xcb_window_t window);
  void forget(xcb_window_t window);
  void finish(xcb_window_t window);
  void finishLater(const std::vector<xcb_window_t>& windows);

  xcb::Connection& connection_;
  scene::Scene& scene_;
  RunLoop& runLoop_;
  std::vector<std::uint32_t> ownClients_;
  HoleBook book_;
  HoleCutter cutter_;
  std::map<HoleBook::Stream, std::weak_ptr<StreamDelegate>> delegates_;
  struct Open {
    Hole hole;
    // Counts the times that it was closed but for its end; none while it is open.
    std::optional<std::uint64_t> closing;
  };
  std::map<xcb_window_t, Open> holes_;
  std::uint64_t closings_ = 0;
  // Closed but for the end, and of another size since.
  std::vector<xcb_window_t> resized_;
  bool mayHaveChanged_ = false;
};

// What it cannot do without; empty when nothing is missing.
[[nodiscard]] std::vector<std::string> extensionsMissingForHoles(const xcb::Connection& connection);

}  // namespace platform::linux::holes
