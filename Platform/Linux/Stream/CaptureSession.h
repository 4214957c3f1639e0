// A running capture: one connection, the scene on it, the compositor, and the pace of its frames.
//
// Threads: everything on one thread, which alternates `nextFrame` and `wait`.
// Ownership: owns all of these. The picture lives on as long as a frame of it does.
// Failure: `open` says in a sentence why it cannot run; `isLost` says that the connection was lost later.
#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <span>

#include "Platform/Error.h"
#include "Platform/Linux/Compositor/Compositor.h"
#include "Platform/Linux/Posix/Wakeup.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Stream/CaptureStreamSettings.h"
#include "Platform/Linux/Stream/Frame.h"
#include "Platform/Linux/Stream/FrameLoan.h"
#include "Platform/Linux/Stream/FramePace.h"
#include "Platform/Linux/Stream/LivePainter.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::stream {

class CaptureSession {
 public:
  static std::expected<std::unique_ptr<CaptureSession>, Error> open(const CaptureStreamSettings& settings,
                                                                    std::shared_ptr<posix::Wakeup> wakeup);
  ~CaptureSession() { loan_->endStream(); }
  CaptureSession(const CaptureSession&) = delete;
  CaptureSession& operator=(const CaptureSession&) = delete;

  [[nodiscard]] bool isLost() const { return connection_->isBroken(); }
  // Handles what has happened. Returns a frame if there is something new to show, the last frame has been returned, and
  // it is time. Never blocks. Where the picture is already shown and kept up to date, it paints there and returns no
  // frame.
  [[nodiscard]] std::shared_ptr<const Frame> nextFrame();
  // Handles pending news of the windows first.
  void admit(std::span<const xcb_window_t> windows);
  [[nodiscard]] bool isHoldingBack() const { return compositor_.isHoldingBack(); }
  void forgetWallpaper() { compositor_.forgetWallpaper(); }
  // Waits until the next frame may be possible, the wakeup is notified, or the connection is lost.
  void wait();

 private:
  using Clock = FramePace::Clock;

  CaptureSession(const CaptureStreamSettings& settings, std::shared_ptr<xcb::Connection> connection,
                 std::shared_ptr<FrameLoan> loan, std::shared_ptr<posix::Wakeup> wakeup);
  void takeIn(const xcb_generic_event_t& event);
  // Handles what one read of the connection brings; what is left keeps the descriptor readable. Returns the number of
  // events.
  int takeInSome();
  // Whether that was all that has arrived.
  bool takeInMost();
  // When there will be something to do even if nothing further happens.
  [[nodiscard]] std::optional<Clock::time_point> nextDeadline(Clock::time_point now) const;
  // Whether the picture is kept up to date where it is shown; if so, it is up to date now.
  bool paintLive();
  [[nodiscard]] std::shared_ptr<const Frame> compose();

  std::shared_ptr<xcb::Connection> connection_;
  std::shared_ptr<posix::Wakeup> wakeup_;
  std::shared_ptr<FrameLoan> loan_;
  scene::Scene scene_;
  compositor::Compositor compositor_;
  LivePainter livePainter_;
  const Clock::duration interval_;
  FramePace pace_;
  Clock::time_point nextExaminationDue_;
  bool isWholeWanted_ = false;
  bool isMoreToTakeIn_ = false;
};

}  // namespace platform::linux::stream
