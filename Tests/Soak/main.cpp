// Hours of a presenter's day in minutes: a cover over a video, overlays that come and go, peeks, changes of style, and
// monitors that are plugged in and out. What the program and the server hold must be the same as after the first
// minute, and no picture in the cover may be older than a tenth of a second.
//
// quillfade-soak PROGRAM MINUTES DIRECTORY

#include <chrono>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <utility>

#include "Tests/Soak/Meters.h"
#include "Tests/Soak/Report.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace soak {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds frameLength{33};
constexpr milliseconds oldest{100};
constexpr int secondsOfRound = 60;
constexpr std::uint32_t ink = 0xff00ff;
constexpr support::PixelRect screen{0, 0, 1280, 800};
constexpr support::PixelRect video{300, 250, 400, 250};

class Soak {
 public:
  Soak(const std::string& program, int minutes) : executable_(program), minutes_(minutes) {
    // Ink over everything: anything else on the screen is the cover.
    paneOfInk(screen);
    client_.sync();
    program_.emplace(program, server_.display(),
                     support::QuillfadeOptions{
                         .demonstration = false,
                         .settings = R"({"enabled": true, "outline": false, "region": "{{0, 0}, {1280, 800}}"})",
                         .hasLogDirectory = false,
                         .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}}});
  }

  Verdict run() {
    const auto begun = Clock::now();
    auto nextFrame = begun;
    int second = 0;
    while (second < minutes_ * secondsOfRound) {
      drawFrame();
      (void)support::waitUntil([&] { return Clock::now() >= nextFrame + frameLength / 2; }, frameLength);
      look();
      nextFrame += frameLength;
      (void)support::waitUntil([&] { return Clock::now() >= nextFrame; }, frameLength);
      if (Clock::now() - begun < std::chrono::seconds(second + 1)) continue;
      ++second;
      if (!program_->process().isRunning()) return {{"The program ended: " + program_->process().output()}, false};
      happen(second % secondsOfRound);
      if (second % 5 == 0) measure(second);
    }
    return judge(samples_, seen_, late_);
  }

  [[nodiscard]] const std::vector<Sample>& samples() const { return samples_; }

 private:
  struct Frame {
    std::uint32_t color;
    Clock::time_point drawnAt;
  };

  xcb_window_t paneOfInk(const support::PixelRect& frame) {
    const auto pane = client_.createWindow({.frame = frame, .color = 0xff000000U | ink, .depth = 32, .mapped = false});
    client_.setInputShape(pane, {});
    client_.map(pane);
    return pane;
  }

  void drawFrame() {
    // Never the ink's colour, and never the same twice within some seconds.
    ++number_;
    const std::uint32_t color = 0x002000U | (number_ & 0xffU) | (number_ & 0xff00U) << 8U;
    client_.fill(video_, {0, 0, video.width, video.height}, color);
    client_.sync();
    drawn_.push_back({color, Clock::now()});
    if (drawn_.size() > 300) drawn_.pop_front();
  }

  // The picture in the cover became old when the next frame was drawn.
  void look() {
    const std::uint32_t color = client_.screenshot({video.x + 200, video.y + 125, 1, 1}).at(0, 0);
    const auto now = Clock::now();
    for (std::size_t i = 0; i < drawn_.size(); ++i) {
      if (drawn_[i].color != color) continue;
      ++seen_;
      const auto age = i + 1 < drawn_.size() ? now - drawn_[i + 1].drawnAt : Clock::duration{};
      if (age > oldest) ++late_;
      oldestFrame_ = std::max(oldestFrame_, std::chrono::duration<double, std::milli>(age).count());
      return;
    }
  }

  // A round begins and ends with the live cover on one monitor.
  void happen(int second) {
    if (second % 6 == 2 && second < 54) overlay_ = paneOfInk({100 + second * 4, 50, 800, 600});
    if (second % 6 == 5 && overlay_ != XCB_NONE) client_.destroy(std::exchange(overlay_, xcb_window_t{XCB_NONE}));
    if (second == 10 || second == 40) command({"peek", "1"});
    if (second == 20) command({"style", "solid"});
    if (second == 23) command({"style", "live"});
    if (second == 30) xrandr({"--setmonitor", "L", "640/170x800/210+0+0", "screen"});
    if (second == 31) xrandr({"--setmonitor", "R", "640/170x800/210+640+0", "none"});
    if (second == 45) xrandr({"--delmonitor", "R"});
    if (second == 46) xrandr({"--delmonitor", "L"});
  }

  void command(std::vector<std::string> words) {
    words.insert(words.begin(), executable_);
    background_.emplace_back(words, support::Environment{{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}});
    while (background_.size() > 4) background_.pop_front();
  }
  void xrandr(std::vector<std::string> words) {
    words.insert(words.begin(), {"xrandr", "--display", server_.display()});
    background_.emplace_back(words);
    while (background_.size() > 4) background_.pop_front();
  }

  void measure(int second) {
    const pid_t process = program_->process().id();
    samples_.push_back({.seconds = static_cast<double>(second),
                        .programMemory = residentKibibytes(process),
                        .serverMemory = residentKibibytes(server_.processId()),
                        .descriptors = openDescriptors(process),
                        .resources = serverResources(client_.connection(), process),
                        .oldestFrame = std::exchange(oldestFrame_, 0),
                        .endsRound = second % secondsOfRound == 0});
  }

  std::string executable_;
  int minutes_;
  support::XServer server_;
  support::SessionBus bus_;
  support::XClient client_{server_.display()};
  xcb_window_t board_ = client_.createWindow({.frame = screen, .color = 0xff304050, .overrideRedirect = false});
  xcb_window_t video_ = client_.createWindow({.frame = video, .overrideRedirect = false});
  xcb_window_t overlay_ = XCB_NONE;
  std::optional<support::QuillfadeProgram> program_;
  std::deque<support::ChildProcess> background_;
  std::deque<Frame> drawn_;
  std::uint32_t number_ = 0;
  std::size_t seen_ = 0;
  std::size_t late_ = 0;
  double oldestFrame_ = 0;
  std::vector<Sample> samples_;
};

}  // namespace
}  // namespace soak

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: quillfade-soak PROGRAM MINUTES DIRECTORY\n";
    return 2;
  }
  const std::filesystem::path directory = argv[3];
  std::filesystem::create_directories(directory);
  soak::Soak soak(argv[1], std::atoi(argv[2]));
  const auto verdict = soak.run();
  soak::write(soak.samples(), directory);
  for (const auto& line : verdict.lines) std::cout << line << '\n';
  std::cout << "plot and samples: " << directory.string() << std::endl;
  return verdict.isGood ? 0 : 1;
}
