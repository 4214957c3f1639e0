// Which windows a live mirror leaves out of its picture, and a key that tells when that set has changed.
//
// Threads: pure functions, safe on any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Screens.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

// The bundle identifiers of known conferencing programs, to be compared exactly.
[[nodiscard]] const std::set<std::string, std::less<>>& conferencing();

// The identifier of the window's owner; absent when it has none.
[[nodiscard]] std::optional<std::string> ownerIdentifier(const platform::CaptureWindow& window);

// What the rules say about one window.
enum class Judgement {
  keptOffScreen,
  excludedOwn,
  excludedByUser,
  keptByUser,
  keptScreenWithoutArea,
  keptWindowWithoutArea,
  excludedHighLayer,
  keptOrdinary,
  excludedConferencing,
  keptConferencing,
  keptTakesPointer,
  keptPerhapsLocker,
  keptLocker,
};

// `ownIdentifier` is the application's own identifier; only the screen's area matters. The user's rules come before the
// built-in ones, except for the application's own windows. None of them leaves out a lock screen; a window that could
// be one needs a rule that names it in full.
[[nodiscard]] Judgement judge(const platform::CaptureWindow& window, const platform::Screen& screen,
                              const std::optional<std::string>& ownIdentifier,
                              const std::vector<WindowRule>& userRules = {});
[[nodiscard]] bool isExcluded(Judgement judgement);
// A few words for a person.
[[nodiscard]] std::string_view reason(Judgement judgement);

// The windows of `content` to leave out, in its order. An overlay is recognised by being large and above the normal
// layer; the application's own windows are always left out. `ownIdentifier` is the application's own identifier; only
// the screen's area matters.
[[nodiscard]] std::vector<platform::CaptureWindow> excludedWindows(const platform::ShareableContent& content,
                                                                   const platform::Screen& screen,
                                                                   const std::optional<std::string>& ownIdentifier,
                                                                   const std::vector<WindowRule>& userRules = {});

// The numbers of all other windows of `content`.
[[nodiscard]] std::vector<std::uint32_t> admittedWindows(const platform::ShareableContent& content,
                                                         std::span<const platform::CaptureWindow> excluded);

// Holds back every window that might be left out until it has been judged, except the admitted ones. With a rule of the
// user's that leaves windows out, that is windows of any size.
[[nodiscard]] platform::HeldBackWindows holdingBack(const platform::Screen& screen,
                                                    const std::vector<std::uint32_t>& admitted,
                                                    const std::vector<WindowRule>& userRules = {});

// The window numbers in ascending order, joined by ",". Equal sets have equal keys, whatever their order.
[[nodiscard]] std::string key(std::span<const platform::CaptureWindow> windows);

}  // namespace quillfade
