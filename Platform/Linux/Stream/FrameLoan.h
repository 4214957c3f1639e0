// What a stream lends to one frame at a time: a region in the X server that says what has changed, the steps that paint
// it, and the fences that keep stream and reader in order.
//
// Threads: the stream's thread plans, lends and reclaims; the frame that has the loan may live on another thread. They
// share only the state of the loan, under a lock.
// Units and axes: device pixels, origin at the picture's top-left corner.
// Ownership: shared by the stream and its frames. It keeps the connection alive, and with it what the steps name.
// Destroying it waits for the server, at most a second, if a reader's last requests may still be on their way there.
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
  // `wakeup` is notified when a loan ends that somebody has asked about, and when a whole frame is requested.
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
  // If so, the end of the loan will be notified.
  [[nodiscard]] bool isLent();
  // True once for each time that a frame requested a whole one.
  [[nodiscard]] bool takeWholeRequest();
  enum class Reading : std::uint8_t {
    done,
    missed,  // what the last frame held still has to be shown: all of `changed`
    never,   // nobody has read a frame of this stream: the whole picture still has to be shown
  };
  // If there is a target to keep up to date, returns true after calling `paint`, whose requests follow all that the
  // last reader sent, and flushing.
  bool paintLive(const std::function<void(const LiveTarget&)>& paint);
  // Before planning, while nothing is lent: orders what follows after all that the last reader sent, and says what
  // became of the last frame.
  Reading reclaim();
  // After planning: `changed` is what the steps paint.
  [[nodiscard]] std::shared_ptr<const Frame> lend(std::vector<compositor::PaintStep> steps, bool isWhole);

  // The stream makes no more frames and paints nothing more. The stream that it took the window from is asked for the
  // picture.
  void endStream();

  // The side of the frame that has the loan.
  void awaitComposed(xcb_connection_t* reader) const;
  void finishReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target);
  void drop();
  // If this stream has ended, asks the one that it took the window from, and so on.
  void requestWhole();
  [[nodiscard]] bool hasEnded();
  // A frame of this stream is now shown where a frame of the other, older stream was.
  void tookOverFrom(const std::shared_ptr<FrameLoan>& older);
  // The side of any frame: gives up the target. The reader's next requests follow what was painted there.
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
