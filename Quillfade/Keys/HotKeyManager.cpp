#include "Quillfade/Keys/HotKeyManager.h"

#include <limits>
#include <utility>

#include "Quillfade/Basics/Fatal.h"

namespace quillfade {

HotKeyManager::HotKeyManager(platform::HotKeys& hotKeys)
    : hotKeys_(hotKeys), handler_(hotKeys.installHandler(&HotKeyManager::handle, this)) {}

HotKeyManager::~HotKeyManager() {
  for (const auto reference : refs_) hotKeys_.unregisterHotKey(reference);
  if (handler_) hotKeys_.removeHandler(*handler_);
}

std::optional<platform::HotKeyReference> HotKeyManager::bind(std::uint32_t keyCode, std::uint32_t modifiers,
                                                             std::function<void()> action,
                                                             const platform::HotKeyPurpose& purpose) {
  if (actions_.size() >= std::numeric_limits<std::uint32_t>::max()) fatalError("there are no more hot key numbers");
  const auto id = static_cast<std::uint32_t>(actions_.size() + 1);
  // Numbered before the registration, and for good: a binding that fails must not shift the numbers of those after it.
  actions_.emplace(id, std::move(action));
  if (!purpose.name.empty()) hotKeys_.describe({signature, id}, purpose);
  const auto reference = hotKeys_.registerHotKey(keyCode, modifiers, {signature, id});
  if (reference) refs_.push_back(*reference);
  return reference;
}

std::int32_t HotKeyManager::handle(const platform::HotKeyEvent* event, void* userData) {
  if (event == nullptr || userData == nullptr) return 0;
  // Held for the call: the action may drop the last other reference.
  const auto manager = static_cast<HotKeyManager*>(userData)->shared_from_this();
  const auto hotKeyID = event->hotKeyID();
  if (!hotKeyID) return 0;
  // The number alone selects the action, whatever the signature.
  if (const auto found = manager->actions_.find(hotKeyID->id); found != manager->actions_.end()) found->second();
  return 0;
}

}  // namespace quillfade
