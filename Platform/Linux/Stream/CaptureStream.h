// A stream of live frames of a part of the screen, with a thread and an X connection of its own.
//
// Threads: as the port says. The thread starts with the capture and ends with the stream. Destroying a stream stops it
// and waits for the thread, which at that point is composing one frame at most. On the stream's own thread it does not
// wait.
// Ownership and failure: as the port says. Frames are of the type `Frame` and outlive the stream.
// Order: on success, the completion of the start is called before the first frame is delivered.
// Precondition: the screen's windows are redirected by a connection that lives on (`Redirection`).
#pragma once

#include <memory>
#include <thread>

#include "Platform/Capture.h"
#include "Platform/Linux/Stream/CaptureStreamSettings.h"

namespace platform::linux::stream {

class CaptureStream final : public platform::CaptureStream {
 public:
  CaptureStream(CaptureStreamSettings settings, std::weak_ptr<StreamDelegate> delegate);
  ~CaptureStream() override;
  CaptureStream(const CaptureStream&) = delete;
  CaptureStream& operator=(const CaptureStream&) = delete;

  std::expected<void, Error> addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                       std::shared_ptr<SerialQueue> queue) override;
  void startCapture(Completion completion) override;
  void stopCapture(Completion completion) override;
  void admit(const std::vector<std::uint32_t>& windowIDs) override;
  // Call it when the root window's background has changed, which no event announces.
  void backgroundChanged();
  // Ends the thread, even if somebody still holds the stream. Nothing is called back once this returns.
  void finish();

 private:
  class Worker;

  void runWorker();

  // Shared with the thread, which may briefly outlive this object.
  std::shared_ptr<Worker> worker_;
  std::thread thread_;
};

}  // namespace platform::linux::stream
