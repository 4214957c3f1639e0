// Holes in windows of a real X server: what is missing, what is seen, and that everything comes back.
#include "Platform/Linux/Holes/HoleCutter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/composite.h>
#include <xcb/shape.h>

#include "Platform/Linux/Xcb/Replies.h"
#include "Tests/Holes/HolesSupport.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::holes {
namespace {

using support::Picture;
using ::testing::IsEmpty;

constexpr std::uint32_t token = 4711;
constexpr std::uint32_t inkColor = 0xffff00ff;
constexpr std::uint32_t boardColor = 0x204060;
constexpr xcb::PixelRect area{100, 50, 120, 90};

class HoleCutterTest : public ::testing::Test {
 protected:
  HoleCutterTest() {
    client.setBackground(client.root(), boardColor);
    client.sync();
  }

  xcb_window_t makeInk(const xcb::PixelRect& frame = {0, 0, 400, 300}, std::uint32_t border = 0) {
    const xcb_window_t window = client.createWindow({.frame = frame, .color = inkColor, .border = border, .depth = 32});
    client.sync();
    return window;
  }

  auto shape(xcb_window_t window) { return shapeOf(client.connection(), window); }
  std::vector<xcb_rectangle_t> inputShape(xcb_window_t window) {
    xcb_connection_t* c = client.connection();
    const auto reply =
        xcb::awaitReply(c, xcb_shape_get_rectangles_reply, xcb_shape_get_rectangles(c, window, XCB_SHAPE_SK_INPUT));
    const xcb_rectangle_t* first = xcb_shape_get_rectangles_rectangles(reply.get());
    return {first, first + xcb_shape_get_rectangles_rectangles_length(reply.get())};
  }
  bool hasShape(xcb_window_t window, const std::vector<xcb_rectangle_t>& expected) {
    const auto now = shape(window);
    return now && std::ranges::equal(*now, expected, [](const xcb::PixelRect& a, const auto& b) {
             return a == xcb::PixelRect{b.x, b.y, b.width, b.height};
           });
  }

  Hole cut(xcb_window_t window, const PixelSet& areas, const std::optional<Hole>& before = {}, bool clears = true) {
    const auto hole = cutter->cut(before, {.window = window, .areas = areas, .clears = clears});
    if (!hole || !*hole) throw std::runtime_error("No hole was made.");
    EXPECT_TRUE(connection->synchronize(10'000));
    return **hole;
  }
  // What it has left open stays.
  void restart() {
    cutter.reset();
    connection = connectTo(server.display());
  }
  void close(xcb_window_t window, const Hole& hole) {
    if (const auto rest = cutter->mend(window, hole)) cutter->finish(window, *rest);
    EXPECT_TRUE(connection->synchronize(10'000));
  }
  // As a compositor sees it that does not look at shapes.
  xcb_pixmap_t pixelsOf(xcb_window_t window) {
    xcb_composite_redirect_window(client.connection(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    const xcb_pixmap_t pixels = xcb_generate_id(client.connection());
    xcb_composite_name_window_pixmap(client.connection(), window, pixels);
    return pixels;
  }
  std::size_t exposures() {
    client.sync();
    std::size_t count = 0;
    while (const xcb::Event event{xcb_poll_for_event(client.connection())})
      if ((event->response_type & 0x7F) == XCB_EXPOSE) ++count;
    return count;
  }
  std::size_t inkPixels(const xcb::PixelRect& part = {0, 0, 400, 300}) {
    return client.screenshot().count(0xff00ff, part);
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  std::unique_ptr<xcb::Connection> connection = connectTo(server.display());
  std::optional<HoleCutter> cutter{std::in_place, *connection, token};
};

TEST_F(HoleCutterTest, InTheAreaWhatLiesBeneathIsSeenAndOutsideTheInkStays) {
  const auto ink = makeInk();
  (void)cut(ink, {area});
  EXPECT_EQ(client.screenshot(area).count(boardColor), std::size_t{120} * 90);
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - 120 * 90);
}

TEST_F(HoleCutterTest, WhatIsDrawnLaterIsClippedToo) {
  const auto ink = makeInk();
  (void)cut(ink, {area});
  client.fill(ink, {0, 0, 400, 300}, 0xff00ff00);
  client.sync();
  EXPECT_EQ(client.screenshot(area).count(boardColor), std::size_t{120} * 90);
  EXPECT_EQ(client.screenshot().count(0x00ff00), std::size_t{400} * 300 - 120 * 90);
}

TEST_F(HoleCutterTest, AWindowWithoutAShapeHasNoneAgain) {
  const auto ink = makeInk({20, 10, 300, 200}, 4);
  const Picture before = client.screenshot();
  close(ink, cut(ink, {{30, 30, 100, 100}}));
  EXPECT_FALSE(shape(ink));
  EXPECT_EQ(client.screenshot(), before);
  EXPECT_THAT(client.numbers(ink, holeProperty), IsEmpty());
}

TEST_F(HoleCutterTest, AShapedWindowGetsBackTheRectanglesThatItHad) {
  const auto ink = makeInk();
  const std::vector<xcb_rectangle_t> strokes{{5, 5, 200, 3}, {90, 40, 5, 200}, {150, 60, 30, 30}};
  client.setBoundingShape(ink, strokes);
  client.sync();
  const auto own = shape(ink);
  ASSERT_TRUE(own);
  const Hole hole = cut(ink, {area});
  EXPECT_EQ(inkPixels(area), 0U);
  EXPECT_GT(inkPixels(), 0U);
  close(ink, hole);
  EXPECT_EQ(shape(ink), own);
}

TEST_F(HoleCutterTest, AnEmptyShapeComesBackEmpty) {
  const auto ink = makeInk();
  client.setBoundingShape(ink, {});
  client.sync();
  close(ink, cut(ink, {area}));
  EXPECT_TRUE(hasShape(ink, {}));
}

TEST_F(HoleCutterTest, InputShapesAreLeftAlone) {
  const auto ink = makeInk();
  const std::vector<xcb_rectangle_t> input{{50, 50, 100, 10}};
  client.setInputShape(ink, input);
  client.sync();
  const Hole hole = cut(ink, {area});
  ASSERT_EQ(inputShape(ink).size(), 1U);
  close(ink, hole);
  const auto after = inputShape(ink);
  ASSERT_EQ(after.size(), 1U);
  EXPECT_EQ(after[0].x, 50);
  EXPECT_EQ(after[0].width, 100);
}

TEST_F(HoleCutterTest, AnotherAreaTakesThePlaceOfTheFirst) {
  const auto ink = makeInk();
  const Hole first = cut(ink, {area});
  const Hole second = cut(ink, {{0, 0, 50, 50}}, first);
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - 50 * 50);
  EXPECT_EQ(second.own, std::nullopt);
  close(ink, second);
  EXPECT_FALSE(shape(ink));
}

TEST_F(HoleCutterTest, AShapeThatTheOwnerSetsMeanwhileIsTheOneThatComesBack) {
  const auto ink = makeInk();
  const Hole first = cut(ink, {area});
  const std::vector<xcb_rectangle_t> stroke{{0, 80, 400, 10}};
  client.setBoundingShape(ink, stroke);
  client.sync();
  EXPECT_GT(inkPixels(area), 0U);
  const Hole second = cut(ink, {area}, first);
  EXPECT_EQ(inkPixels(area), 0U);
  EXPECT_EQ(inkPixels(), std::size_t{400 - 120} * 10);
  close(ink, second);
  EXPECT_TRUE(hasShape(ink, stroke));
}

TEST_F(HoleCutterTest, ALookAtAWindowThatItsOwnerHasNotReshapedChangesNothing) {
  const auto ink = makeInk();
  const HoleBook::Step look{.window = ink, .areas = {area}, .clears = true, .isForReshaped = true};
  const Hole first = cut(ink, {area});
  xcb_shape_select_input(client.connection(), ink, 1);
  client.sync();
  const auto second = cutter->cut(first, look);
  ASSERT_TRUE(second.has_value());
  EXPECT_EQ(*second, first);
  client.sync();
  EXPECT_EQ(xcb::Event(xcb_poll_for_event(client.connection())), nullptr);
}

TEST_F(HoleCutterTest, AShapeThatTheOwnerSetLastIsNotUndone) {
  const auto ink = makeInk();
  const Hole hole = cut(ink, {area});
  const std::vector<xcb_rectangle_t> stroke{{0, 80, 400, 10}};
  client.setBoundingShape(ink, stroke);
  client.sync();
  close(ink, hole);
  EXPECT_TRUE(hasShape(ink, stroke));
  EXPECT_THAT(client.numbers(ink, holeProperty), IsEmpty());
}

TEST_F(HoleCutterTest, AWindowThatGrowsIsSeenAllButTheArea) {
  const auto ink = makeInk({0, 0, 150, 100});
  const Hole hole = cut(ink, {area});
  client.setFrame(ink, {0, 0, 400, 300});
  client.sync();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - 120 * 90);
  close(ink, hole);
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
  EXPECT_FALSE(shape(ink));
}

TEST_F(HoleCutterTest, AnAreaLargerThanTheWindowTakesAllOfItAway) {
  const auto ink = makeInk({50, 50, 100, 100}, 2);
  const Hole hole = cut(ink, {{-1000, -1000, 5000, 5000}});
  EXPECT_EQ(client.screenshot().count(boardColor), std::size_t{400} * 300);
  close(ink, hole);
  EXPECT_EQ(inkPixels(), std::size_t{100} * 100);
}

TEST_F(HoleCutterTest, AWindowOnlyHeldBackKeepsWhatWasDrawnInIt) {
  const auto ink = client.createWindow({.frame = {0, 0, 400, 300}, .color = 0, .depth = 32});
  client.sync();
  const xcb_pixmap_t pixels = pixelsOf(ink);
  client.fill(ink, {0, 0, 400, 300}, inkColor);
  client.sync();
  const Hole hole = cut(ink, {area}, {}, false);
  EXPECT_EQ(client.contents(pixels, {0, 0, 400, 300}).count(0xff00ff), std::size_t{400} * 300);
  (void)cut(ink, {area}, hole, true);
  EXPECT_EQ(client.contents(pixels, {0, 0, 400, 300}).count(0xff00ff), std::size_t{400} * 300 - 120 * 90)
      << "not every compositor looks at shapes";
}

TEST_F(HoleCutterTest, ItsProgramIsNotAskedToDrawWhereTheInkIsTakenAway) {
  const auto ink = makeInk();
  client.selectInput(ink, XCB_EVENT_MASK_EXPOSURE);
  const Hole heldBack = cut(ink, {area}, {}, false);
  const Hole judged = cut(ink, {area}, heldBack);
  (void)cut(ink, {area, {250, 200, 50, 50}}, judged);
  EXPECT_EQ(exposures(), 0U) << "Xwayland may let it draw before the hole is there";
}

TEST_F(HoleCutterTest, UnderAPatchItsProgramCanDrawNothing) {
  const auto ink = makeInk();
  const xcb_pixmap_t pixels = pixelsOf(ink);
  const auto drawn = [&] {
    client.fill(ink, {0, 0, 400, 300}, inkColor);
    client.sync();
    return client.contents(pixels, {0, 0, 400, 300}).count(0xff00ff);
  };
  ASSERT_EQ(drawn(), std::size_t{400} * 300);
  {
    const Patch patch(*connection, ink, {0, 0, 400, 300}, {area});
    ASSERT_TRUE(connection->synchronize(10'000));
    EXPECT_EQ(drawn(), std::size_t{400} * 300 - 120 * 90);
  }
  ASSERT_TRUE(connection->synchronize(10'000));
  EXPECT_EQ(drawn(), std::size_t{400} * 300);
}

TEST_F(HoleCutterTest, AWindowThatIsGoneIsPassedOver) {
  const auto ink = makeInk();
  const Hole hole = cut(ink, {area});
  client.destroy(ink);
  client.sync();
  const auto again = cutter->cut(hole, {.window = ink, .areas = {area}, .clears = true});
  ASSERT_TRUE(again.has_value());
  EXPECT_FALSE(*again);
  EXPECT_FALSE(cutter->mend(ink, hole));
  cutter->finish(ink, hole);
  EXPECT_TRUE(connection->synchronize(10'000));
}

TEST_F(HoleCutterTest, WhatAProcessLeavesBehindIsClosedByAnother) {
  const auto ink = makeInk();
  const auto shaped = makeInk({0, 150, 400, 100});
  const std::vector<xcb_rectangle_t> strokes{{5, 5, 200, 3}, {90, 40, 5, 60}};
  client.setBoundingShape(shaped, strokes);
  client.sync();
  const Picture before = client.screenshot();
  (void)cut(ink, {area});
  (void)cut(shaped, {{50, 0, 100, 100}});
  ASSERT_NE(client.screenshot(), before);
  restart();
  closeLeftHoles(*connection, token + 1);
  ASSERT_NE(client.screenshot(), before) << "the holes of another process are left alone";
  closeLeftHoles(*connection, token);
  ASSERT_TRUE(connection->synchronize(10'000));
  EXPECT_EQ(client.screenshot(), before);
  EXPECT_FALSE(shape(ink));
  EXPECT_TRUE(hasShape(shaped, strokes));
  EXPECT_THAT(holedWindows(*connection), IsEmpty());
}

TEST_F(HoleCutterTest, WhatWasHalfClosedWhenItsProcessDiedIsClosed) {
  const auto ink = makeInk();
  const auto rest = cutter->mend(ink, cut(ink, {area}));
  ASSERT_TRUE(rest);
  ASSERT_TRUE(shape(ink)) << "a compositor overlooks the step from a shape to none";
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
  restart();
  closeLeftHoles(*connection, std::nullopt);
  ASSERT_TRUE(connection->synchronize(10'000));
  EXPECT_FALSE(shape(ink));
}

TEST_F(HoleCutterTest, WhatWasHalfMadeWhenItsProcessDiedIsUndone) {
  const auto written = makeInk({0, 0, 400, 120});
  const auto cleared = makeInk({0, 150, 400, 120});
  client.sync();
  const Picture before = client.screenshot();
  for (const auto ink : {written, cleared}) {
    const auto values = holes::written({.own = std::nullopt, .areas = {area}}, token);
    client.setNumbers(ink, holeProperty, "CARDINAL", {values.begin(), values.end()});
    client.fill(ink, {area.x, area.y, area.width, area.height}, 0);
  }
  // A shaped window is whole while it is cleared.
  const std::vector<xcb_rectangle_t> whole{xcb::toRectangle(largestShape)};
  client.setBoundingShape(cleared, whole);
  client.sync();
  ASSERT_NE(client.screenshot(), before);
  closeLeftHoles(*connection, token);
  EXPECT_EQ(client.screenshot(), before) << "their owners were not asked to draw again";
  EXPECT_FALSE(shape(written));
  EXPECT_FALSE(shape(cleared));
  EXPECT_THAT(holedWindows(*connection), IsEmpty());
}

TEST_F(HoleCutterTest, NonsenseWhereAHoleWouldBeWrittenIsLeftAlone) {
  const auto ink = makeInk();
  client.setNumbers(ink, holeProperty, "CARDINAL", {1, 2, 3, 0xFFFFFFF});
  client.sync();
  closeLeftHoles(*connection, std::nullopt);
  EXPECT_TRUE(connection->synchronize(10'000));
  EXPECT_FALSE(shape(ink));
}

}  // namespace
}  // namespace platform::linux::holes
