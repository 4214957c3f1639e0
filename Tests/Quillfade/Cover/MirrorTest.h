// A live mirror on a simulated desktop.
#pragma once

#include <memory>
#include <string>

#include "Quillfade/Cover/LiveMirror.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {

class MirrorTest : public OnDesktop {
 protected:
  // What is logged.
  static constexpr const char* restarting = "overlay set changed, restarting capture";

  static constexpr platform::Rect region{{100, 200}, {800, 300}};

  void show(bool outline = false) { mirror->show(region, outline); }

  // Shows the mirror and lets its capture start.
  void showAndStart() {
    show();
    desktop.runLoop().settle();
  }

  // Adds an overlay for the next refresh to find.
  void openOverlay(std::uint32_t number) {
    desktop.capture().content.windows.push_back(listedWindow(number, "org.example.notes", 500));
  }

  void deliver(const simulated::SharedSample& sample, const std::shared_ptr<simulated::Stream>& stream,
               platform::StreamOutputType type = platform::StreamOutputType::screen) {
    stream->deliver(sample, type);
    desktop.runLoop().settle();
  }
  void deliver(const simulated::SharedSample& sample) { deliver(sample, newestStream()); }

  [[nodiscard]] std::shared_ptr<simulated::WindowState> window() const { return desktop.windows().made().back(); }
  [[nodiscard]] const simulated::View& view() const { return *window()->contentView; }
  [[nodiscard]] const simulated::View& label() const { return *view().subviews().front(); }
  [[nodiscard]] simulated::DisplayLayer& displayLayer() const { return *view().sublayers().front(); }
  [[nodiscard]] simulated::SampleBufferRenderer& renderer() const { return displayLayer().sampleBufferRenderer(); }
  [[nodiscard]] std::size_t framesShown() const { return renderer().enqueued().size(); }
  // The visible status text; empty when it is hidden.
  [[nodiscard]] std::string visibleStatus() const { return label().isHidden() ? "" : label().text().value_or(""); }

  [[nodiscard]] const std::vector<std::shared_ptr<simulated::Stream>>& streams() const {
    return desktop.capture().streams();
  }
  [[nodiscard]] std::shared_ptr<simulated::Stream> newestStream() const { return streams().back(); }
  [[nodiscard]] std::shared_ptr<simulated::Request<platform::ShareableContent>> contentRequest(
      std::size_t index) const {
    return desktop.capture().contentRequests().at(index).request;
  }

  std::shared_ptr<LiveMirror> mirror = std::make_shared<LiveMirror>(desktop);
};

inline constexpr const char* waitingText = "Waiting for screen capture\xE2\x80\xA6";
inline constexpr const char* failureText = "Screen capture failed. Check Screen Recording permission.";

}  // namespace quillfade
