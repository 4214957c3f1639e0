#include "Benchmarks/Latency.h"

#include <X11/keysym.h>

#include <chrono>
#include <random>
#include <stdexcept>
#include <thread>

#include "Benchmarks/Pace.h"
#include "Benchmarks/Workloads.h"
#include "Tests/Support/Input.h"

namespace bench {

namespace {

constexpr int width = 1920;
constexpr int height = 1080;
constexpr std::uint32_t ink = 0xff00ff;

// A desktop with a live copy of its left half.
class Stage {
 public:
  explicit Stage(const std::string& subject, const std::string& workload = "idle", bool isOn = true)
      : server({.width = 2 * width, .height = height, .arguments = {}}),
        workload_(makeWorkload(workload, server.display())),
        client(server.display()) {
    const Place place{{0, 0, 2 * width, height}, {0, 0, width, height}, {width, 0, width, height}};
    square = client.createWindow({.frame = {1500, 800, 100, 100}, .color = 0xff000000});
    client.sync();
    program = startSubject(subject, server.display(), place, isOn);
    std::this_thread::sleep_for(std::chrono::seconds(1));
  }

  // Milliseconds until the pixel has this colour.
  double until(int x, int y, std::uint32_t color, Clock::time_point since) {
    while (client.screenshot({x, y, 1, 1}).at(0, 0) != color)
      if (Clock::now() - since > std::chrono::seconds(5)) throw std::runtime_error("What is waited for never shows.");
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
  }

  void paintSquare(std::uint32_t color) {
    client.setBackground(square, 0xff000000U | color);
    client.sync();
  }

  support::XServer server;

 private:
  std::unique_ptr<Workload> workload_;

 public:
  support::XClient client;
  xcb_window_t square = XCB_NONE;
  std::unique_ptr<Subject> program;
};

// Waits for a random time, so that nothing keeps step.
void rest(std::mt19937& random, int least, int most) {
  std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution(least, most)(random)));
}

xcb_window_t makeOverlay(support::XClient& client) {
  const auto overlay =
      client.createWindow({.frame = client.screenFrame(), .color = 0xff000000U | ink, .depth = 32, .mapped = false});
  client.setInputShape(overlay, {});
  client.sync();
  return overlay;
}

}  // namespace

LatencyMeasurement measureChange(const std::string& subject, const std::string& workload, int samples) {
  Stage stage(subject, workload);
  const int x = (subject == ours ? 0 : width) + 1550;
  LatencyMeasurement measurement{subject + ", " + workload, {}};
  std::mt19937 random(1);
  for (int sample = 0; sample < samples; ++sample) {
    rest(random, 60, 110);
    const std::uint32_t color = sample % 2 == 0 ? 0x00c040 : 0xc04000;
    const auto begin = Clock::now();
    stage.paintSquare(color);
    measurement.milliseconds.push_back(stage.until(x, 850, color, begin));
  }
  return measurement;
}

LatencyMeasurement measureHotKey(int samples) {
  Stage stage(ours, "idle", false);
  support::Input input(stage.server.display());
  // A colour that occurs neither in the overlay nor in the cover before its first picture.
  constexpr std::uint32_t beneath = 0x00c040;
  stage.paintSquare(beneath);
  stage.client.map(makeOverlay(stage.client));
  stage.client.sync();
  LatencyMeasurement measurement{"hot key to first live frame", {}};
  std::mt19937 random(1);
  const auto toggle = [&] { input.chord({XK_Control_L, XK_Alt_L, XK_Super_L, XK_d}); };
  for (int sample = 0; sample < samples; ++sample) {
    (void)stage.until(1550, 850, ink, Clock::now());
    rest(random, 200, 300);
    const auto begin = Clock::now();
    toggle();
    measurement.milliseconds.push_back(stage.until(1550, 850, beneath, begin));
    rest(random, 200, 300);
    toggle();
  }
  return measurement;
}

LatencyMeasurement measureOverlay(int samples) {
  Stage stage(ours);
  stage.paintSquare(0x00c040);
  LatencyMeasurement measurement{"overlay mapped to gone", {}};
  std::mt19937 random(1);
  for (int sample = 0; sample < samples; ++sample) {
    const auto overlay = makeOverlay(stage.client);
    rest(random, 400, 500);
    const auto begin = Clock::now();
    stage.client.map(overlay);
    stage.client.sync();
    measurement.milliseconds.push_back(stage.until(1550, 850, 0x00c040, begin));
    stage.client.destroy(overlay);
    stage.client.sync();
  }
  return measurement;
}

}  // namespace bench
