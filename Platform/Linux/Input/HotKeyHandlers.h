// The handlers of hot-key presses: the newest is asked first.
//
// Threads: main thread only. A handler may install and remove handlers.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "Platform/HotKeys.h"

namespace platform::linux::input {

class HotKeyHandlers {
 public:
  // Absent for no handler.
  std::optional<HotKeyHandlerReference> install(HotKeyHandler handler, void* userData);
  void remove(HotKeyHandlerReference handler) { handlers_.erase(handler); }
  // Until one has handled the press.
  void dispatch(HotKeyID id) const;

 private:
  struct Handler {
    HotKeyHandler function;
    void* userData;
  };

  std::uint64_t lastReference_ = 0;
  std::map<HotKeyHandlerReference, Handler> handlers_;
};

}  // namespace platform::linux::input
