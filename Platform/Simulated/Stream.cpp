#include <cmath>
#include <utility>

#include "Platform/Simulated/Capture.h"

namespace platform::simulated {

Stream::Stream(Record& record, int number, ContentFilter filter, const StreamConfiguration& configuration,
               std::weak_ptr<StreamDelegate> delegate)
    : record_(record),
      number_(number),
      filter_(std::move(filter)),
      configuration_(configuration),
      delegate_(std::move(delegate)) {
  note("make");
  const DisplayRect& source = configuration_.sourceRect;
  expectFinite({{source.x, source.y}, {source.width, source.height}}, "CaptureService::makeStream");
}

void Stream::note(const std::string& what) const { record_.call("stream " + std::to_string(number_) + ": " + what); }

void Stream::add(Output output) {
  if (phase_ != StreamPhase::made) misuse("CaptureStream::addOutput was called after the start");
  if (output.receiver.expired() || !output.queue) misuse("CaptureStream::addOutput was given no output or no queue");
  outputs_.push_back(std::move(output));
}

std::shared_ptr<Request<void>> Stream::start(CaptureStream::Completion completion) {
  note("start");
  if (phase_ != StreamPhase::made) misuse("CaptureStream::startCapture was called twice");
  if (outputs_.empty()) misuse("CaptureStream::startCapture was called before addOutput");
  phase_ = StreamPhase::starting;
  startRequest_ = std::make_shared<Request<void>>(std::move(completion), [this](const auto& answer) {
    note(answer ? "started" : "start failed");
    if (phase_ == StreamPhase::starting) phase_ = answer ? StreamPhase::running : StreamPhase::failedToStart;
  });
  return startRequest_;
}

std::shared_ptr<Request<void>> Stream::stop(CaptureStream::Completion completion) {
  note("stop");
  if (phase_ != StreamPhase::running && phase_ != StreamPhase::stoppedByError) {
    misuse("CaptureStream::stopCapture was called on a stream that does not run");
  }
  if (stopRequest_) misuse("CaptureStream::stopCapture was called twice");
  if (phase_ == StreamPhase::running) phase_ = StreamPhase::stopping;
  stopRequest_ = std::make_shared<Request<void>>(std::move(completion), [this](const auto& answer) {
    note(answer ? "stopped" : "stop failed");
    phase_ = StreamPhase::stopped;
  });
  return stopRequest_;
}

void Stream::deliver(const SharedSample& sample, StreamOutputType type) const {
  if (phase_ != StreamPhase::running && phase_ != StreamPhase::stopping) {
    misuse("a frame was delivered by a stream that does not run");
  }
  for (const Output& output : outputs_) {
    output.queue->perform([receiver = output.receiver, phase = sharedPhase_, sample, type] {
      if (*phase != StreamPhase::running && *phase != StreamPhase::stopping) return;
      if (const auto live = receiver.lock()) live->streamDidOutput(sample, type);
    });
  }
}

void Stream::stopWithError(const std::string& description) {
  note("stopped by error");
  if (phase_ != StreamPhase::running) misuse("a stream that does not run was stopped by an error");
  phase_ = StreamPhase::stoppedByError;
  runOnAnotherThread([&] {
    if (const auto live = delegate_.lock()) live->streamDidStop(Error{description});
  });
}

void Stream::release() {
  // Any thread may drop the last reference.
  record_.note("stream " + std::to_string(number_) + ": release");
  isHeld_ = false;
  if (phase_ == StreamPhase::running || phase_ == StreamPhase::stopping) phase_ = StreamPhase::stopped;
}

void Stream::drop() {
  if (startRequest_) startRequest_->drop();
  if (stopRequest_) stopRequest_->drop();
}

}  // namespace platform::simulated
