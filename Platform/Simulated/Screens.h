// Screens that tests arrange.
//
// Threads: main thread only.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Platform/Screens.h"
#include "Platform/Simulated/Record.h"

namespace platform::simulated {

class Screens final : public platform::Screens {
 public:
  explicit Screens(Record& record) : record_(record) {}

  [[nodiscard]] std::vector<Screen> all() const override;
  [[nodiscard]] std::optional<Screen> main() const override;
  [[nodiscard]] Point mouseLocation() const override;
  void observeChanges(std::function<void()> observer) override;

  // Replaces the screens; the first becomes the main one. Notifies nobody.
  void arrange(std::vector<Screen> screens);
  void setMain(std::optional<Screen> screen) { main_ = screen; }
  void setMouseLocation(Point location) { mouseLocation_ = location; }
  void notifyChange();

 private:
  Record& record_;
  std::vector<Screen> screens_;
  std::optional<Screen> main_;
  Point mouseLocation_;
  std::vector<std::function<void()>> observers_;
};

}  // namespace platform::simulated
