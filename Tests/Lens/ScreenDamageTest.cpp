// What a program behind a lens is told about the screen's damage matches what it would see there.

#include <gtest/gtest.h>
#include <xcb/damage.h>
#include <xcb/randr.h>

#include <array>
#include <memory>
#include <optional>

#include "Platform/Linux/Scene/ProductMark.h"
#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Xcb/Region.h"
#include "Tests/Lens/OpenLens.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

using std::chrono::milliseconds;
using support::PixelRect;
using support::waitForReply;
using support::XClient;

constexpr PixelRect everywhere{0, 0, 1280, 800};

bool contains(const PixelRect& outer, const PixelRect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y && outer.right() >= inner.right() && outer.bottom() >= inner.bottom();
}

// A program that reads the screen only where and when it is told of a change.
class DamageReader {
 public:
  explicit DamageReader(XClient& client) : client_(client), damage_(xcb_generate_id(client.connection())) {
    xcb_connection_t* c = client.connection();
    (void)waitForReply(c, xcb_damage_query_version_reply, xcb_damage_query_version(c, 1, 1));
    firstEvent_ = xcb_get_extension_data(c, &xcb_damage_id)->first_event;
    xcb_damage_create(c, damage_, client.root(), XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    client.sync();
  }

  // The next report, within the deadline; those of the same moment come one by one.
  std::optional<PixelRect> next(milliseconds deadline = support::defaultDeadline) {
    std::optional<PixelRect> part;
    (void)support::waitUntil(
        [&] {
          while (const support::Reply<xcb_generic_event_t> event{xcb_poll_for_event(client_.connection())}) {
            if ((event->response_type & 0x7f) != firstEvent_) continue;
            const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
            EXPECT_EQ(notify.drawable, client_.root());
            EXPECT_EQ(notify.damage, damage_);
            EXPECT_EQ(notify.geometry.width, expectedWidth);
            EXPECT_EQ(notify.geometry.height, expectedHeight);
            part = {notify.area.x, notify.area.y, notify.area.width, notify.area.height};
            return true;
          }
          return false;
        },
        deadline);
    if (part) xcb_damage_subtract(client_.connection(), damage_, XCB_NONE, XCB_NONE);
    client_.sync();
    return part;
  }
  // Whether all of the part is told of in one report.
  bool isTold(const PixelRect& part) {
    while (const auto report = next()) {
      if (contains(*report, part)) return true;
    }
    return false;
  }
  // When this returns, no report is on its way.
  void settle() {
    while (next(milliseconds(200))) {
    }
  }
  void stop() {
    xcb_damage_destroy(client_.connection(), damage_);
    client_.sync();
  }

  std::uint16_t expectedWidth = screen.width;
  std::uint16_t expectedHeight = screen.height;

 private:
  XClient& client_;
  xcb_damage_damage_t damage_;
  std::uint8_t firstEvent_ = 0;
};

class ScreenDamage : public testing::Test {
 protected:
  ScreenDamage() {
    board_ = client_.createWindow({.frame = screen});
    client_.setBackgroundChecks(board_, 20, 0x20507a, 0xe8e0d0);
    client_.sync();
  }

  // For example a solid cover, of another process of the product.
  void showMirror() {
    platform::linux::scene::redirectSubwindows(*product_);
    mark_.emplace(*product_, std::array{product_->resourceBase()});
    window_ = product_->newId();
    const std::array<std::uint32_t, 2> values{0x123456, 1};
    xcb_create_window(product_->get(), XCB_COPY_FROM_PARENT, window_, product_->root(), mirror.x, mirror.y,
                      mirror.width, mirror.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(product_->get(), window_);
    ASSERT_TRUE(product_->synchronize(10'000));
  }

  support::XServer server_;
  XClient client_{server_.display()};
  xcb_window_t board_ = XCB_NONE;
  std::unique_ptr<platform::linux::xcb::Connection> product_ = platform::linux::connectTo(server_.display());
  std::optional<platform::linux::scene::ProductMark> mark_;
  xcb_window_t window_ = XCB_NONE;
};

TEST_F(ScreenDamage, BeginsWithTheWholeScreenAsWithoutALens) {
  EXPECT_EQ(DamageReader(client_).next(), everywhere);
  const OpenLens open(server_.display());
  const auto program = open.connect();
  EXPECT_EQ(DamageReader(*program).next(), everywhere);
}

TEST_F(ScreenDamage, BeneathTheCoverIsReportedEachTimeAndThenSeen) {
  showMirror();
  const OpenLens open(server_.display());
  const auto program = open.connect();
  DamageReader reader(*program);
  reader.settle();
  for (const std::uint32_t color : {0xff0000U, 0x00ff00U, 0x0000ffU, 0xffff00U, 0x00ffffU}) {
    const PixelRect part{300, 200, 40, 30};
    client_.fill(board_, part, 0xff000000 | color);
    client_.sync();
    ASSERT_TRUE(reader.isTold(part));
    EXPECT_EQ(program->screenshot().count(color, part), std::size_t{40} * 30);
    reader.settle();
  }
}

TEST_F(ScreenDamage, OfTheCoverItselfIsNotReported) {
  showMirror();
  const OpenLens open(server_.display());
  const auto program = open.connect();
  DamageReader reader(*program);
  reader.settle();
  const auto everything = platform::linux::xcb::toRectangle({0, 0, mirror.width, mirror.height});
  const xcb_gcontext_t context = product_->newId();
  xcb_create_gc(product_->get(), context, window_, 0, nullptr);
  xcb_poly_fill_rectangle(product_->get(), window_, context, 1, &everything);
  ASSERT_TRUE(product_->synchronize(10'000));
  EXPECT_EQ(reader.next(milliseconds(300)), std::nullopt);
}

TEST_F(ScreenDamage, OfInkIsNotReportedInACleanViewOnlyOfWhatItHid) {
  const OpenLens open(server_.display(), "clean");
  const auto program = open.connect();
  DamageReader reader(*program);
  const auto ink = client_.createWindow({.frame = screen, .color = 0, .depth = 32, .mapped = false});
  client_.setInputShape(ink, {});
  client_.map(ink);
  client_.sync();
  reader.settle();
  client_.fill(ink, {300, 200, 40, 30}, 0xffff00ff);
  client_.sync();
  EXPECT_EQ(reader.next(milliseconds(300)), std::nullopt);
  client_.fill(board_, {300, 200, 40, 30}, 0xff00ff00);
  client_.sync();
  EXPECT_TRUE(reader.isTold({300, 200, 40, 30}));
  EXPECT_EQ(program->screenshot().count(0x00ff00), std::size_t{40} * 30);
}

TEST_F(ScreenDamage, IsAllOfTheScreenWhenTheServerHidesItAndAgainWhenItShowsIt) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  DamageReader reader(*program);
  reader.settle();
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client_.sync();
  EXPECT_TRUE(reader.isTold(everywhere));
  EXPECT_EQ(program->screenshot().count(0), std::size_t{1280} * 800);
  reader.settle();
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_RESET);
  client_.sync();
  EXPECT_TRUE(reader.isTold(everywhere));
}

TEST_F(ScreenDamage, FollowingItKeepsTheNumbersOfRequests) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const xcb_window_t own = program->createWindow({.frame = {0, 0, 50, 50}});
  for (int i = 0; i < 50; ++i) {
    DamageReader reader(*program);
    program->setText(own, "NOTE", "STRING", std::to_string(i));
    const auto failing = xcb_unmap_window_checked(program->connection(), 0x7fffffff);
    const support::Reply<xcb_generic_error_t> error(xcb_request_check(program->connection(), failing));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->full_sequence, failing.sequence);
    EXPECT_EQ(program->text(own, "NOTE"), std::to_string(i));
    EXPECT_EQ(program->screenshot({0, 0, 4, 4}).width(), 4);
    reader.stop();
  }
  EXPECT_TRUE(program->isConnected());
}

TEST_F(ScreenDamage, OfOtherDrawablesIsAsWithoutALens) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  xcb_connection_t* c = program->connection();
  (void)waitForReply(c, xcb_damage_query_version_reply, xcb_damage_query_version(c, 1, 1));
  const xcb_window_t own = program->createWindow({.frame = {0, 0, 50, 50}});
  const xcb_damage_damage_t damage = xcb_generate_id(c);
  xcb_damage_create(c, damage, own, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
  program->sync();
  const std::uint8_t first = xcb_get_extension_data(c, &xcb_damage_id)->first_event;
  std::optional<xcb_damage_notify_event_t> notify;
  ASSERT_TRUE(support::waitUntil([&] {
    const support::Reply<xcb_generic_event_t> event{xcb_poll_for_event(c)};
    if (event && (event->response_type & 0x7f) == first)
      notify = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
    return notify.has_value();
  }));
  EXPECT_EQ(notify->drawable, own);
  EXPECT_EQ(notify->geometry.width, 50);
}

}  // namespace
}  // namespace lens
