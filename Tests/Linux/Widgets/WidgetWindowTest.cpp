#include "Platform/Linux/Widgets/WidgetWindow.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <array>
#include <optional>

#include "Platform/Linux/Input/KeyMonitors.h"
#include "Platform/Linux/Toolkit/TextAndColors.h"
#include "Platform/Linux/Views/Views.h"
#include "Platform/Linux/Widgets/PainterCanvas.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Reply.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::widgets;

namespace {

constexpr Rect wholeScreen{{0, 0}, {1280, 800}};
constexpr Rect hole{{200, 100}, {300, 150}};
constexpr xcb::PixelRect holeInPixels{200, 550, 300, 150};
constexpr std::uint32_t desktopColor = 0x00c08040;

// Dims everything but a hole, and records its input.
class Responder : public ViewResponder {
 public:
  [[nodiscard]] bool draws() const override { return true; }
  void draw(Canvas& canvas) override {
    canvas.fillEvenOdd(std::array{wholeScreen, hole}, colors::black.withAlpha(0.5));
  }
  [[nodiscard]] Cursor cursor() const override { return Cursor::crosshair; }
  [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
  void mouseDown(Point point) override { down = point; }
  void mouseDragged(Point point) override { dragged = point; }
  void mouseUp(Point point) override {
    up = point;
    if (onUp) onUp();
  }
  bool keyDown(const KeyEvent& event) override {
    keys.push_back(event.keyCode);
    return handlesKeys;
  }
  void cancelOperation() override { ++cancels; }

  std::optional<Point> down, dragged, up;
  std::function<void()> onUp;
  std::vector<std::uint16_t> keys;
  bool handlesKeys = false;
  int cancels = 0;
};

class WidgetWindowTest : public qt::Test {
 protected:
  WidgetWindowTest() {
    client.createWindow({.frame = {0, 0, 1280, 800}, .color = 0xff000000 | desktopColor});
    client.sync();
  }
  ~WidgetWindowTest() override {
    window.reset();
    qt::runPending();
  }

  void show(const Rect& frame = wholeScreen) {
    window = makeWindow(frame);
    const auto view = views.makeView({{0, 0}, frame.size}, responder);
    window->setContentView(view);
    window->makeKeyAndOrderFront();
    window->makeFirstResponder(*view);
    qt::runPending();
  }
  std::unique_ptr<WidgetWindow> makeWindow(const Rect& frame) {
    WindowAttributes attributes;
    attributes.contentRect = frame;
    attributes.level = screenSaverLevel;
    attributes.hasShadow = false;
    attributes.isOpaque = false;
    attributes.backgroundColor = colors::clear;
    attributes.canBecomeKey = true;
    return std::make_unique<WidgetWindow>(attributes, screens, focus,
                                          [this](xcb::PixelRect part) { return grab(part); });
  }
  QImage grab(const xcb::PixelRect& part) {
    const support::Picture picture = client.screenshot(part);
    QImage image(picture.width(), picture.height(), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) image.setPixel(x, y, 0xff000000 | picture.at(x, y));
    return image;
  }
  xcb_window_t focused() {
    const auto reply =
        support::waitForReply(client.connection(), xcb_get_input_focus_reply, xcb_get_input_focus(client.connection()));
    return reply->focus;
  }
  // The screen dimmed to half except for the hole.
  bool isDimmedAroundTheHole() {
    const support::Picture picture = client.screenshot();
    const auto inside = static_cast<std::size_t>(holeInPixels.width * holeInPixels.height);
    const auto all = static_cast<std::size_t>(picture.width() * picture.height());
    return picture.count(desktopColor, holeInPixels) == inside &&
           picture.count(0x00604020, picture.bounds(), 2) == all - inside;
  }

  support::XClient client{qt::display()};
  support::Input input{qt::display()};
  toolkit::DesktopScreens screens;
  input::KeyboardFocus focus;
  views::DesktopViews views;
  std::shared_ptr<Responder> responder = std::make_shared<Responder>();
  std::unique_ptr<WidgetWindow> window;
};

}  // namespace

TEST_F(WidgetWindowTest, WithoutACompositingManagerTheScreenBeneathShowsAsAPicture) {
  show();
  EXPECT_TRUE(qt::runUntil([&] { return isDimmedAroundTheHole(); }));
}

TEST_F(WidgetWindowTest, WithACompositingManagerTheScreenBeneathShowsThrough) {
  support::CompositingManager manager(qt::display());
  show();
  EXPECT_TRUE(qt::runUntil([&] { return isDimmedAroundTheHole(); }));
  const auto beneath = client.createWindow({.frame = {210, 560, 50, 50}, .color = 0xff00ff00});
  client.lower(beneath);
  client.restack(beneath, XCB_STACK_MODE_BELOW, static_cast<xcb_window_t>(window->windowId()));
  EXPECT_TRUE(qt::runUntil([&] { return client.screenshot().count(0x0000ff00) == 2500; }));
  window.reset();
  qt::runPending();
  manager.stop();
}

TEST_F(WidgetWindowTest, ADragIsReportedFromTheBottomLeftCornerAndBeyondTheEdges) {
  show({{100, 200}, {400, 300}});  // x 100 to 500, y 300 to 600 in pixels
  input.moveTo(150, 400);
  input.buttonDown();
  EXPECT_TRUE(qt::runUntil([&] { return responder->down == Point{50, 200}; }));
  input.moveTo(700, 250);
  EXPECT_TRUE(qt::runUntil([&] { return responder->dragged == Point{600, 350}; }));
  input.moveTo(20, 790);
  EXPECT_TRUE(qt::runUntil([&] { return responder->dragged == Point{-80, -190}; }));
  input.buttonUp();
  EXPECT_TRUE(qt::runUntil([&] { return responder->up == Point{-80, -190}; }));
}

TEST_F(WidgetWindowTest, APressInAnyCornerAndOnAnyEdgeIsReported) {
  show();
  for (const int x : {0, 640, 1279}) {
    for (const int y : {0, 400, 799}) {
      responder->down.reset();
      input.click(x, y);
      ASSERT_TRUE(qt::runUntil([&] { return responder->down.has_value(); }, std::chrono::seconds(2)))
          << "at " << x << "," << y;
      EXPECT_EQ(*responder->down, (Point{double(x), double(800 - y)}));
    }
  }
}

TEST_F(WidgetWindowTest, OtherMouseButtonsAreNotReported) {
  show();
  input.click(300, 300, 3);
  input.click(310, 300, 1);
  ASSERT_TRUE(qt::runUntil([&] { return responder->up.has_value(); }));
  EXPECT_EQ(responder->down, (Point{310, 500}));
}

TEST_F(WidgetWindowTest, AWindowMayGoWhileItHandlesTheMouse) {
  show();
  responder->onUp = [&] { window.reset(); };
  input.click(300, 300);
  EXPECT_TRUE(qt::runUntil([&] { return window == nullptr; }));
  EXPECT_TRUE(qt::runUntil([&] { return client.screenshot().count(desktopColor) == 1280 * 800; }));
}

TEST_F(WidgetWindowTest, AMonitorSeesKeysFirstAndMaySwallowThem) {
  show();
  ASSERT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  input::KeyMonitors monitors;
  std::vector<std::uint16_t> seen;
  const EventMonitor monitor = monitors.add([&](const KeyEvent& event) {
    seen.push_back(event.keyCode);
    return event.keyCode == escapeKeyCode;
  });
  input.press(XK_d);
  input.press(XK_Escape);
  EXPECT_TRUE(qt::runUntil([&] { return seen.size() == 2; }));
  EXPECT_EQ(seen, (std::vector<std::uint16_t>{2, escapeKeyCode}));
  EXPECT_EQ(responder->keys, std::vector<std::uint16_t>{2});
  EXPECT_EQ(responder->cancels, 0);
  monitors.remove(monitor);
  monitors.remove(monitor);
  input.press(XK_Escape);
  EXPECT_TRUE(qt::runUntil([&] { return responder->cancels == 1; }));
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_EQ(responder->keys, (std::vector<std::uint16_t>{2, escapeKeyCode}));
}

TEST_F(WidgetWindowTest, AKeyThatTheViewHandledCancelsNothing) {
  responder->handlesKeys = true;
  show();
  ASSERT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  input.press(XK_Escape);
  EXPECT_TRUE(qt::runUntil([&] { return !responder->keys.empty(); }));
  EXPECT_EQ(responder->cancels, 0);
}

TEST_F(WidgetWindowTest, TheWindowMadeKeyLastHasTheKeyboardAndGivesItBack) {
  const auto other = client.createWindow({.frame = {600, 600, 50, 50}});
  client.sync();
  xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, other, XCB_CURRENT_TIME);
  client.sync();
  ASSERT_EQ(focused(), other);
  show({{0, 0}, {400, 400}});
  auto second = makeWindow({{500, 0}, {400, 400}});
  second->makeKeyAndOrderFront();
  window->makeKey();
  EXPECT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  qt::runPending();
  EXPECT_EQ(focused(), window->windowId());
  second->orderOut();
  EXPECT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  window->orderOut();
  EXPECT_TRUE(qt::runUntil([&] { return focused() == other; }));
}

TEST_F(WidgetWindowTest, TheKeyboardIsNotTakenFromAProgramThatTookItMeanwhile) {
  const auto first = client.createWindow({.frame = {600, 600, 50, 50}});
  const auto second = client.createWindow({.frame = {700, 600, 50, 50}});
  xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, first, XCB_CURRENT_TIME);
  client.sync();
  show();
  ASSERT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, second, XCB_CURRENT_TIME);
  client.sync();
  window->orderOut();
  qt::runPending();
  EXPECT_EQ(focused(), second);
}

TEST_F(WidgetWindowTest, WithAGrabItHasTheKeysThoughTheFocusIsTakenBack) {
  focus = input::KeyboardFocus(input::KeyboardFocus::Manner::byGrabAndFocus);
  const auto other = client.createWindow({.frame = {600, 600, 50, 50}});
  client.sync();
  show();
  ASSERT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, other, XCB_CURRENT_TIME);
  client.sync();
  qt::runPending();
  input.press(XK_Escape);
  EXPECT_TRUE(qt::runUntil([&] { return responder->cancels == 1; }));
  window->orderOut();
  qt::runPending();
  const auto grab = support::waitForReply(
      client.connection(), xcb_grab_keyboard_reply,
      xcb_grab_keyboard(client.connection(), 0, other, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  EXPECT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
}

TEST_F(WidgetWindowTest, TheWindowCoversItsFrameAndNoWindowManagerTouchesIt) {
  const support::WindowManager manager(qt::display());
  show();
  EXPECT_TRUE(qt::runUntil(
      [&] { return client.frame(static_cast<xcb_window_t>(window->windowId())) == xcb::PixelRect{0, 0, 1280, 800}; }));
  ASSERT_TRUE(qt::runUntil([&] { return focused() == window->windowId(); }));
  input.press(XK_Escape);
  EXPECT_TRUE(qt::runUntil([&] { return responder->cancels == 1; }));
  EXPECT_EQ(client.children(client.root()).back(), window->windowId());
}

TEST_F(WidgetWindowTest, ItsRectanglesAreConvertedToTheGlobalSpace) {
  window = makeWindow({{-300, 40}, {200, 200}});
  const auto view = views.makeView({{0, 0}, {200, 200}}, responder);
  window->setContentView(view);
  EXPECT_EQ(view->convertWindowRectToScreen(view->convertToWindow({{10, 20}, {30, 40}})), (Rect{{-290, 60}, {30, 40}}));
}

TEST_F(WidgetWindowTest, TextIsDrawnInsideTheBoxThatWasMeasured) {
  QImage image(300, 100, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::black);
  QPainter painter(&image);
  PainterCanvas canvas(painter, {0, 100});
  const TextStyle style{{15, FontWeight::medium, FontDesign::system}, colors::white};
  const Size size = canvas.measureText("Agjpq", style);
  EXPECT_GT(size.width, 20);
  EXPECT_GE(size.height, 15);
  canvas.drawText("Agjpq", {50, 30}, style);
  painter.end();
  int inside = 0;
  int outside = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      if (qGray(image.pixel(x, y)) < 64) continue;
      const Rect box{{49, 29}, {size.width + 2, size.height + 2}};
      ++(box.contains({x + 0.5, 100 - (y + 0.5)}) ? inside : outside);
    }
  EXPECT_GT(inside, 50);
  EXPECT_EQ(outside, 0);
}

TEST_F(WidgetWindowTest, MonospacedDigitsAreEquallyWide) {
  const QFontMetricsF metrics(toolkit::toQFont({12, FontWeight::semibold, FontDesign::monospacedDigits}));
  for (char digit = '1'; digit <= '9'; ++digit)
    EXPECT_DOUBLE_EQ(metrics.horizontalAdvance(QLatin1Char(digit)), metrics.horizontalAdvance(QLatin1Char('0')));
}
