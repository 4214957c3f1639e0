#include "Tests/Support/Input.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ranges>
#include <stdexcept>

#include "Tests/Support/Reply.h"

namespace support {

xcb_keycode_t Input::keyCode(KeySymbol symbol) {
  const xcb_setup_t* setup = xcb_get_setup(client_.connection());
  const int first = setup->min_keycode;
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
  const auto reply =
      waitForReply(client_.connection(), xcb_get_keyboard_mapping_reply,
                   xcb_get_keyboard_mapping(client_.connection(), static_cast<xcb_keycode_t>(first), count));
  if (!reply) throw std::runtime_error("The X server gave no keyboard mapping.");
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  const int columns = reply->keysyms_per_keycode;
  for (int key = 0; key < count; ++key) {
    for (int column = 0; column < std::min(columns, 2); ++column) {
      if (symbols[key * columns + column] == symbol) return static_cast<xcb_keycode_t>(first + key);
    }
  }
  throw std::runtime_error("The keyboard has no such key.");
}

void Input::chord(const std::vector<KeySymbol>& symbols) {
  std::vector<xcb_keycode_t> keys;
  for (const KeySymbol symbol : symbols) keys.push_back(keyCode(symbol));
  for (const xcb_keycode_t key : keys) keyDown(key);
  for (const xcb_keycode_t key : keys | std::views::reverse) keyUp(key);
}

void Input::moveTo(int x, int y) { send(XCB_MOTION_NOTIFY, 0, x, y); }

void Input::click(int x, int y, int button) {
  moveTo(x, y);
  buttonDown(button);
  buttonUp(button);
}

void Input::drag(int fromX, int fromY, int toX, int toY, int button) {
  constexpr int stride = 8;
  const int steps = std::max({std::abs(toX - fromX), std::abs(toY - fromY), stride}) / stride;
  moveTo(fromX, fromY);
  buttonDown(button);
  for (int step = 1; step <= steps; ++step) {
    moveTo(fromX + (toX - fromX) * step / steps, fromY + (toY - fromY) * step / steps);
  }
  buttonUp(button);
}

std::pair<int, int> Input::pointer() {
  const auto reply = waitForReply(client_.connection(), xcb_query_pointer_reply,
                                  xcb_query_pointer(client_.connection(), client_.root()));
  if (!reply) throw std::runtime_error("The X server gave no position of the pointer.");
  return {reply->root_x, reply->root_y};
}

void Input::moveSuperTo(std::size_t modifier) {
  std::array<xcb_keycode_t, 8> keys{keyCode(XK_Shift_L), keyCode(XK_Caps_Lock), keyCode(XK_Control_L),
                                    keyCode(XK_Alt_L), keyCode(XK_Num_Lock)};
  keys.at(modifier + 2) = keyCode(XK_Super_L);
  const auto reply = waitForReply(client_.connection(), xcb_set_modifier_mapping_reply,
                                  xcb_set_modifier_mapping(client_.connection(), 1, keys.data()));
  if (!reply || reply->status != XCB_MAPPING_STATUS_SUCCESS)
    throw std::runtime_error("The modifiers stay as they are.");
}

void Input::send(std::uint8_t type, std::uint8_t detail, int x, int y) {
  xcb_test_fake_input(client_.connection(), type, detail, XCB_CURRENT_TIME, client_.root(),
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
  client_.sync();
}

}  // namespace support
