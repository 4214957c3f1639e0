// A stream without pictures: while it runs, the windows that it leaves out have a hole over its area.
//
// Threads: main thread, but for its output, which is called on its queue.
// Ownership and failure: as the port says; it holds the engine weakly. Destroying a stream stops it.
#pragma once

#include <memory>

#include "Platform/Capture.h"
#include "Platform/Linux/Holes/HoleEngine.h"

namespace platform::linux::holes {

class HoleStream final : public platform::CaptureStream {
 public:
  HoleStream(std::weak_ptr<HoleEngine> engine, stream::CaptureStreamSettings settings,
             std::weak_ptr<StreamDelegate> delegate);
  ~HoleStream() override;
  HoleStream(const HoleStream&) = delete;
  HoleStream& operator=(const HoleStream&) = delete;

  std::expected<void, Error> addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                       std::shared_ptr<SerialQueue> queue) override;
  void startCapture(Completion completion) override;
  void stopCapture(Completion completion) override;
  void admit(const std::vector<std::uint32_t>& windowIDs) override;

 private:
  [[nodiscard]] std::expected<void, Error> open(HoleEngine& engine);
  void close();

  std::weak_ptr<HoleEngine> engine_;
  stream::CaptureStreamSettings settings_;
  std::weak_ptr<StreamDelegate> delegate_;
  std::weak_ptr<StreamOutput> output_;
  std::shared_ptr<SerialQueue> queue_;
  // The one frame, on its way. Shared with what the run loop still has to do.
  class Delivery;
  std::shared_ptr<Delivery> delivery_;
};

}  // namespace platform::linux::holes
