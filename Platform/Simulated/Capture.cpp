#include "Platform/Simulated/Capture.h"

#include <algorithm>
#include <utility>

namespace platform::simulated {

namespace {

class StreamHandle final : public CaptureStream {
 public:
  StreamHandle(CaptureService& service, RunLoop& runLoop, std::shared_ptr<Stream> stream)
      : service_(service), runLoop_(runLoop), stream_(std::move(stream)) {}
  ~StreamHandle() override { stream_->release(); }
  StreamHandle(const StreamHandle&) = delete;
  StreamHandle& operator=(const StreamHandle&) = delete;

  std::expected<void, Error> addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                       std::shared_ptr<platform::SerialQueue> queue) override {
    stream_->note("add output");
    if (service_.addOutputFailure) return std::unexpected(Error{*service_.addOutputFailure});
    stream_->add({std::move(output), type, std::move(queue)});
    return {};
  }

  void startCapture(Completion completion) override {
    const auto request = stream_->start(std::move(completion));
    if (!service_.startAnswering.isHeld) answerLater<void>(runLoop_, request, service_.startAnswering, {});
  }

  void stopCapture(Completion completion) override {
    const auto request = stream_->stop(std::move(completion));
    Answering answering = service_.stopAnswering;
    if (stream_->phase() == StreamPhase::stoppedByError) answering.failure = "The stream has already stopped.";
    if (!answering.isHeld) answerLater<void>(runLoop_, request, answering, {});
  }

  void admit(const std::vector<std::uint32_t>& windowIDs) override { stream_->admit(windowIDs); }

 private:
  CaptureService& service_;
  RunLoop& runLoop_;
  std::shared_ptr<Stream> stream_;
};

}  // namespace

void CaptureService::shareableContent(ShareableContentOptions options, ContentCompletion completion) {
  record_.call("capture: shareable content");
  auto request = std::make_shared<Request<ShareableContent>>(std::move(completion), [](const auto&) {});
  contentRequests_.push_back({options, request});
  if (!contentAnswering.isHeld) {
    answerLater<ShareableContent>(runLoop_, request, contentAnswering, [this] { return content; });
  }
}

std::shared_ptr<void> CaptureService::observeContent(std::function<void()> changed) {
  auto observer = std::make_shared<std::function<void()>>(std::move(changed));
  observers_.push_back(observer);
  return observer;
}

void CaptureService::announceChange() {
  for (const auto& weakObserver : std::vector(observers_)) {
    if (const auto observer = weakObserver.lock()) (*observer)();
  }
}

std::size_t CaptureService::observerCount() const {
  return static_cast<std::size_t>(std::ranges::count_if(observers_, [](const auto& each) { return !each.expired(); }));
}

std::shared_ptr<CaptureStream> CaptureService::makeStream(const ContentFilter& filter,
                                                          const StreamConfiguration& configuration,
                                                          std::weak_ptr<StreamDelegate> delegate) {
  const int number = static_cast<int>(streams_.size()) + 1;
  streams_.push_back(std::make_shared<Stream>(record_, number, filter, configuration, std::move(delegate)));
  return std::make_shared<StreamHandle>(*this, runLoop_, streams_.back());
}

std::vector<std::shared_ptr<Stream>> CaptureService::runningStreams() const {
  std::vector<std::shared_ptr<Stream>> running;
  for (const auto& stream : streams_) {
    if (stream->isRunning()) running.push_back(stream);
  }
  return running;
}

void CaptureService::drop() {
  for (const ContentRequest& each : contentRequests_) each.request->drop();
  for (const auto& stream : streams_) stream->drop();
}

}  // namespace platform::simulated
