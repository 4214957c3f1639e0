#include "Platform/Mac/Input/HotKeys.h"

#import <Carbon/Carbon.h>

#include <bit>
#include <utility>

namespace platform::mac::input {
namespace {

static_assert(hotkeymodifiers::command == cmdKey);
static_assert(hotkeymodifiers::option == optionKey);
static_assert(hotkeymodifiers::control == controlKey);

class PressEvent final : public HotKeyEvent {
 public:
  explicit PressEvent(EventRef event) : event_(event) {}

  [[nodiscard]] std::optional<platform::HotKeyID> hotKeyID() const override {
    EventHotKeyID read{.signature = 0, .id = 0};
    const OSStatus status =
        GetEventParameter(event_, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof(read), nullptr, &read);
    if (status != noErr) return std::nullopt;
    return platform::HotKeyID{read.signature, read.id};
  }

 private:
  EventRef event_;
};

}  // namespace

struct HotKeys::Installation {
  HotKeyHandler handler = nullptr;
  void* userData = nullptr;
  EventHandlerRef reference = nullptr;

  static OSStatus handle(EventHandlerCallRef /*caller*/, EventRef event, void* context) {
    const auto* installation = static_cast<const Installation*>(context);
    const PressEvent press{event};
    return installation->handler(event != nullptr ? &press : nullptr, installation->userData);
  }
};

HotKeys::HotKeys() = default;

HotKeys::~HotKeys() {
  for (const auto& installation : installations_) RemoveEventHandler(installation->reference);
}

std::optional<HotKeyHandlerReference> HotKeys::installHandler(HotKeyHandler handler, void* userData) {
  auto installation = std::make_unique<Installation>();
  installation->handler = handler;
  installation->userData = userData;
  const EventTypeSpec type{.eventClass = kEventClassKeyboard, .eventKind = kEventHotKeyPressed};
  InstallEventHandler(GetApplicationEventTarget(), &Installation::handle, 1, &type, installation.get(),
                      &installation->reference);
  if (installation->reference == nullptr) return std::nullopt;
  installations_.push_back(std::move(installation));
  return std::bit_cast<HotKeyHandlerReference>(installations_.back()->reference);
}

void HotKeys::removeHandler(HotKeyHandlerReference handler) {
  const auto reference = std::bit_cast<EventHandlerRef>(handler);
  RemoveEventHandler(reference);
  std::erase_if(installations_, [&](const auto& installation) { return installation->reference == reference; });
}

std::optional<HotKeyReference> HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                       platform::HotKeyID id) {
  EventHotKeyRef reference = nullptr;
  const EventHotKeyID hotKeyID{.signature = id.signature, .id = id.id};
  const OSStatus status = RegisterEventHotKey(keyCode, modifiers, hotKeyID, GetApplicationEventTarget(), 0, &reference);
  if (status != noErr || reference == nullptr) return std::nullopt;
  return std::bit_cast<HotKeyReference>(reference);
}

void HotKeys::unregisterHotKey(HotKeyReference reference) {
  UnregisterEventHotKey(std::bit_cast<EventHotKeyRef>(reference));
}

}  // namespace platform::mac::input
