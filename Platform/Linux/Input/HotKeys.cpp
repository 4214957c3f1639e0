#include "Platform/Linux/Input/HotKeys.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include "Platform/Linux/Input/HotKeysCodes.h"

namespace platform::linux::input {

namespace {

constexpr unsigned everyModifier = 0xFF;

}  // namespace

HotKeys::HotKeys(xcb::Connection& connection) : connection_(connection), modifiers_(readModifiers(connection.get())) {}

HotKeys::~HotKeys() {
  for (const Binding& binding : bindings_ | std::views::values) ungrab(binding);
  connection_.flush();
}

std::optional<HotKeyHandlerReference> HotKeys::installHandler(HotKeyHandler handler, void* userData) {
  return handlers_.install(handler, userData);
}

void HotKeys::removeHandler(HotKeyHandlerReference handler) { handlers_.remove(handler); }

std::optional<HotKeyReference> HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) {
  const auto key = keyCodeForVirtualKey(keyCode);
  if (!key) {
    fail(keyCode, modifiers, id, "This keyboard has no such key.");
    return std::nullopt;
  }
  const Binding binding{keyCode, modifiers, id, *key, stateFor(modifiers, modifiers_), true, std::nullopt};
  // The server lets one client grab a combination twice; releasing one of the two grabs would then release both.
  const bool isTaken = std::ranges::any_of(bindings_ | std::views::values, [&](const Binding& other) {
    return other.key == binding.key && other.state == binding.state;
  });
  if (isTaken) {
    fail(keyCode, modifiers, id, "Quillfade already uses this key combination.");
    return std::nullopt;
  }
  if (!grab(binding)) {
    fail(keyCode, modifiers, id, "Another program holds this key combination.");
    return std::nullopt;
  }
  const HotKeyReference reference{++lastReference_};
  bindings_.emplace(reference, binding);
  return reference;
}

void HotKeys::unregisterHotKey(HotKeyReference reference) {
  const auto found = bindings_.find(reference);
  if (found == bindings_.end()) return;
  ungrab(found->second);
  bindings_.erase(found);
  connection_.flush();
}

bool HotKeys::isHeld(HotKeyReference reference) const {
  const auto found = bindings_.find(reference);
  return found != bindings_.end() && found->second.isHeld;
}

void HotKeys::handle(const xcb_generic_event_t& event) {
  switch (xcb::eventType(event)) {
    case XCB_KEY_PRESS:
      keyPressed(xcb::eventAs<xcb_key_press_event_t>(event));
      break;
    case XCB_KEY_RELEASE:
      keyReleased(xcb::eventAs<xcb_key_release_event_t>(event));
      break;
    case XCB_MAPPING_NOTIFY:
      if (xcb::eventAs<xcb_mapping_notify_event_t>(event).request != XCB_MAPPING_POINTER) keyboardChanged();
      break;
    default:
      break;
  }
}

// All variants or none: a hot key that works only while a lock is off is worse than one that is known not to work.
bool HotKeys::grab(const Binding& binding) {
  std::vector<std::pair<std::uint16_t, xcb_void_cookie_t>> requests;
  for (const std::uint16_t state : withEveryLock(binding.state, modifiers_)) {
    requests.emplace_back(state, xcb_grab_key_checked(connection_.get(), 0, connection_.root(), state, binding.key,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool hasAll = true;
  for (const auto& [state, cookie] : requests) {
    // BadAccess is expected: another client holds this variant.
    const xcb::Reply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    hasAll = hasAll && !error;
  }
  if (!hasAll) ungrab(binding);
  return hasAll && !connection_.isBroken();
}

// Releasing a key that is not held is no error, and never touches another client's grab.
void HotKeys::ungrab(const Binding& binding) {
  for (const std::uint16_t state : withEveryLock(binding.state, modifiers_)) {
    xcb_ungrab_key(connection_.get(), binding.key, connection_.root(), state);
  }
  connection_.flush();
}

void HotKeys::fail(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id, std::string reason) {
  failures_.push_back({keyCode, modifiers, id, std::move(reason)});
}

void HotKeys::keyPressed(const xcb_key_press_event_t& event) {
  const auto state = static_cast<std::uint16_t>(event.state & everyModifier & ~unsigned{modifiers_.locks()});
  for (Binding& binding : bindings_ | std::views::values) {
    if (binding.key != event.detail || binding.state != state) continue;
    const bool isRepeat = binding.releasedAt == event.time;
    binding.releasedAt.reset();
    // A handler may unregister the binding.
    if (!isRepeat) handlers_.dispatch(HotKeyID{binding.id});
    return;
  }
}

// The modifiers may be released first, so the key alone counts.
void HotKeys::keyReleased(const xcb_key_release_event_t& event) {
  for (Binding& binding : bindings_ | std::views::values) {
    if (binding.key == event.detail) binding.releasedAt = event.time;
  }
}

// Tools that type text announce a new mapping for every symbol that they add; grabs move only when a modifier did.
void HotKeys::keyboardChanged() {
  const Modifiers modifiers = readModifiers(connection_.get());
  if (modifiers == modifiers_) return;
  for (const Binding& binding : bindings_ | std::views::values) ungrab(binding);
  modifiers_ = modifiers;
  for (Binding& binding : bindings_ | std::views::values) {
    binding.state = stateFor(binding.modifiers, modifiers_);
    binding.isHeld = grab(binding);
    if (!binding.isHeld) {
      fail(binding.keyCode, binding.modifiers, binding.id,
           "Another program took this key combination when the keyboard's modifiers changed.");
    }
  }
}

}  // namespace platform::linux::input
