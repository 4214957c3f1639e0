// The content of a mirror window: the live picture, a status text over it, and an optional outline.
//
// Threads: main thread only.
// Lifetime: shared by the mirror; the platform's view holds it weakly for layout.
#pragma once

#include <memory>
#include <string>

#include "Platform/Views.h"

namespace quillfade {

inline constexpr const char* waitingStatus = "Waiting for screen capture…";
inline constexpr const char* failureStatus = "Screen capture failed. Check Screen Recording permission.";

// The hairline around a cover.
inline constexpr double outlineWidth = 1.0;
inline constexpr platform::Color outlineColor = platform::colors::label.withAlpha(0.16);
inline constexpr unsigned followsWindowSize = platform::resizemask::widthSizable | platform::resizemask::heightSizable;

class MirrorView final : public platform::ViewResponder {
 public:
  // The only way to make one. The waiting text is visible at first.
  static std::shared_ptr<MirrorView> make(platform::Views& views, bool outline,
                                          const std::string& status = waitingStatus);

  void setStatus(const std::string& text);
  void hideStatus();

  [[nodiscard]] const std::shared_ptr<platform::View>& view() const { return view_; }
  [[nodiscard]] platform::DisplayLayer& displayLayer() const { return *displayLayer_; }

  void layout() override;

 private:
  MirrorView(platform::Views& views, const std::string& status);

  platform::Views& views_;
  std::shared_ptr<platform::DisplayLayer> displayLayer_;
  std::shared_ptr<platform::Label> statusLabel_;
  std::shared_ptr<platform::View> borderView_;  // only with an outline
  std::shared_ptr<platform::View> view_;
};

}  // namespace quillfade
