// System-wide hot keys through the Carbon event manager.
//
// Threads: main thread only.
// Ownership: an installed handler's context lives here until the handler is removed.
#pragma once

#include <memory>
#include <vector>

#include "Platform/HotKeys.h"

namespace platform::mac::input {

class HotKeys final : public platform::HotKeys {
 public:
  HotKeys();
  ~HotKeys() override;
  std::optional<HotKeyHandlerReference> installHandler(HotKeyHandler handler, void* userData) override;
  void removeHandler(HotKeyHandlerReference handler) override;
  std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
  void unregisterHotKey(HotKeyReference reference) override;
  // A registered key is held until it is given back.
  [[nodiscard]] bool isHeld(HotKeyReference /*reference*/) const override { return true; }

 private:
  struct Installation;

  std::vector<std::unique_ptr<Installation>> installations_;
};

}  // namespace platform::mac::input
