#include "Platform/Simulated/HotKeys.h"

#include <algorithm>
#include <string>
#include <utility>

namespace platform::simulated {

namespace {

class Event final : public HotKeyEvent {
 public:
  explicit Event(std::optional<HotKeyID> id) : id_(id) {}
  [[nodiscard]] std::optional<HotKeyID> hotKeyID() const override { return id_; }

 private:
  std::optional<HotKeyID> id_;
};

}  // namespace

std::optional<HotKeyHandlerReference> HotKeys::installHandler(HotKeyHandler handler, void* userData) {
  record_.call("hot keys: install handler");
  if (handler == nullptr) misuse("HotKeys::installHandler was given no handler");
  if (handler_ != nullptr) misuse("HotKeys::installHandler was called while a handler is installed");
  if (refusesHandlers) return std::nullopt;
  handler_ = handler;
  userData_ = userData;
  handlerReference_ = HotKeyHandlerReference{++referencesMade_};
  return handlerReference_;
}

void HotKeys::removeHandler(HotKeyHandlerReference handler) {
  record_.call("hot keys: remove handler");
  if (handler_ == nullptr || handler != handlerReference_) misuse("HotKeys::removeHandler was given one not installed");
  handler_ = nullptr;
  userData_ = nullptr;
}

std::optional<HotKeyReference> HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) {
  record_.call("hot keys: register " + std::to_string(id.id));
  if (duringRegistration) duringRegistration(id);
  HotKeyRegistration registration{{}, keyCode, modifiers, id};
  const bool isTaken = takenKeyCodes.contains(keyCode) || std::ranges::any_of(registered_, [&](const auto& each) {
                         return each.keyCode == keyCode && each.modifiers == modifiers;
                       });
  if (!isTaken) {
    registration.reference = HotKeyReference{++referencesMade_};
    registered_.push_back(registration);
  }
  attempts_.push_back(registration);
  return isTaken ? std::nullopt : std::optional(registration.reference);
}

void HotKeys::unregisterHotKey(HotKeyReference reference) {
  const auto place = std::ranges::find(registered_, reference, &HotKeyRegistration::reference);
  if (place == registered_.end()) misuse("HotKeys::unregisterHotKey was given a reference that is not held");
  record_.call("hot keys: unregister " + std::to_string(place->id.id));
  registered_.erase(place);
}

bool HotKeys::isHeld(HotKeyReference reference) const {
  const auto place = std::ranges::find(registered_, reference, &HotKeyRegistration::reference);
  if (place == registered_.end()) misuse("HotKeys::isHeld was given a reference that is not held");
  return !takenKeyCodes.contains(place->keyCode);
}

std::optional<std::int32_t> HotKeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
  const auto place = std::ranges::find_if(
      registered_, [&](const auto& each) { return each.keyCode == keyCode && each.modifiers == modifiers; });
  return place == registered_.end() ? std::nullopt : send(place->id);
}

std::optional<std::int32_t> HotKeys::send(std::optional<HotKeyID> id) {
  record_.expectMainThread("HotKeys::send");
  if (handler_ == nullptr) return std::nullopt;
  const Event event(id);
  return handler_(&event, userData_);
}

}  // namespace platform::simulated
