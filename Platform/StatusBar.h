// The status item in the menu bar (tray) and its menu.
//
// Threads: main thread only; actions and delegate calls come there.
// Ownership: the caller owns the status item; dropping it removes it from the bar. The item shares its menu. A menu
// holds its delegate weakly.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// A small picture for the bar.
class Image {
 public:
  virtual ~Image() = default;
  // A template image is tinted by the bar to suit a light or dark background.
  virtual void setTemplate(bool isTemplate) = 0;
};

class StatusButton {
 public:
  virtual ~StatusButton() = default;
  // Null: no image.
  virtual void setImage(std::shared_ptr<Image> image) = 0;
  [[nodiscard]] virtual std::shared_ptr<Image> image() const = 0;
  virtual void setToolTip(const std::string& text) = 0;
};

enum class ControlState : int { off = 0, on = 1 };

// Modifier flags for key equivalents.
namespace modifierflags {
inline constexpr std::uint32_t control = 0x40000;
inline constexpr std::uint32_t option = 0x80000;
inline constexpr std::uint32_t command = 0x100000;
}  // namespace modifierflags

struct MenuItem {
  using Action = std::function<void(const MenuItem&)>;

  bool isSeparator = false;
  std::string title;
  Action action;                                           // empty: shown disabled
  std::string keyEquivalent;                               // one lower-case letter, or none
  std::optional<std::uint32_t> keyEquivalentModifierMask;  // absent: the desktop's default
  std::optional<bool> isEnabled;                           // a wish: an item with an action is enabled anyway
  std::optional<ControlState> state;                       // absent: it never has a check mark
  std::int64_t tag = 0;
  std::vector<MenuItem> submenu;
};

class Menu;

class MenuDelegate {
 public:
  virtual ~MenuDelegate() = default;
  // A desktop that shows menus in another process needs the lines before anybody opens the menu, since a host may
  // refuse an empty one. Nothing opens; later changes show from the first opening on.
  virtual void menuWillBeListed(Menu& menu) = 0;
  virtual void menuWillOpen(Menu& menu) = 0;
  // Follows every `menuWillOpen` exactly once.
  virtual void menuDidClose(Menu& menu) = 0;
};

class Menu {
 public:
  virtual ~Menu() = default;
  virtual void setDelegate(std::weak_ptr<MenuDelegate> delegate) = 0;
  virtual void removeAllItems() = 0;
  virtual void addItem(MenuItem item) = 0;
};

class StatusItem {
 public:
  virtual ~StatusItem() = default;
  // Null when the desktop shows the item without a button.
  [[nodiscard]] virtual StatusButton* button() = 0;
  virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
  [[nodiscard]] virtual std::shared_ptr<Menu> menu() const = 0;
};

class StatusBar {
 public:
  // As wide as the bar is high.
  static constexpr double squareLength = -2;

  virtual ~StatusBar() = default;
  virtual std::shared_ptr<StatusItem> makeStatusItem(double length) = 0;
  virtual std::shared_ptr<Menu> makeMenu() = 0;
  // Null when the desktop has no such symbol.
  virtual std::shared_ptr<Image> systemSymbol(const std::string& name, const std::string& accessibilityDescription) = 0;
};

}  // namespace platform
