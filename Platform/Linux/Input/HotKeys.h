// System-wide hot keys: passive grabs on the root window.
//
// Threads: main thread only, on the connection given at construction, whose events the owner passes to `handle`.
// Lifetime: the connection must outlive the object, whose destructor releases all keys still registered.
// Failure: a combination that another program holds gives no reference, and an entry in `failures`. Registering waits
// for the server's reply (one round trip); dispatching does not.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Input/HotKeyHandlers.h"
#include "Platform/Linux/Input/HotKeysModifiers.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::input {

struct HotKeyFailure {
  std::uint32_t keyCode = 0;    // as requested
  std::uint32_t modifiers = 0;  // as requested
  HotKeyID id;
  std::string reason;  // a sentence
};

class HotKeys final : public platform::HotKeys {
 public:
  explicit HotKeys(xcb::Connection& connection);
  ~HotKeys() override;
  HotKeys(const HotKeys&) = delete;
  HotKeys& operator=(const HotKeys&) = delete;

  std::optional<HotKeyHandlerReference> installHandler(HotKeyHandler handler, void* userData) override;
  void removeHandler(HotKeyHandlerReference handler) override;
  std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
  void unregisterHotKey(HotKeyReference reference) override;
  // False if another program took the key first when the keyboard's modifiers changed.
  [[nodiscard]] bool isHeld(HotKeyReference reference) const override;

  // Accepts any event of the connection and ignores those of others.
  void handle(const xcb_generic_event_t& event);

  // One for each combination that could not be had, in the order of the requests.
  [[nodiscard]] const std::vector<HotKeyFailure>& failures() const { return failures_; }

 private:
  struct Binding {
    std::uint32_t keyCode;
    std::uint32_t modifiers;
    HotKeyID id;
    xcb_keycode_t key;
    std::uint16_t state;  // without any lock bit
    bool isHeld;
    // The time of the last release: a held key repeats as releases and presses with the same time.
    std::optional<xcb_timestamp_t> releasedAt;
  };
  [[nodiscard]] bool grab(const Binding& binding);
  void ungrab(const Binding& binding);
  void fail(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id, std::string reason);
  void keyPressed(const xcb_key_press_event_t& event);
  void keyReleased(const xcb_key_release_event_t& event);
  void keyboardChanged();

  xcb::Connection& connection_;
  Modifiers modifiers_;
  std::uint64_t lastReference_ = 0;
  std::map<HotKeyReference, Binding> bindings_;
  HotKeyHandlers handlers_;
  std::vector<HotKeyFailure> failures_;
};

}  // namespace platform::linux::input
