// A small registry of system-wide hot keys: it numbers bindings and runs the action of the one that is pressed.
//
// Threads: main thread only; actions run there, synchronously, inside the press.
// Lifetime: always held by a shared pointer; teardown gives the keys back and then removes the handler.
// Failure: a combination that is not available uses up its number, keeps its action and stays silent.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/HotKeys.h"

namespace quillfade {

class HotKeyManager final : public std::enable_shared_from_this<HotKeyManager> {
 public:
  // The characters Q, L, F, D as one big-endian value.
  static constexpr std::uint32_t signature = 0x514C4644;

  explicit HotKeyManager(platform::HotKeys& hotKeys);
  HotKeyManager(const HotKeyManager&) = delete;
  HotKeyManager& operator=(const HotKeyManager&) = delete;
  ~HotKeyManager();

  // Absent when the combination is not available. Some desktops show the purpose to their users.
  std::optional<platform::HotKeyReference> bind(std::uint32_t keyCode, std::uint32_t modifiers,
                                                std::function<void()> action,
                                                const platform::HotKeyPurpose& purpose = {});

  [[nodiscard]] const std::vector<platform::HotKeyReference>& refs() const { return refs_; }

  // Receives every press; `userData` is the manager. Always returns 0: the press goes to nobody else.
  static std::int32_t handle(const platform::HotKeyEvent* event, void* userData);

 private:
  platform::HotKeys& hotKeys_;
  std::vector<platform::HotKeyReference> refs_;
  std::optional<platform::HotKeyHandlerReference> handler_;
  std::map<std::uint32_t, std::function<void()>> actions_;
};

}  // namespace quillfade
