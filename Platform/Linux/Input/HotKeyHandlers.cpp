#include "Platform/Linux/Input/HotKeyHandlers.h"

#include <ranges>
#include <vector>

namespace platform::linux::input {

namespace {

class Press final : public HotKeyEvent {
 public:
  explicit Press(HotKeyID id) : id_(id) {}
  [[nodiscard]] std::optional<HotKeyID> hotKeyID() const override { return id_; }

 private:
  HotKeyID id_;
};

}  // namespace

std::optional<HotKeyHandlerReference> HotKeyHandlers::install(HotKeyHandler handler, void* userData) {
  if (handler == nullptr) return std::nullopt;
  const HotKeyHandlerReference reference{++lastReference_};
  handlers_.emplace(reference, Handler{handler, userData});
  return reference;
}

// A handler may remove any of them, so nothing of the map is held across a call.
void HotKeyHandlers::dispatch(HotKeyID id) const {
  const Press press(id);
  std::vector<HotKeyHandlerReference> references;
  for (const auto& [reference, handler] : handlers_) references.push_back(reference);
  for (const HotKeyHandlerReference reference : references | std::views::reverse) {
    const auto found = handlers_.find(reference);
    if (found == handlers_.end()) continue;
    const Handler handler = found->second;
    if (handler.function(&press, handler.userData) == 0) return;
  }
}

}  // namespace platform::linux::input
