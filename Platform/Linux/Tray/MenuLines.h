// The lines of a Qt menu, which are kept as long as their kinds stay the same.
//
// A tray's host shows the menu in its own process, and learns the current lines when it has begun to open it. Some
// hosts lose the menu when lines go at that moment, even if others take their place.
//
// Threads: main thread only. Ownership: owns the lines and the menus that they open.
#pragma once

#include <QMenu>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/StatusBar.h"

namespace platform::linux::tray {

class MenuLines {
 public:
  // Called with the chosen line.
  using Choose = std::function<void(const std::shared_ptr<const MenuItem>&)>;

  // The menu must outlive this object.
  MenuLines(QMenu& menu, Choose choose);
  ~MenuLines();
  MenuLines(const MenuLines&) = delete;
  MenuLines& operator=(const MenuLines&) = delete;

  void show(const std::vector<MenuItem>& items);

 private:
  struct Line;

  [[nodiscard]] std::unique_ptr<Line> makeLine(const MenuItem& item);
  static void update(Line& line, const MenuItem& item);

  QMenu& menu_;
  Choose choose_;
  std::vector<std::unique_ptr<Line>> lines_;
};

}  // namespace platform::linux::tray
