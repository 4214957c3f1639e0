// A stream of the simulated capture service, and a listener for it.
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {

class SimulatedCaptureTest : public OnDesktop {
 protected:
  class Output final : public platform::StreamOutput, public platform::StreamDelegate {
   public:
    void streamDidOutput(std::shared_ptr<const platform::SampleBuffer> sample, platform::StreamOutputType) override {
      samples.push_back(std::move(sample));
    }
    void streamDidStop(const platform::Error& error) override { stopped = error.localizedDescription; }
    std::vector<std::shared_ptr<const platform::SampleBuffer>> samples;
    std::string stopped;
  };

  std::shared_ptr<platform::CaptureStream> makeStream() {
    auto stream = desktop.capture().makeStream({}, {}, output);
    EXPECT_TRUE(stream->addOutput(output, platform::StreamOutputType::screen, queue));
    return stream;
  }

  platform::CaptureStream::Completion noteCompletion() {
    return [this](std::expected<void, platform::Error> result) {
      completions.push_back(result ? "done" : result.error().localizedDescription);
    };
  }

  [[nodiscard]] simulated::Stream& newest() const { return *desktop.capture().streams().back(); }

  std::shared_ptr<Output> output = std::make_shared<Output>();
  std::shared_ptr<platform::SerialQueue> queue =
      desktop.runLoop().makeSerialQueue("frames", platform::QualityOfService::userInteractive);
  Strings completions;
};

}  // namespace quillfade
