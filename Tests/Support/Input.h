// A user's keyboard and mouse, through XTEST.
//
// Threads: one at a time. Every call returns after the server has taken the events in.
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

  // The key that gives this symbol (XK_d, XK_Escape ...) without modifiers or with Shift.
  [[nodiscard]] xcb_keycode_t keyCode(KeySymbol symbol);
  void keyDown(xcb_keycode_t key) { send(XCB_KEY_PRESS, key); }
  void keyUp(xcb_keycode_t key) { send(XCB_KEY_RELEASE, key); }
  // Presses these one after the other, the last one last, and lets go in the opposite order.
  void chord(const std::vector<KeySymbol>& symbols);
  void press(KeySymbol symbol) { chord({symbol}); }

  void moveTo(int x, int y);
  void buttonDown(int button = 1) { send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button)); }
  void buttonUp(int button = 1) { send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button)); }
  void click(int x, int y, int button = 1);
  // A straight line with the button held, in steps of a few pixels.
  void drag(int fromX, int fromY, int toX, int toY, int button = 1);
  [[nodiscard]] std::pair<int, int> pointer();
  // Makes the Super key this one of the modifiers (3 to 5), as a tool for keyboards may; the others keep one key each.
  void moveSuperTo(std::size_t modifier);

 private:
  void send(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

  XClient client_;
};

}  // namespace support
