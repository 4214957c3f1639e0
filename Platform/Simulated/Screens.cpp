#include "Platform/Simulated/Screens.h"

#include <utility>

namespace platform::simulated {

std::vector<Screen> Screens::all() const {
  record_.expectMainThread("Screens::all");
  return screens_;
}

std::optional<Screen> Screens::main() const {
  record_.expectMainThread("Screens::main");
  return main_;
}

Point Screens::mouseLocation() const {
  record_.expectMainThread("Screens::mouseLocation");
  return mouseLocation_;
}

void Screens::observeChanges(std::function<void()> observer) {
  record_.call("screens: observe changes");
  if (!observer) misuse("Screens::observeChanges was given no observer");
  observers_.push_back(std::move(observer));
}

void Screens::arrange(std::vector<Screen> screens) {
  screens_ = std::move(screens);
  main_ = screens_.empty() ? std::nullopt : std::optional(screens_.front());
}

void Screens::notifyChange() {
  record_.call("screens: changed");
  for (const auto& observer : observers_) observer();
}

}  // namespace platform::simulated
