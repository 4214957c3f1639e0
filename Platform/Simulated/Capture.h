// A capture service whose every answer the tests decide.
//
// Threads: main thread only. Completions, stop reports and frames arrive on other threads, while the main thread waits.
// Contract: ends the process when a stream is started twice, before it has an output or after its end; when it is
// stopped twice or before it was started; and when a test delivers a frame of a stream that is not running.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/Request.h"
#include "Platform/Simulated/RunLoop.h"
#include "Platform/Simulated/Samples.h"

namespace platform::simulated {

struct ContentRequest {
  ShareableContentOptions options;
  std::shared_ptr<Request<ShareableContent>> request;
};

enum class StreamPhase { made, starting, running, failedToStart, stopping, stopped, stoppedByError };

// One stream as the service knows it; the caller holds a handle to it.
class Stream {
 public:
  struct Output {
    std::weak_ptr<StreamOutput> receiver;
    StreamOutputType type{};
    std::shared_ptr<platform::SerialQueue> queue;
  };

  Stream(Record& record, int number, ContentFilter filter, const StreamConfiguration& configuration,
         std::weak_ptr<StreamDelegate> delegate);

  // Hands the frame to the queue of every output; it arrives when the queue runs.
  void deliver(const SharedSample& sample, StreamOutputType type = StreamOutputType::screen) const;
  // The service ends the stream by itself.
  void stopWithError(const std::string& description);

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] const ContentFilter& filter() const { return filter_; }
  [[nodiscard]] const StreamConfiguration& configuration() const { return configuration_; }
  [[nodiscard]] std::shared_ptr<StreamDelegate> delegate() const { return delegate_.lock(); }
  [[nodiscard]] const std::vector<Output>& outputs() const { return outputs_; }
  [[nodiscard]] StreamPhase phase() const { return phase_; }
  [[nodiscard]] bool isRunning() const { return phase_ == StreamPhase::running; }
  // False once the caller has dropped its handle.
  [[nodiscard]] bool isHeld() const { return isHeld_; }
  [[nodiscard]] const std::shared_ptr<Request<void>>& startRequest() const { return startRequest_; }
  [[nodiscard]] const std::shared_ptr<Request<void>>& stopRequest() const { return stopRequest_; }
  // What each call of `admit` named.
  [[nodiscard]] const std::vector<std::vector<std::uint32_t>>& admissions() const { return admissions_; }

  // Called by the handle and the service.
  void note(const std::string& what) const;
  void add(Output output);
  void admit(const std::vector<std::uint32_t>& windowIDs) { admissions_.push_back(windowIDs); }
  [[nodiscard]] std::shared_ptr<Request<void>> start(CaptureStream::Completion completion);
  [[nodiscard]] std::shared_ptr<Request<void>> stop(CaptureStream::Completion completion);
  void release();
  void drop();

 private:
  Record& record_;
  const int number_;
  const ContentFilter filter_;
  const StreamConfiguration configuration_;
  const std::weak_ptr<StreamDelegate> delegate_;
  std::vector<Output> outputs_;
  std::vector<std::vector<std::uint32_t>> admissions_;
  // Shared with the frames in flight, which are not delivered once the stream has ended.
  std::shared_ptr<StreamPhase> sharedPhase_ = std::make_shared<StreamPhase>(StreamPhase::made);
  StreamPhase& phase_ = *sharedPhase_;
  bool isHeld_ = true;
  std::shared_ptr<Request<void>> startRequest_;
  std::shared_ptr<Request<void>> stopRequest_;
};

class CaptureService final : public platform::CaptureService {
 public:
  CaptureService(Record& record, RunLoop& runLoop) : record_(record), runLoop_(runLoop) {}

  void shareableContent(ShareableContentOptions options, ContentCompletion completion) override;
  std::shared_ptr<void> observeContent(std::function<void()> changed) override;
  std::shared_ptr<CaptureStream> makeStream(const ContentFilter& filter, const StreamConfiguration& configuration,
                                            std::weak_ptr<StreamDelegate> delegate) override;

  // Tells the observers that the content has changed.
  void announceChange();
  [[nodiscard]] std::size_t observerCount() const;

  // What the service answers with, read when it answers.
  ShareableContent content;
  Answering contentAnswering;
  Answering startAnswering;
  Answering stopAnswering;
  std::optional<std::string> addOutputFailure;

  [[nodiscard]] const std::vector<ContentRequest>& contentRequests() const { return contentRequests_; }
  // Every stream ever made, in order.
  [[nodiscard]] const std::vector<std::shared_ptr<Stream>>& streams() const { return streams_; }
  [[nodiscard]] std::vector<std::shared_ptr<Stream>> runningStreams() const;
  // Destroys every completion that has not run.
  void drop();

 private:
  Record& record_;
  RunLoop& runLoop_;
  std::vector<ContentRequest> contentRequests_;
  std::vector<std::shared_ptr<Stream>> streams_;
  std::vector<std::weak_ptr<std::function<void()>>> observers_;
};

}  // namespace platform::simulated
