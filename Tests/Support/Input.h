// A user's keyboard and mouse, through XTEST.
//
// Threads: one at a time. Every call returns once the server has taken in the events.
// Failure: a key that the keyboard does not have throws.
#pragma once

#include <X11/keysym.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Support/XClient.h"

namespace support {

using KeySymbol = std::uint32_t;

class Input {
 public:
  explicit Input(const std::string& display) : client_(display) {}

  // The key that gives this symbol (XK_d, XK_Escape ...), without modifiers or with Shift.
  [[nodiscard]] xcb_keycode_t keyCode(KeySymbol symbol);
  void keyDown(xcb_keycode_t key) { send(XCB_KEY_PRESS, key); }
  void keyUp(xcb_keycode_t key) { send(XCB_KEY_RELEASE, key); }
  // Presses the keys in order and releases them in reverse order.
  void chord(const std::vector<KeySymbol>& symbols);
  void press(KeySymbol symbol) { chord({symbol}); }

  void moveTo(int x, int y);
  void buttonDown(int button = 1) { send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button)); }
  void buttonUp(int button = 1) { send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button)); }
  void click(int x, int y, int button = 1);
  // Drags in a straight line, in steps of a few pixels.
  void drag(int fromX, int fromY, int toX, int toY, int button = 1);
  [[nodiscard]] std::pair<int, int> pointer();
  // Moves the Super key to this modifier (3 to 5), as keyboard tools may; the other modifiers keep one key each.
  void moveSuperTo(std::size_t modifier);

 private:
  void send(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

  XClient client_;
};

}  // namespace support
