#include "Tests/Support/GromitMpx.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <string_view>

namespace support {

namespace {

// What the program prints with --debug. Nothing it does on the screen is as reliable a sign.
constexpr std::string_view listening = "enabled devices";
constexpr std::string_view paintingOn = "Grabbed Device";
constexpr std::string_view paintingOff = "Ungrabbed ";

std::size_t occurrences(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

std::string hex(std::uint32_t color) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "#%06x", color & 0xffffffU);
  return text.data();
}

}  // namespace

GromitMpx::GromitMpx(const std::string& display, std::uint32_t ink, int strokeWidth)
    : client_(display), input_(display) {
  writeFile(home_.configuration() / "gromit-mpx.cfg", "\"Ink\" = PEN (size=" + std::to_string(strokeWidth) +
                                                          " color=\"" + hex(ink) + "\");\n\"default\" = \"Ink\";\n");
  writeFile(home_.configuration() / "gromit-mpx.ini", "[General]\nShowIntroOnStartup=false\n");
  process_.emplace(
      std::vector<std::string>{"gromit-mpx", "--debug", "--opacity", "1", "--key", "F9", "--undo-key", "none"},
      home_.environment(display));
  const bool ready = waitUntil([&] {
    if (!process_->output().contains(listening)) return false;
    window_ = client_.findTopLevel("Gromit-mpx").value_or(XCB_NONE);
    return window_ != XCB_NONE;
  });
  if (!ready) throw std::runtime_error("gromit-mpx did not come up: " + process_->output());
}

void GromitMpx::draw(const std::vector<Stroke>& strokes) {
  setPainting(true);
  for (const Stroke& stroke : strokes) input_.drag(stroke.fromX, stroke.fromY, stroke.toX, stroke.toY);
  setPainting(false);
}

void GromitMpx::clear() { input_.chord({XK_Shift_L, XK_F9}); }

void GromitMpx::setPainting(bool on) {
  const std::string_view sign = on ? paintingOn : paintingOff;
  const std::size_t before = occurrences(process_->output(), sign);
  input_.press(XK_F9);
  if (!waitUntil([&] { return occurrences(process_->output(), sign) > before; })) {
    throw std::runtime_error("gromit-mpx did not switch painting: " + process_->output());
  }
}

}  // namespace support
