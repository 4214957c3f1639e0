// A capture that runs: one connection, the scene on it, the compositor, and the pace at which frames are made.
//
// Threads: everything on one thread, which alternates `nextFrame` and `wait`.
// Ownership: RAII. The picture lives on as long as a frame of it does.
// Failure: `open` says in a sentence why it cannot run; a connection that is lost later shows in `isLost`.
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
  // Takes in what has happened. A frame if there is something new to show, the last frame has been given back, and it
  // is time. Never blocks. Where the picture is shown already and kept up to date, it paints there, and there is no
  // frame.
  [[nodiscard]] std::shared_ptr<const Frame> nextFrame();
  // What is known of the windows by now is taken in first.
  void admit(std::span<const xcb_window_t> windows);
  [[nodiscard]] bool isHoldingBack() const { return compositor_.isHoldingBack(); }
  void forgetWallpaper() { compositor_.forgetWallpaper(); }
  // Until there may be a next frame, the wakeup was notified, or the connection was lost.
  void wait();

 private:
  using Clock = FramePace::Clock;

  CaptureSession(const CaptureStreamSettings& settings, std::shared_ptr<xcb::Connection> connection,
                 std::shared_ptr<FrameLoan> loan, std::shared_ptr<posix::Wakeup> wakeup);
  void takeIn(const xcb_generic_event_t& event);
  // As much as one read of the connection brings: what it leaves behind keeps the descriptor readable. How many events
  // that were.
  int takeInSome();
  // Whether that was all that has arrived.
  bool takeInMost();
  // When there will be something to do without anything further happening.
  [[nodiscard]] std::optional<Clock::time_point> nextDeadline(Clock::time_point now) const;
  // Whether the picture is kept up to date where it is shown; then it is up to date now.
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
