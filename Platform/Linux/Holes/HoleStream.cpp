#include "Platform/Linux/Holes/HoleStream.h"

#include <atomic>
#include <thread>
#include <utility>

#include "Platform/Linux/Holes/SeeThroughFrame.h"

namespace platform::linux::holes {

// Queues are not to be used on the main thread, so the frame has one of its own for that moment.
class HoleStream::Delivery {
 public:
  ~Delivery() { end(); }

  void begin(std::weak_ptr<StreamOutput> output, std::shared_ptr<SerialQueue> queue) {
    output_ = std::move(output);
    queue_ = std::move(queue);
    isRunning_ = true;
  }
  [[nodiscard]] bool isRunning() const { return isRunning_; }
  void deliver() {
    if (!isRunning_ || !queue_) return;
    thread_ = std::thread([this] {
      queue_->perform([this] {
        const auto receiver = output_.lock();
        if (receiver && isRunning_)
          receiver->streamDidOutput(std::make_shared<SeeThroughFrame>(), StreamOutputType::screen);
      });
    });
  }
  // Afterwards no frame comes any more.
  void end() {
    isRunning_ = false;
    if (thread_.joinable()) thread_.join();
  }

 private:
  std::weak_ptr<StreamOutput> output_;
  std::shared_ptr<SerialQueue> queue_;
  std::atomic<bool> isRunning_ = false;
  std::thread thread_;
};

HoleStream::HoleStream(std::weak_ptr<HoleEngine> engine, stream::CaptureStreamSettings settings,
                       std::weak_ptr<StreamDelegate> delegate)
    : engine_(std::move(engine)),
      settings_(std::move(settings)),
      delegate_(std::move(delegate)),
      delivery_(std::make_shared<Delivery>()) {}

HoleStream::~HoleStream() { close(); }

std::expected<void, Error> HoleStream::addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                                 std::shared_ptr<SerialQueue> queue) {
  if (type != StreamOutputType::screen) return std::unexpected(Error{"There is no sound to capture."});
  if (delivery_->isRunning()) return std::unexpected(Error{"The capture has begun already."});
  output_ = std::move(output);
  queue_ = std::move(queue);
  return {};
}

std::expected<void, Error> HoleStream::open(HoleEngine& engine) {
  if (const auto fault = stream::faultOf(settings_.source)) return std::unexpected(*fault);
  return engine.open(settings_, delegate_);
}

void HoleStream::startCapture(Completion completion) {
  const auto engine = engine_.lock();
  if (!engine) return;
  const auto opened = open(*engine);
  if (opened) delivery_->begin(output_, queue_);
  engine->runLoop().post([opened, completion = std::move(completion), delivery = delivery_] {
    completion(opened);
    delivery->deliver();
  });
}

void HoleStream::stopCapture(Completion completion) {
  close();
  const auto engine = engine_.lock();
  if (engine) engine->runLoop().post([completion = std::move(completion)] { completion({}); });
}

void HoleStream::admit(const std::vector<std::uint32_t>& windowIDs) {
  if (const auto engine = engine_.lock()) engine->admit(settings_.serial, windowIDs);
}

void HoleStream::close() {
  delivery_->end();
  if (const auto engine = engine_.lock()) engine->close(settings_.serial);
}

}  // namespace platform::linux::holes
