// Random changes to the windows of a screen, always the same ones for the same seed.
//
// Threads: that of the client, which must outlive the storm.
#pragma once

#include <xcb/xcb.h>

#include <random>
#include <vector>

#include "Tests/Support/XClient.h"

namespace platform::linux::scene {

class WindowStorm {
 public:
  WindowStorm(support::XClient& client, unsigned seed)
      : client_(client), random_(seed), screen_(client.screenFrame()) {}

  // Makes one change. Sends requests without waiting for them.
  void change();
  // Lets the windows outlive the client's connection.
  void keepWindows();
  [[nodiscard]] const std::vector<xcb_window_t>& windows() const { return windows_; }

 private:
  [[nodiscard]] int between(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }
  [[nodiscard]] std::uint32_t color();
  [[nodiscard]] support::PixelRect place();
  [[nodiscard]] xcb_window_t any();
  void create();
  void destroy();
  void restack();
  void reshape();
  void reparent();
  void draw();

  support::XClient& client_;
  std::mt19937 random_;
  support::PixelRect screen_;
  std::vector<xcb_window_t> windows_;
  // Windows that are currently inside another one.
  std::vector<xcb_window_t> inner_;
};

}  // namespace platform::linux::scene
