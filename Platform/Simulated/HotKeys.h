// Hot keys that tests press.
//
// Threads: main thread only.
// Contract: ends the process when a reference is given back that is not held.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "Platform/HotKeys.h"
#include "Platform/Simulated/Record.h"

namespace platform::simulated {

struct HotKeyRegistration {
  HotKeyReference reference{};
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;
  HotKeyID id;
};

class HotKeys final : public platform::HotKeys {
 public:
  explicit HotKeys(Record& record) : record_(record) {}

  std::optional<HotKeyHandlerReference> installHandler(HotKeyHandler handler, void* userData) override;
  void removeHandler(HotKeyHandlerReference handler) override;
  std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
  void unregisterHotKey(HotKeyReference reference) override;
  [[nodiscard]] bool isHeld(HotKeyReference reference) const override;

  bool refusesHandlers = false;
  std::set<std::uint32_t> takenKeyCodes;  // held by another application, whether before a registration or later
  // Runs inside every registration, where a real desktop may already deliver a press.
  std::function<void(HotKeyID)> duringRegistration;

  // Every attempt. A failed one has no reference (0).
  [[nodiscard]] const std::vector<HotKeyRegistration>& attempts() const { return attempts_; }
  [[nodiscard]] const std::vector<HotKeyRegistration>& registered() const { return registered_; }
  [[nodiscard]] bool hasHandler() const { return handler_ != nullptr; }
  [[nodiscard]] void* userData() const { return userData_; }

  // Absent when nobody registered the combination or nobody listens; otherwise the handler's status.
  std::optional<std::int32_t> press(std::uint32_t keyCode, std::uint32_t modifiers);
  // A press with this id, or with none that can be read.
  std::optional<std::int32_t> send(std::optional<HotKeyID> id);

 private:
  Record& record_;
  std::vector<HotKeyRegistration> attempts_;
  std::vector<HotKeyRegistration> registered_;
  std::uint64_t referencesMade_ = 0;
  HotKeyHandler handler_ = nullptr;
  void* userData_ = nullptr;
  HotKeyHandlerReference handlerReference_{};
};

}  // namespace platform::simulated
