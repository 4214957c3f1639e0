// Real programs that read the screen where they are told that it has changed, while a solid cover lies over the
// changes.

#include <algorithm>
#include <set>

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Lens/OpenLens.h"
#include "Tests/Support/FrameBufferViewer.h"

namespace lens {
namespace {

using endtoend::area;
using support::ChildProcess;
using support::PixelRect;

constexpr std::chrono::seconds deadline{60};
constexpr PixelRect moving{400, 300, 64, 64};  // within the covered area

class DamagePrograms : public endtoend::CoveredDesktop {
 protected:
  void SetUp() override {
    film_ = client_.createWindow({.frame = moving, .color = 0xff000000});
    client_.sync();
    cover_.emplace(
        QUILLFADE_EXECUTABLE, server_.display(),
        support::QuillfadeOptions{.demonstration = false,
                                  .settings = R"({"style": 1, "outline": false, "enabled": true, "region": ")" +
                                              endtoend::regionText(area) + "\"}"});
    ASSERT_TRUE(shows([](const support::Picture& screen) {
      return screen.count(screen.at(area.x + 5, area.y + 5), area) == std::size_t{520} * 340;
    }));
  }

  void showFrame(std::uint32_t color) {
    client_.fill(film_, {0, 0, moving.width, moving.height}, 0xff000000 | color);
    client_.sync();
  }

  void showFilmWhile(ChildProcess& program);
  [[nodiscard]] support::Environment environment() const {
    return {{"DISPLAY", server_.display()}, {"HOME", directory_.path()}};
  }

  support::TemporaryDirectory directory_;
  xcb_window_t film_ = XCB_NONE;
  std::optional<support::QuillfadeProgram> cover_;
};

// Shows a new colour each time the test checks whether the program has ended.
void DamagePrograms::showFilmWhile(ChildProcess& program) {
  std::uint32_t color = 1;
  ASSERT_TRUE(support::waitUntil(
      [&] {
        showFrame(color += 0x010203);
        return !program.isRunning();
      },
      deadline));
  ASSERT_EQ(program.exitStatus(), 0) << program.output();
}

TEST_F(DamagePrograms, GStreamerFilmsWhatMovesBeneathTheCover) {
  const auto file = directory_.path() / "film.rgb";
  const std::string crop = "videocrop left=" + std::to_string(moving.x + 30) + " top=" + std::to_string(moving.y + 30) +
                           " right=" + std::to_string(1280 - moving.x - 31) +
                           " bottom=" + std::to_string(800 - moving.y - 31);
  ChildProcess recorder(
      throughLens("unmirrored", {"sh", "-c",
                                 "exec gst-launch-1.0 -q ximagesrc use-damage=true show-pointer=false "
                                 "num-buffers=90 ! video/x-raw,framerate=30/1 ! videoconvert ! "
                                 "video/x-raw,format=RGBx ! " +
                                     crop + " ! filesink location=" + file.string()}),
      environment());
  showFilmWhile(recorder);
  // A frame is one pixel.
  const std::string film = support::readFile(file);
  ASSERT_EQ(film.size(), 90U * 4) << recorder.output();
  std::set<std::string> pictures;
  for (std::size_t frame = 0; frame < 90; ++frame) pictures.insert(film.substr(4 * frame, 3));
  EXPECT_GT(pictures.size(), 45U) << "the film has a new colour far more often than the recorder looks";
}

// It makes a frame of its film whenever it is told of damage.
TEST_F(DamagePrograms, ByzanzRecordsWhatMovesBeneathTheCover) {
  const auto file = directory_.path() / "film.gif";
  ChildProcess recorder(
      throughLens("unmirrored", {"byzanz-record", "--duration=3", "--x=" + std::to_string(moving.x),
                                 "--y=" + std::to_string(moving.y), "--width=64", "--height=64", file}),
      environment());
  showFilmWhile(recorder);
  const std::string frames = support::runToEnd({"identify", file});
  EXPECT_GT(std::ranges::count(frames, '\n'), 5);
}

struct Server {
  std::string name;
  std::vector<std::string> words;  // the socket comes last
  friend void PrintTo(const Server& server, std::ostream* out) { *out << server.name; }
};

class RemoteDesktops : public DamagePrograms, public testing::WithParamInterface<Server> {};

TEST_P(RemoteDesktops, OfferWhatMovesBeneathTheCover) {
  const auto socket = directory_.path() / "rfb";
  std::vector<std::string> words = GetParam().words;
  words.push_back(socket);
  ChildProcess server(throughLens("unmirrored", words), environment());
  ASSERT_TRUE(support::waitUntil([&] { return std::filesystem::exists(socket) || !server.isRunning(); }, deadline));
  ASSERT_TRUE(server.isRunning()) << server.output();
  support::FrameBufferViewer viewer(socket);
  for (const std::uint32_t color : {0xff0000U, 0x00ff00U, 0x0000ffU, 0xffff00U, 0x00ffffU, 0xffffffU}) {
    showFrame(color);
    EXPECT_TRUE(support::waitUntil([&] { return viewer.at(moving.x + 30, moving.y + 30) == color; }))
        << std::hex << color << " was not seen, but " << viewer.at(moving.x + 30, moving.y + 30);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, RemoteDesktops,
                         testing::Values(Server{"X11vnc",
                                                {"x11vnc", "-quiet", "-forever", "-nopw", "-rfbport", "0", "-noxrecord",
                                                 "-nocursor", "-nosel", "-unixsock"}},
                                         Server{"X0tigervncserver",
                                                {"X0tigervnc", "-SecurityTypes", "None", "-rfbport", "-1",
                                                 "-rfbunixpath"}}),
                         [](const auto& server) { return server.param.name; });

}  // namespace
}  // namespace lens
