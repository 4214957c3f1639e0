#include "Benchmarks/Subjects.h"

#include <xcb/composite.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "Benchmarks/Workloads.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Wait.h"

namespace bench {

namespace {

using Arguments = std::vector<std::string>;

std::string size(const PixelRect& rect) { return std::to_string(rect.width) + "x" + std::to_string(rect.height); }
std::string at(const PixelRect& rect) { return std::to_string(rect.x) + "," + std::to_string(rect.y); }

Arguments ffplay(const std::string& display, const Place& place) {
  return {"ffplay",
          "-hide_banner",
          "-loglevel",
          "error",
          "-noborder",
          "-left",
          std::to_string(place.beside.x),
          "-top",
          std::to_string(place.beside.y),
          "-f",
          "x11grab",
          "-framerate",
          "30",
          "-draw_mouse",
          "0",
          "-video_size",
          size(place.area),
          "-i",
          display + "+" + at(place.area)};
}

Arguments gstreamer(const std::string& display, const Place& place, bool usesDamage) {
  const PixelRect& area = place.area;
  return {"gst-launch-1.0",
          "-q",
          "ximagesrc",
          "display-name=" + display,
          "startx=" + std::to_string(area.x),
          "starty=" + std::to_string(area.y),
          "endx=" + std::to_string(area.right() - 1),
          "endy=" + std::to_string(area.bottom() - 1),
          std::string("use-damage=") + (usesDamage ? "true" : "false"),
          "show-pointer=false",
          "!",
          "video/x-raw,framerate=30/1",
          "!",
          "videoconvert",
          "!",
          "ximagesink",
          "display=" + display};
}

Arguments xzoom(const std::string& display, const Place& place) {
  return {"xzoom",
          "-display",
          display,
          "-mag",
          "1",
          "-source",
          size(place.area) + "+" + std::to_string(place.area.x) + "+" + std::to_string(place.area.y)};
}

Arguments picom(const std::string& /*display*/, const Place& /*place*/) {
  return {"picom", "--backend", "xrender", "--config", "/dev/null"};
}

Arguments bareMirror(const std::string& /*display*/, const Place& place) {
  return {BARE_MIRROR_EXECUTABLE, std::to_string(place.beside.x), std::to_string(place.beside.y)};
}

struct Peer {
  std::string name;
  Arguments (*command)(const std::string& display, const Place& place);
  Arguments version;
  bool showsCopy;
};

const std::vector<Peer>& peers() {
  static const std::vector<Peer> all{
      {"ffplay", ffplay, {"ffplay", "-version"}, true},
      {"gstreamer-damage",
       [](const std::string& display, const Place& place) { return gstreamer(display, place, true); },
       {"gst-launch-1.0", "--version"},
       true},
      {"gstreamer-full",
       [](const std::string& display, const Place& place) { return gstreamer(display, place, false); },
       {"gst-launch-1.0", "--version"},
       true},
      {"xzoom", xzoom, {"dpkg-query", "--show", "xzoom"}, true},
      {"picom", picom, {"picom", "--version"}, false},
      {"bare-mirror", bareMirror, {"echo", "copies one window, and knows of nothing else"}, true},
  };
  return all;
}

class RedirectionOnly final : public Subject {
 public:
  RedirectionOnly(const std::string& display, const Place& place) : client_(display) {
    for (const xcb_window_t window : client_.children(client_.root()))
      xcb_composite_redirect_window(client_.connection(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    client_.createWindow({.frame = place.area, .color = 0xff000000});
    client_.sync();
  }

  [[nodiscard]] pid_t process() const override { return noProcess; }

 private:
  support::XClient client_;
};

class PeerProgram final : public Subject {
 public:
  PeerProgram(const Peer& peer, const std::string& display, const Place& place) : client_(display) {
    const auto before = client_.children(client_.root());
    auto environment = home_.environment(display);
    environment["SDL_VIDEODRIVER"] = "x11";
    environment["SDL_RENDER_DRIVER"] = "software";
    process_.emplace(peer.command(display, place), environment);
    if (peer.showsCopy)
      placeWindow(peer.name, display, before, place.beside);
    else if (!support::waitUntil([&] { return client_.selectionOwner("_NET_WM_CM_S0") != XCB_NONE; }))
      throw std::runtime_error("No compositing manager comes up: " + process_->output());
  }

  [[nodiscard]] pid_t process() const override { return process_->id(); }

 private:
  // Puts its largest new window beside what it films.
  void placeWindow(const std::string& name, const std::string& display, const std::vector<xcb_window_t>& before,
                   const PixelRect& beside) {
    const std::set<xcb_window_t> old(before.begin(), before.end());
    std::optional<xcb_window_t> window;
    const bool cameUp = support::waitUntil([&] {
      for (const xcb_window_t candidate : client_.children(client_.root())) {
        const auto frame = client_.frame(candidate);
        if (!old.contains(candidate) && frame && frame->width > 100 && client_.isViewable(candidate))
          window = candidate;
      }
      return window.has_value();
    });
    if (!cameUp) throw std::runtime_error("No window comes up: " + process_->output());
    client_.setFrame(*window, beside);
    client_.sync();
    // Each press takes it to its next delay: 200, 100, 50 ms. Twenty pictures a second is the nearest it has.
    if (name != "xzoom") return;
    support::Input input(display);
    input.moveTo(beside.x + beside.width / 2, beside.y + beside.height / 2);
    for (int times = 0; times < 2; ++times) input.press(XK_d);
    // Keys typed later would control it, or quit it.
    input.moveTo(pointerPlace.x, pointerPlace.y);
  }

  support::PrivateHome home_;
  support::XClient client_;
  std::optional<support::ChildProcess> process_;
};

class Quillfade final : public Subject {
 public:
  Quillfade(const std::string& display, const Place& place, bool isOn)
      : program_(QUILLFADE_EXECUTABLE, display, {.demonstration = false, .settings = settings(place, isOn)}) {
    if (isOn && !program_.waitForMessage("first live frame received"))
      throw std::runtime_error("No live frame comes: " + program_.process().output());
  }

  [[nodiscard]] pid_t process() const override { return program_.process().id(); }

 private:
  static std::string settings(const Place& place, bool isOn) {
    const int bottom = place.screen.height - place.area.bottom();
    return R"({"enabled": )" + std::string(isOn ? "true" : "false") + R"(, "outline": true, "region": "{{)" +
           std::to_string(place.area.x) + ", " + std::to_string(bottom) + "}, {" + std::to_string(place.area.width) +
           ", " + std::to_string(place.area.height) + R"(}}"})";
  }

  mutable support::QuillfadeProgram program_;
};

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

}  // namespace

std::unique_ptr<Subject> startSubject(const std::string& name, const std::string& display, const Place& place,
                                      bool isOn) {
  if (name == redirectionOnly) return std::make_unique<RedirectionOnly>(display, place);
  if (name == ours) return std::make_unique<Quillfade>(display, place, isOn);
  const auto peer = std::ranges::find(peers(), name, &Peer::name);
  if (peer == peers().end()) throw std::invalid_argument("There is no program " + name + ".");
  return std::make_unique<PeerProgram>(*peer, display, place);
}

std::vector<PeerDescription> describePeers() {
  const Place example{{0, 0, 3840, 1080}, {0, 0, 1920, 1080}, {1920, 0, 1920, 1080}};
  std::vector<PeerDescription> descriptions;
  for (const Peer& peer : peers()) {
    std::string command;
    for (const std::string& argument : peer.command(":99", example)) command += (command.empty() ? "" : " ") + argument;
    descriptions.push_back({peer.name, firstLine(support::runToEnd(peer.version)), command});
  }
  descriptions.push_back(
      {redirectionOnly, "no program", "all windows off screen, and one over the area: nothing is copied"});
  return descriptions;
}

}  // namespace bench
