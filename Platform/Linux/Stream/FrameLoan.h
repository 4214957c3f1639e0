// What a stream lends to one frame at a time: a region in the X server that says what has changed, the steps that paint
// it, and the fences that keep stream and reader in order.
//
// Threads: the stream's thread plans, lends and reclaims; the frame that has the loan may live on another thread. Only
// the state of the loan is shared, under a lock.
// Units and axes: device pixels, origin at the picture's top-left corner.
// Ownership: shared by the stream and its frames; it keeps the connection, and so what the steps name, alive.
// Destroying it waits for the server, a second at most, if a reader's last requests may still be on their way there.
// Failure: none of its own.
#pragma once

#include <xcb/sync.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "Platform/Linux/Compositor/PaintStep.h"
#include "Platform/Linux/Posix/Wakeup.h"
#include "Platform/Linux/Stream/LiveTarget.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::stream {

class Frame;

class FrameLoan : public std::enable_shared_from_this<FrameLoan> {
 public:
  // `wakeup` is notified when a loan ends that somebody has asked about, and when a whole frame is asked for.
  static std::shared_ptr<FrameLoan> make(std::shared_ptr<xcb::Connection> connection, std::int32_t width,
                                         std::int32_t height, std::uint64_t streamSerial,
                                         std::shared_ptr<posix::Wakeup> wakeup);
  ~FrameLoan();
  FrameLoan(const FrameLoan&) = delete;
  FrameLoan& operator=(const FrameLoan&) = delete;

  [[nodiscard]] std::uint64_t streamSerial() const { return streamSerial_; }
  [[nodiscard]] std::int32_t width() const { return width_; }
  [[nodiscard]] std::int32_t height() const { return height_; }
  [[nodiscard]] const std::vector<compositor::PaintStep>& steps() const { return steps_; }
  [[nodiscard]] const xcb::Region& changed() const { return changed_; }

  // The stream's side.
  [[nodiscard]] xcb::Region& changed() { return changed_; }
  // If so, the end of the loan is notified.
  [[nodiscard]] bool isLent();
  // Once for each time that frames asked for a whole one.
  [[nodiscard]] bool takeWholeRequest();
  enum class Reading : std::uint8_t {
    done,
    missed,  // what the last frame held is still to be seen: all of `changed`
    never,   // nobody has read a frame of this stream: all of the picture is still to be seen
  };
  // Whether there is a target that is to be kept up to date: then calls this, behind all that the last reader sent, and
  // sends off what it asks of the server.
  bool paintLive(const std::function<void(const LiveTarget&)>& paint);
  // Before planning, while nothing is lent: puts what follows behind all that the last reader sent. Says what has
  // become of the last frame.
  Reading reclaim();
  // After planning: `changed` is what the steps paint.
  [[nodiscard]] std::shared_ptr<const Frame> lend(std::vector<compositor::PaintStep> steps, bool isWhole);

  // The stream makes no more frames, and paints nothing more. Whoever it took the window from is asked for the picture.
  void endStream();

  // The side of the frame that has the loan.
  void awaitComposed(xcb_connection_t* reader) const;
  void finishReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target);
  void drop();
  // Of the stream that this one took the window from, and so on, where this one has ended.
  void requestWhole();
  [[nodiscard]] bool hasEnded();
  // Where a frame of the other stream, an older one, was shown, one of this stream is shown now.
  void tookOverFrom(const std::shared_ptr<FrameLoan>& older);
  // The side of any frame: no target any more. What the reader sends next comes after what was painted there.
  void endLive(xcb_connection_t* reader);

 private:
  enum class State : std::uint8_t { none, lent, read, dropped };

  FrameLoan(std::shared_ptr<xcb::Connection> connection, std::int32_t width, std::int32_t height,
            std::uint64_t streamSerial, std::shared_ptr<posix::Wakeup> wakeup);
  void createFences();
  void destroyFences();
  void awaitRead();
  void triggerConsumed(xcb_connection_t* reader) const;
  void endLoan(State outcome, const std::optional<LiveTarget>& target = std::nullopt);

  std::shared_ptr<xcb::Connection> connection_;
  const std::int32_t width_;
  const std::int32_t height_;
  const std::uint64_t streamSerial_;
  std::shared_ptr<posix::Wakeup> wakeup_;
  xcb_sync_fence_t composed_ = 0;
  xcb_sync_fence_t consumed_ = 0;
  xcb::Region changed_;
  std::vector<compositor::PaintStep> steps_;
  bool wasEverRead_ = false;

  std::mutex mutex_;
  State state_ = State::none;
  bool isEndAwaited_ = false;
  bool isWholeRequested_ = false;
  bool hasEnded_ = false;
  std::weak_ptr<FrameLoan> older_;
  std::optional<LiveTarget> target_;
};

}  // namespace platform::linux::stream
