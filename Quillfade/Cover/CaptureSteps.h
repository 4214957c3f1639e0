// The capture service's asynchronous operations as steps of a coroutine on the main thread.
#pragma once

#include <expected>
#include <memory>
#include <utility>

#include "Platform/Platform.h"
#include "Quillfade/Basics/Task.h"

namespace quillfade {

using ContentResult = std::expected<platform::ShareableContent, platform::Error>;
using StreamResult = std::expected<void, platform::Error>;

[[nodiscard]] inline auto shareableContent(platform::Platform& platform) {
  // Desktop windows are part of the picture; windows off screen are not.
  constexpr platform::ShareableContentOptions options{.excludingDesktopWindows = false, .onScreenWindowsOnly = true};
  return onMainQueue<ContentResult>(platform.runLoop(), [&platform, options](auto completion) {
    platform.capture().shareableContent(options, std::move(completion));
  });
}

[[nodiscard]] inline auto startCapture(platform::RunLoop& runLoop, std::shared_ptr<platform::CaptureStream> stream) {
  return onMainQueue<StreamResult>(
      runLoop, [stream = std::move(stream)](auto completion) { stream->startCapture(std::move(completion)); });
}

[[nodiscard]] inline auto stopCapture(platform::RunLoop& runLoop, std::shared_ptr<platform::CaptureStream> stream) {
  return onMainQueue<StreamResult>(
      runLoop, [stream = std::move(stream)](auto completion) { stream->stopCapture(std::move(completion)); });
}

}  // namespace quillfade
