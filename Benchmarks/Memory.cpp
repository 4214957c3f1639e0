#include "Benchmarks/Memory.h"

#include <unistd.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

#include "Benchmarks/Subjects.h"
#include "Benchmarks/Workloads.h"
#include "Platform/Linux/Stream/CaptureStream.h"
#include "Tests/Support/InlineQueue.h"
#include "Tests/Support/ProcessState.h"

namespace bench {

namespace {

using platform::linux::stream::CaptureStream;
using Result = std::expected<void, platform::Error>;

constexpr PixelRect area{0, 0, 1920, 1080};
const Place place{area, area, area};

void letItSettle() { std::this_thread::sleep_for(std::chrono::seconds(2)); }

class Output final : public platform::StreamOutput, public platform::StreamDelegate {
 public:
  void streamDidOutput(std::shared_ptr<const platform::SampleBuffer> /*sample*/,
                       platform::StreamOutputType /*type*/) override {}
  void streamDidStop(const platform::Error& /*error*/) override {}
};

void await(const std::function<void(CaptureStream::Completion)>& call) {
  std::promise<Result> promise;
  call([&](Result result) { promise.set_value(std::move(result)); });
  if (const Result result = promise.get_future().get(); !result)
    throw std::runtime_error(result.error().localizedDescription);
}

void restart(const std::string& display, std::uint64_t serial) {
  const auto output = std::make_shared<Output>();
  platform::linux::stream::CaptureStreamSettings settings;
  settings.displayName = display;
  settings.source = area;
  settings.minimumFrameInterval = std::chrono::milliseconds(33);
  settings.serial = serial;
  CaptureStream stream(settings, output);
  if (!stream.addOutput(output, platform::StreamOutputType::screen, std::make_shared<support::InlineQueue>()))
    throw std::runtime_error("A stream takes no output.");
  await([&](CaptureStream::Completion done) { stream.startCapture(std::move(done)); });
  await([&](CaptureStream::Completion done) { stream.stopCapture(std::move(done)); });
}

void measureRestarts(MemoryMeasurement& measurement) {
  const support::XServer server({.width = area.width, .height = area.height, .arguments = {}});
  const auto workload = makeWorkload("windows-10", server.display());
  for (int count = 1; count <= measurement.restarts; ++count) {
    restart(server.display(), static_cast<std::uint64_t>(count));
    if (count == measurement.restarts / 2) {
      measurement.programAtHalf = support::residentBytes(getpid());
      measurement.serverAtHalf = support::residentBytes(server.processId());
    }
  }
  measurement.programAtEnd = support::residentBytes(getpid());
  measurement.serverAtEnd = support::residentBytes(server.processId());
}

}  // namespace

MemoryMeasurement measureMemory(int restarts) {
  MemoryMeasurement measurement;
  measurement.restarts = restarts;
  {
    const support::XServer server({.width = area.width, .height = area.height, .arguments = {}});
    const auto workload = makeWorkload("typing", server.display());
    letItSettle();
    const std::size_t before = support::residentBytes(server.processId());
    const auto program = startSubject(ours, server.display(), place);
    letItSettle();
    measurement.program = support::residentBytes(program->process());
    measurement.server = support::residentBytes(server.processId()) - before;
  }
  {
    const support::XServer server({.width = area.width, .height = area.height, .arguments = {}});
    const support::PrivateHome home;
    const support::ChildProcess tray({EMPTY_TRAY_EXECUTABLE}, home.environment(server.display()));
    letItSettle();
    measurement.emptyTrayProgram = support::residentBytes(tray.id());
  }
  measureRestarts(measurement);
  return measurement;
}

}  // namespace bench
