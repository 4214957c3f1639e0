// The Carbon event manager's hot keys.
#import <Carbon/Carbon.h>

#include <algorithm>
#include <memory>

#import "Tests/Mac/Fakes/World.h"
#import "Tests/Mac/Runtime/Recorder.h"

struct OpaqueEventTargetRef {};
struct OpaqueEventRef {
  EventHotKeyID id;
};
struct OpaqueEventHandlerRef {
  EventHandlerUPP handler;
  void* data;
};
struct EventHotKeyRefOpaque {
  UInt32 code;
  UInt32 modifiers;
  EventHotKeyID id;
};

namespace {

constexpr OSStatus alreadyExists = -9878;
constexpr OSStatus notFound = -9868;

std::vector<std::unique_ptr<OpaqueEventHandlerRef>>& handlers() {
  static auto& installed = *new std::vector<std::unique_ptr<OpaqueEventHandlerRef>>;
  return installed;
}
std::vector<std::unique_ptr<EventHotKeyRefOpaque>>& keys() {
  static auto& registered = *new std::vector<std::unique_ptr<EventHotKeyRefOpaque>>;
  return registered;
}
OpaqueEventTargetRef application;

std::vector<OSStatus> sendToHandlers(EventRef event) {
  std::vector<OSStatus> statuses;
  for (const auto* handler : [] {
         std::vector<const OpaqueEventHandlerRef*> all;
         for (const auto& installed : handlers()) all.push_back(installed.get());
         return all;
       }()) {
    statuses.push_back(handler->handler(nullptr, event, handler->data));
  }
  return statuses;
}

}  // namespace

EventTargetRef GetApplicationEventTarget(void) {
  EXPECT_MAIN_THREAD();
  return &application;
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount count,
                             const EventTypeSpec* types, void* data, EventHandlerRef* reference) {
  EXPECT_MAIN_THREAD();
  fake::record("InstallEventHandler");
  const bool isForHotKeys = count == 1 && types[0].eventClass == kEventClassKeyboard &&
                            types[0].eventKind == kEventHotKeyPressed && target == &application;
  if (!isForHotKeys) fake::misuse("a handler of other events than hot keys");
  if (fake::world().hotKeySetup.refusesHandlers) return notFound;
  handlers().push_back(std::make_unique<OpaqueEventHandlerRef>(handler, data));
  *reference = handlers().back().get();
  return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef reference) {
  EXPECT_MAIN_THREAD();
  fake::record("RemoveEventHandler");
  if (std::erase_if(handlers(), [&](const auto& handler) { return handler.get() == reference; }) == 0) {
    fake::misuse("a handler that is not installed was removed");
  }
  return noErr;
}

OSStatus RegisterEventHotKey(UInt32 code, UInt32 modifiers, EventHotKeyID id, EventTargetRef target, OptionBits options,
                             EventHotKeyRef* reference) {
  EXPECT_MAIN_THREAD();
  fake::record("RegisterEventHotKey " + std::to_string(code) + ' ' + std::to_string(modifiers) + " as " +
               std::to_string(id.id));
  if (options != 0 || target != &application) fake::misuse("a hot key with options, or of another target");
  const auto& setup = fake::world().hotKeySetup;
  const bool isTaken = setup.taken.contains(code) || std::ranges::any_of(keys(), [&](const auto& key) {
                         return key->code == code && key->modifiers == modifiers;
                       });
  if (isTaken) return alreadyExists;
  if (setup.givesNoReference) return noErr;
  keys().push_back(std::make_unique<EventHotKeyRefOpaque>(code, modifiers, id));
  *reference = keys().back().get();
  return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef reference) {
  EXPECT_MAIN_THREAD();
  fake::record("UnregisterEventHotKey");
  if (std::erase_if(keys(), [&](const auto& key) { return key.get() == reference; }) == 0) {
    fake::misuse("a hot key that is not registered was given back");
  }
  return noErr;
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType type, EventParamType* actualType,
                           ByteCount size, ByteCount* actualSize, void* data) {
  EXPECT_MAIN_THREAD();
  const bool isForTheID = name == kEventParamDirectObject && type == typeEventHotKeyID &&
                          size == sizeof(EventHotKeyID) && actualType == nullptr && actualSize == nullptr;
  if (!isForTheID) fake::misuse("another parameter of the event than the hot key's number");
  if (fake::world().hotKeySetup.idIsUnreadable) return notFound;
  *static_cast<EventHotKeyID*>(data) = event->id;
  return noErr;
}

namespace fake {

bool World::pressHotKey(std::uint32_t code, std::uint32_t modifiers) {
  const auto found =
      std::ranges::find_if(keys(), [&](const auto& key) { return key->code == code && key->modifiers == modifiers; });
  if (found == keys().end()) return false;
  OpaqueEventRef press{(*found)->id};
  event([&] { hotKeyStatuses = sendToHandlers(&press); });
  return true;
}

void World::deliverEmptyHotKeyEvent() {
  event([&] { hotKeyStatuses = sendToHandlers(nullptr); });
}

std::vector<HotKeyLook> World::hotKeys() const {
  std::vector<HotKeyLook> looks;
  for (const auto& key : keys()) looks.push_back({key->code, key->modifiers, key->id.signature, key->id.id});
  return looks;
}

int World::hotKeyHandlers() const { return static_cast<int>(handlers().size()); }

}  // namespace fake
