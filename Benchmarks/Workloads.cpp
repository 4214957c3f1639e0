#include "Benchmarks/Workloads.h"

#include <X11/keysym.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "Benchmarks/Pace.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/XClient.h"

namespace bench {

namespace {

constexpr double charactersASecond = 20;
constexpr double linesASecond = 30;
constexpr double picturesASecond = 30;

// A desktop at rest: a background, and two windows that never change.
class Idle : public Workload {
 public:
  explicit Idle(const std::string& display) : client_(display) {
    client_.setBackgroundChecks(client_.root(), 40, 0x20507a, 0x285a86);
    client_.createWindow({.frame = {1400, 100, 400, 300}, .color = 0xfff0f0f0});
    client_.createWindow({.frame = {1300, 500, 500, 400}, .color = 0xffc0d0c0});
    client_.sync();
  }

 protected:
  support::XClient& client() { return client_; }

 private:
  support::XClient client_;
};

class Terminal : public Idle {
 public:
  Terminal(const std::string& display, std::vector<std::string> command) : Idle(display) {
    std::vector<std::string> arguments{"xterm", "-geometry", "132x50+20+20", "-fn", "9x15", "-e"};
    arguments.insert(arguments.end(), command.begin(), command.end());
    xterm_.emplace(arguments, home_.environment(display));
    if (!support::waitUntil([&] { return client().findTopLevel("XTerm").has_value(); }))
      throw std::runtime_error("xterm does not come up: " + xterm_->output());
  }

 private:
  support::PrivateHome home_;
  std::optional<support::ChildProcess> xterm_;
};

class Typing final : public Terminal {
 public:
  explicit Typing(const std::string& display) : Terminal(display, {"cat"}), input_(display) {
    // Keys go to the window under the pointer, even if a program just took the keyboard: one of the peers would pause.
    input_.moveTo(pointerPlace.x, pointerPlace.y);
    pace_.emplace(charactersASecond, [this] {
      xcb_set_input_focus(client().connection(), XCB_INPUT_FOCUS_POINTER_ROOT, XCB_INPUT_FOCUS_POINTER_ROOT,
                          XCB_CURRENT_TIME);
      client().sync();
      // Short enough that the terminal does not scroll, which is another workload.
      constexpr std::string_view line = "the quick brown fox jumps over the lazy dog and runs away\r";
      const char typed = line[typed_++ % line.size()];
      input_.press(typed == '\r' ? XK_Return : static_cast<support::KeySymbol>(typed));
    });
  }

 private:
  support::Input input_;
  std::size_t typed_ = 0;
  std::optional<Pace> pace_;
};

class Video final : public Idle {
 public:
  explicit Video(const std::string& display)
      : Idle(display),
        window_(client().createWindow({.frame = {20, 20, width, height}, .color = 0xff000000})),
        context_(xcb_generate_id(client().connection())) {
    xcb_connection_t* c = client().connection();
    const std::uint32_t noExposures = 0;
    xcb_create_gc(c, context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    for (std::size_t index = 0; index < pictures_.size(); ++index) {
      pictures_[index] = xcb_generate_id(c);
      xcb_create_pixmap(c, 24, pictures_[index], window_, width, height);
      client().fill(pictures_[index], {0, 0, width, height}, 0x102030U * static_cast<std::uint32_t>(index + 1));
      for (int stripe = 0; stripe < width; stripe += 40)
        client().fill(pictures_[index], {stripe + static_cast<int>(index) * 10, 0, 10, height}, 0xd0e0f0);
    }
    client().sync();
    pace_.emplace(picturesASecond, [this] {
      xcb_copy_area(client().connection(), pictures_[shown_++ % pictures_.size()], window_, context_, 0, 0, 0, 0, width,
                    height);
      xcb_flush(client().connection());
    });
  }

 private:
  static constexpr int width = 1280;
  static constexpr int height = 720;
  xcb_window_t window_;
  xcb_gcontext_t context_;
  std::array<xcb_pixmap_t, 4> pictures_{};
  std::size_t shown_ = 0;
  std::optional<Pace> pace_;
};

class ManyWindows final : public Idle {
 public:
  ManyWindows(const std::string& display, int count) : Idle(display) {
    for (int index = 0; index < count; ++index) {
      const int x = 20 + (index * 37) % 1700;
      const int y = 20 + (index * 23) % 900;
      client().createWindow(
          {.frame = {x, y, 160, 120}, .color = 0xff000000U | (0x030507U * static_cast<unsigned>(index))});
    }
    changing_ = client().createWindow({.frame = {900, 500, 160, 120}, .color = 0xff000000});
    client().sync();
    pace_.emplace(picturesASecond, [this] {
      client().fill(changing_, {20, 20, 100, 80}, 0x010307U * ++color_);
      xcb_flush(client().connection());
    });
  }

 private:
  xcb_window_t changing_ = XCB_NONE;
  std::uint32_t color_ = 0;
  std::optional<Pace> pace_;
};

}  // namespace

std::unique_ptr<Workload> makeWorkload(const std::string& name, const std::string& display) {
  const std::string many = "windows-";
  if (name == "idle") return std::make_unique<Idle>(display);
  if (name == "typing") return std::make_unique<Typing>(display);
  if (name == "scrolling")
    return std::make_unique<Terminal>(
        display, std::vector<std::string>{std::filesystem::read_symlink("/proc/self/exe").string(), "--print-lines"});
  if (name == "video") return std::make_unique<Video>(display);
  if (name.starts_with(many)) return std::make_unique<ManyWindows>(display, std::stoi(name.substr(many.size())));
  throw std::invalid_argument("There is no workload " + name + ".");
}

void printLines() {
  for (std::size_t line = 0;; ++line) {
    std::printf("%6zu the quick brown fox jumps over the lazy dog, again and again and again\n", line);
    std::fflush(stdout);
    std::this_thread::sleep_for(std::chrono::duration<double>(1 / linesASecond));
  }
}

}  // namespace bench
