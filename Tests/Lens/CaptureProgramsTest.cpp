// Real programs that capture the screen, outside the lens and through it, while the live cover lies over real ink.

#include <array>
#include <csignal>
#include <fstream>
#include <sstream>

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Lens/OpenLens.h"

namespace lens {
namespace {

using endtoend::area;
using endtoend::wholeScreen;
using support::ChildProcess;
using support::Environment;
using support::Picture;
using support::PixelRect;

constexpr std::chrono::seconds patience{30};

// Where two strokes cross inside the cover, and a place on a stroke outside it.
constexpr std::array<int, 2> inkInside{500, 400};
constexpr std::array<int, 2> inkOutside{820, 600};

// Lets ImageMagick read the file, whatever its format.
Picture readPicture(const std::filesystem::path& path) {
  const std::filesystem::path raw = path.string() + ".rgb";
  support::runToEnd({"convert", path, "-depth", "8", "rgb:" + raw.string()});
  const std::string bytes = support::readFile(raw);
  std::vector<std::uint32_t> pixels;
  for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) { return std::uint32_t{static_cast<unsigned char>(bytes[at])}; };
    pixels.push_back(byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2));
  }
  if (pixels.size() != std::size_t{1280} * 800)
    throw std::runtime_error("Not a picture of the screen: " + path.string());
  return {1280, 800, std::move(pixels)};
}

class Captures : public endtoend::CoveredDesktop {
 protected:
  // Ink crosses the edges of a live cover without an outline.
  void SetUp() override {
    clean_ = client_.screenshot();
    drawInk();
    inked_ = client_.screenshot();
    cover({.demonstration = false, .settings = endtoend::settingsWithRegion(area)});
    ASSERT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean_, area) == 0; }));
    covered_ = client_.screenshot();
    ASSERT_NE(covered_, inked_);
    ASSERT_NE(covered_, clean_);
  }

  // Runs the program to its end and returns its output; without a view, outside the lens.
  std::string run(const std::string& view, const std::vector<std::string>& program) {
    ChildProcess process(view.empty() ? program : throughLens(view, program),
                         {{"DISPLAY", server_.display()}, {"HOME", directory_.path()}});
    EXPECT_EQ(process.waitForExit(patience), 0) << process.output();
    return process.output();
  }

  support::TemporaryDirectory directory_;
  Picture clean_{1, 1, 0U};
  Picture inked_{1, 1, 0U};
  Picture covered_{1, 1, 0U};
};

struct Program {
  std::string name;
  std::string suffix;
  std::vector<std::string> words;  // the file comes last
  PixelRect part = wholeScreen;    // that it reads from the screen

  friend void PrintTo(const Program& program, std::ostream* out) { *out << program.name; }
};

class EveryProgram : public Captures, public testing::WithParamInterface<Program> {
 protected:
  Picture capture(const std::string& view) {
    const auto file = directory_.path() / ("shot" + view + GetParam().suffix);
    std::vector<std::string> words = GetParam().words;
    words.push_back(file);
    run(view, words);
    return readPicture(file);
  }
};

TEST_P(EveryProgram, SeesTheMirrorOutsideTheLensAndNotThroughIt) {
  const PixelRect& part = GetParam().part;
  EXPECT_EQ(capture("").differences(covered_, part), 0U);
  EXPECT_EQ(capture("unmirrored").differences(inked_, part), 0U);
  EXPECT_EQ(capture("clean").differences(clean_, part), 0U);
}

// Where the screen has windows with alpha, such as the ink's, xwd reads them one by one, with or without the lens. Its
// picture of them is not what the screen shows; the cover lies above the ink.
INSTANTIATE_TEST_SUITE_P(
    Programs, EveryProgram,
    testing::Values(Program{"Import", ".png", {"import", "-window", "root"}},
                    Program{"Xwd", ".xwd", {"xwd", "-silent", "-root", "-out"}, area},
                    Program{"Scrot", ".png", {"scrot", "--overwrite"}},
                    Program{"Maim", ".png", {"maim", "--hidecursor"}},
                    Program{"Xfce4Screenshooter", ".png", {"xfce4-screenshooter", "--fullscreen", "--save"}},
                    Program{"GnomeScreenshot", ".png", {"gnome-screenshot", "--file"}},
                    // From release 13 on, it asks a portal for the picture unless its settings say otherwise.
                    Program{
                        "Flameshot",
                        ".png",
                        {"sh", "-c",
                         "flameshot --version | grep -q 'v12' || { mkdir -p ~/.config/flameshot;"
                         " printf '[General]\nuseX11LegacyScreenshot=true\n' > ~/.config/flameshot/flameshot.ini; };"
                         " exec flameshot full --path \"$0\""}},
                    Program{"Ffmpeg",
                            ".png",
                            {"sh", "-c",
                             "ffmpeg -loglevel error -f x11grab -draw_mouse 0 -video_size 1280x800 -i $DISPLAY "
                             "-frames:v 1 \"$0\""}}),
    [](const auto& program) { return program.param.name; });

// One line per frame; the last word is a checksum of its pixels.
std::vector<std::string> checksums(const std::string& output) {
  std::vector<std::string> result;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with('#')) result.push_back(line.substr(line.find_last_of(' ') + 1));
  }
  return result;
}

std::vector<std::string> recording(const std::string& frames) {
  return {"sh", "-c",
          "exec ffmpeg -loglevel error -f x11grab -framerate 30 -draw_mouse 0 -video_size 1280x800 -i $DISPLAY "
          "-frames:v " +
              frames + " -pix_fmt rgb24 -c:v rawvideo -fps_mode passthrough -f framemd5 -"};
}

TEST_F(Captures, ARecordingOfTenSecondsHasTheMirrorInNoFrame) {
  const auto outside = checksums(run("", recording("1")));
  const auto frames = checksums(run("unmirrored", recording("300")));
  const auto clean = checksums(run("clean", recording("5")));
  ASSERT_EQ(frames.size(), 300U);
  // What should be seen: the screen without the cover.
  quillfade().process().terminate();
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen == inked_; }));
  const auto truth = checksums(run("", recording("1")));
  EXPECT_THAT(frames, testing::Each(truth.at(0)));
  EXPECT_THAT(clean, testing::Each(testing::AllOf(testing::Ne(truth.at(0)), testing::Ne(outside.at(0)))));
  EXPECT_NE(outside.at(0), truth.at(0));
}

bool isNear(std::uint32_t color, const std::string& triple) {
  std::istringstream text(triple);
  constexpr int videoTolerance = 40;
  for (const unsigned shift : {16U, 8U, 0U}) {
    int value = 0;
    char comma = 0;
    text >> value >> comma;
    if (std::abs(value - static_cast<int>(color >> shift & 0xffU)) > videoTolerance) return false;
  }
  return true;
}

// The title of the browser's window, once its page has captured the screen often enough for the picture to settle.
std::string capturedByBrowser(support::XClient& client, ChildProcess& browser, std::array<std::uint32_t, 2> expected) {
  std::string title;
  const bool isAsExpected = support::waitUntil(
      [&] {
        if (!browser.isRunning()) return true;
        const auto window = client.findTopLevel("Chromium");
        if (window) title = client.text(*window, "_NET_WM_NAME");
        std::istringstream words(title);
        std::string captured, size, inside, outside;
        words >> captured >> size >> inside >> outside;
        return captured == "captured" && size == "1280x800" && isNear(expected[0], inside) &&
               isNear(expected[1], outside);
      },
      patience);
  return isAsExpected && browser.isRunning() ? "as expected" : title + "\n" + browser.output();
}

// The film is lossy, so two pixels tell what was seen.
TEST_F(Captures, RecordmydesktopFilmsWithoutTheMirror) {
  for (const auto& [view, truth] : {std::pair{"", &covered_}, {"unmirrored", &inked_}, {"clean", &clean_}}) {
    const auto film = directory_.path() / (std::string("film") + view + ".ogv");
    const std::vector<std::string> words{"recordmydesktop", "--no-sound", "--no-cursor", "--on-the-fly-encoding",
                                         "--fps",           "5",          "-o",          film};
    ChildProcess recorder(*view == '\0' ? words : throughLens(view, words),
                          {{"DISPLAY", server_.display()}, {"HOME", directory_.path()}});
    // The recording has begun; stopping it writes the rest.
    ASSERT_TRUE(support::waitUntil(
        [&] {
          return !recorder.isRunning() || (std::filesystem::exists(film) && std::filesystem::file_size(film) > 0);
        },
        patience));
    recorder.signal(SIGINT);
    ASSERT_EQ(recorder.waitForExit(patience), 0) << recorder.output();
    const std::string pixels = support::runToEnd(
        {"sh", "-c",
         "ffmpeg -loglevel error -i \"$0\" -frames:v 1 -f image2pipe -c:v png - | convert png:- -format "
         "'%[fx:int(255*p{500,400}.r)],%[fx:int(255*p{500,400}.g)],%[fx:int(255*p{500,400}.b)] "
         "%[fx:int(255*p{820,600}.r)],%[fx:int(255*p{820,600}.g)],%[fx:int(255*p{820,600}.b)]' info:",
         film});
    const std::size_t between = pixels.find(' ');
    ASSERT_NE(between, std::string::npos) << pixels;
    EXPECT_TRUE(isNear(truth->at(inkInside[0], inkInside[1]), pixels.substr(0, between))) << view << ": " << pixels;
    EXPECT_TRUE(isNear(truth->at(inkOutside[0], inkOutside[1]), pixels.substr(between + 1))) << view << ": " << pixels;
  }
}

TEST_F(Captures, ABrowserSharesTheScreenWithoutTheMirror) {
  const auto colors = [](const Picture& picture) {
    return std::array{picture.at(inkInside[0], inkInside[1]), picture.at(inkOutside[0], inkOutside[1])};
  };
  ASSERT_EQ(colors(inked_)[0], support::GromitMpx::defaultInk);
  ASSERT_EQ(colors(inked_)[1], support::GromitMpx::defaultInk);
  const std::filesystem::path page = std::filesystem::path(QUILLFADE_SOURCE_TREE) / "Tests/Lens/capture.html";
  for (const auto& [view, truth] : {std::pair{"", &covered_}, {"unmirrored", &inked_}, {"clean", &clean_}}) {
    const support::TemporaryDirectory profile;
    std::vector<std::string> words{"chromium",
                                   "--no-sandbox",
                                   "--disable-gpu",
                                   "--disable-dev-shm-usage",
                                   "--disable-quic",
                                   "--no-first-run",
                                   "--disable-background-networking",
                                   "--disable-component-update",
                                   "--disable-sync",
                                   "--auto-select-desktop-capture-source=Entire screen",
                                   "--user-data-dir=" + profile.path().string(),
                                   "--window-size=320,200",
                                   "--window-position=950,20",
                                   "file://" + page.string() + "#" + std::to_string(inkInside[0]) + "," +
                                       std::to_string(inkInside[1]) + ";" + std::to_string(inkOutside[0]) + "," +
                                       std::to_string(inkOutside[1])};
    if (*view != '\0') words = throughLens(view, words);
    ChildProcess browser(words, {{"DISPLAY", server_.display()}, {"HOME", profile.path()}});
    EXPECT_EQ(capturedByBrowser(client_, browser, colors(*truth)), "as expected") << view;
    browser.terminate();
  }
}

}  // namespace
}  // namespace lens
