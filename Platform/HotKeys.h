// System-wide hot keys.
//
// Threads: main thread only; presses are delivered there, synchronously, from the event loop.
// Ownership: references are opaque and stay valid until they are given back. The user data is not owned: remove the
// handler before it goes.
// Failure: a combination that is not available gives no reference; nothing is shown or logged. A desktop that asks its
// user, or that answers later, gives a reference at once: it stands for the request, and `standing` says what came of
// it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

// What a key is for, where the desktop shows its users the keys of programs.
struct HotKeyPurpose {
  std::string name;   // lasting; lower-case letters and hyphens
  std::string title;  // for people
};

// What has become of a registration.
struct HotKeyStanding {
  enum class Kind : std::uint8_t {
    held,         // presses arrive
    taken,        // by another program
    awaited,      // the desktop has not answered yet; it may be asking its user
    declined,     // by the user or by the desktop
    unassigned,   // the desktop knows the request, and has given it no keys
    unavailable,  // the desktop gives programs no hot keys
  };
  Kind kind = Kind::awaited;
  // In the desktop's words: the keys of one that is held, if they may differ from those asked for; else a reason, if
  // there is one.
  std::string detail{};
  friend bool operator==(const HotKeyStanding&, const HotKeyStanding&) = default;
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
  // Comes before the registration with the same id. Most desktops have no use for it.
  virtual void describe(HotKeyID /*id*/, const HotKeyPurpose& /*purpose*/) {}
  // `keyCode` is a virtual key code of the ANSI layout: a physical key position, not a character.
  virtual std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                        HotKeyID id) = 0;
  virtual void unregisterHotKey(HotKeyReference reference) = 0;
  // Whether presses still arrive: a desktop may lose a combination that it granted, and get it back.
  [[nodiscard]] virtual bool isHeld(HotKeyReference reference) const = 0;
  // The same with reasons, for desktops that have more than two.
  [[nodiscard]] virtual HotKeyStanding standing(HotKeyReference reference) const {
    return {isHeld(reference) ? HotKeyStanding::Kind::held : HotKeyStanding::Kind::taken};
  }
};

}  // namespace platform
