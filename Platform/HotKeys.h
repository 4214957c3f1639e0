// System-wide hot keys.
//
// Threads: main thread only; presses are delivered there, synchronously, from the event loop.
// Ownership: references are opaque and stay valid until they are given back. The user data is not owned: remove the
// handler before it goes.
// Failure: a combination that is not available gives no reference; nothing is shown or logged.
#pragma once

#include <cstdint>
#include <optional>

namespace platform {

struct HotKeyID {
  std::uint32_t signature = 0;  // a four-character code
  std::uint32_t id = 0;
  friend bool operator==(const HotKeyID&, const HotKeyID&) = default;
};

// Modifier masks, as bindings use them.
namespace hotkeymodifiers {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
}  // namespace hotkeymodifiers

class HotKeyEvent {
 public:
  virtual ~HotKeyEvent() = default;
  // Absent when the event carries no readable id.
  [[nodiscard]] virtual std::optional<HotKeyID> hotKeyID() const = 0;
};

enum class HotKeyReference : std::uint64_t {};
enum class HotKeyHandlerReference : std::uint64_t {};

// Returns a status; 0 means that the press was handled.
using HotKeyHandler = std::int32_t (*)(const HotKeyEvent* event, void* userData);

class HotKeys {
 public:
  virtual ~HotKeys() = default;
  virtual std::optional<HotKeyHandlerReference> installHandler(HotKeyHandler handler, void* userData) = 0;
  virtual void removeHandler(HotKeyHandlerReference handler) = 0;
  // `keyCode` is a virtual key code of the ANSI layout: a physical key position, not a character.
  virtual std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                        HotKeyID id) = 0;
  virtual void unregisterHotKey(HotKeyReference reference) = 0;
  // Whether presses still arrive: a desktop may lose a combination that it granted, and get it back.
  [[nodiscard]] virtual bool isHeld(HotKeyReference reference) const = 0;
};

}  // namespace platform
