#include "Tests/Demo/Slide.h"

#include <array>
#include <cstdint>

namespace demo {

namespace {

using support::PixelRect;

constexpr std::uint32_t paper = 0xf4f1ea;
constexpr std::uint32_t rule = 0xd8d2c4;
constexpr std::uint32_t heading = 0x2b3a42;
constexpr std::uint32_t line = 0xb9c2c6;
constexpr std::array<std::uint32_t, 4> barColors{0x2a7f9e, 0x3fa796, 0xe0a526, 0x6c8ebf};

// Which segments each digit lights: top, the two upper sides, middle, the two lower sides, bottom.
constexpr std::array<std::uint8_t, 10> digits{0b1110111, 0b0010010, 0b1011101, 0b1011011, 0b0111010,
                                              0b1101011, 0b1101111, 0b1010010, 0b1111111, 0b1111011};
constexpr std::array<PixelRect, 7> segments{
    {{8, 0, 44, 8}, {0, 8, 8, 40}, {52, 8, 8, 40}, {8, 48, 44, 8}, {0, 56, 8, 40}, {52, 56, 8, 40}, {8, 96, 44, 8}}};

}  // namespace

Slide::Slide(const std::string& display) : client_(display) {
  const PixelRect screen = client_.screenFrame();
  window_ = client_.createWindow({.frame = screen, .color = paper, .overrideRedirect = false, .mapped = false});
  client_.setClass(window_, "slides", "Slides");
  client_.setText(window_, "_NET_WM_NAME", "UTF8_STRING", "Quarterly review");
  client_.setAtoms(window_, "_NET_WM_STATE", {"_NET_WM_STATE_FULLSCREEN"});
  canvas_ = xcb_generate_id(client_.connection());
  xcb_create_pixmap(client_.connection(), 24, canvas_, window_, static_cast<std::uint16_t>(screen.width),
                    static_cast<std::uint16_t>(screen.height));
  paint();
  client_.map(window_);
  client_.sync();
}

void Slide::advance() {
  ++step_;
  paint();
}

void Slide::paint() {
  const PixelRect screen = client_.screenFrame();
  client_.fill(canvas_, screen, paper);
  client_.fill(canvas_, {60, 60, 560, 34}, heading);
  for (int row = 0; row < 4; ++row) client_.fill(canvas_, {60, 120 + row * 26, 380 - row * 40, 10}, line);
  client_.fill(canvas_, {60, 640, screen.width - 120, 3}, rule);
  for (int bar = 0; bar < 12; ++bar) {
    const int height = 60 + (bar * 53 + step_ * 37) % 260;
    client_.fill(canvas_, {260 + bar * 62, 640 - height, 40, height}, barColors[static_cast<std::size_t>(bar) % 4]);
  }
  paintDigit(step_ / 10 % 10, 300, 240);
  paintDigit(step_ % 10, 380, 240);
  // A background is copied when it is set; setting it again shows what has been painted since.
  xcb_change_window_attributes(client_.connection(), window_, XCB_CW_BACK_PIXMAP, &canvas_);
  xcb_clear_area(client_.connection(), 0, window_, 0, 0, 0, 0);
  client_.sync();
}

void Slide::paintDigit(int digit, int x, int y) {
  const unsigned lit = digits.at(static_cast<std::size_t>(digit));
  for (std::size_t segment = 0; segment < segments.size(); ++segment) {
    if ((lit >> (6 - segment) & 1U) == 0) continue;
    const PixelRect& part = segments.at(segment);
    client_.fill(canvas_, {x + part.x, y + part.y, part.width, part.height}, heading);
  }
}

}  // namespace demo
