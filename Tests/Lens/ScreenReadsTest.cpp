// Behind a lens, every way to read the screen gives the picture without the windows that are to be left out.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xcb/composite.h>
#include <xcb/render.h>
#include <xcb/shm.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>

#include "Platform/Linux/Scene/ProductMark.h"
#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Lens/OpenLens.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

using support::Picture;
using support::PixelRect;
using support::waitForReply;
using support::XClient;

constexpr std::uint32_t mirrorColor = 0x123456;

// The content of a pixmap of the client's own.
Picture readPixmap(XClient& client, const std::function<void(xcb_pixmap_t)>& draw) {
  xcb_connection_t* c = client.connection();
  const xcb_pixmap_t pixmap = xcb_generate_id(c);
  xcb_create_pixmap(c, 24, pixmap, client.root(), screen.width, screen.height);
  draw(pixmap);
  Picture picture = client.contents(pixmap, screen);
  xcb_free_pixmap(c, pixmap);
  return picture;
}

xcb_gcontext_t makeContext(XClient& client) {
  const xcb_gcontext_t context = xcb_generate_id(client.connection());
  const std::uint32_t includeInferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  xcb_create_gc(client.connection(), context, client.root(), XCB_GC_SUBWINDOW_MODE, &includeInferiors);
  return context;
}

Picture byCopyArea(XClient& client, xcb_drawable_t drawable) {
  return readPixmap(client, [&](xcb_pixmap_t pixmap) {
    xcb_copy_area(client.connection(), drawable, pixmap, makeContext(client), 0, 0, 0, 0, screen.width, screen.height);
  });
}

Picture byCopyPlane(XClient& client, xcb_drawable_t drawable) {
  return readPixmap(client, [&](xcb_pixmap_t pixmap) {
    const xcb_gcontext_t context = makeContext(client);
    const std::array<std::uint32_t, 2> colors{0xffffff, 0};
    xcb_change_gc(client.connection(), context, XCB_GC_FOREGROUND | XCB_GC_BACKGROUND, colors.data());
    xcb_copy_plane(client.connection(), drawable, pixmap, context, 0, 0, 0, 0, screen.width, screen.height, 1U << 4U);
  });
}

xcb_render_pictformat_t formatOfDepth24(XClient& client) {
  const auto formats = waitForReply(client.connection(), xcb_render_query_pict_formats_reply,
                                    xcb_render_query_pict_formats(client.connection()));
  for (auto each = xcb_render_query_pict_formats_formats_iterator(formats.get()); each.rem > 0;
       xcb_render_pictforminfo_next(&each)) {
    if (each.data->depth == 24 && each.data->direct.red_shift == 16 && each.data->direct.red_mask == 0xff) {
      return each.data->id;
    }
  }
  return 0;
}

Picture byRender(XClient& client, xcb_drawable_t drawable) {
  xcb_connection_t* c = client.connection();
  const auto format = formatOfDepth24(client);
  const xcb_render_picture_t source = xcb_generate_id(c);
  const std::uint32_t includeInferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  xcb_render_create_picture(c, source, drawable, format, XCB_RENDER_CP_SUBWINDOW_MODE, &includeInferiors);
  Picture picture = readPixmap(client, [&](xcb_pixmap_t pixmap) {
    const xcb_render_picture_t target = xcb_generate_id(c);
    xcb_render_create_picture(c, target, pixmap, format, 0, nullptr);
    xcb_render_composite(c, XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, target, 0, 0, 0, 0, 0, 0, screen.width,
                         screen.height);
    xcb_render_free_picture(c, target);
  });
  xcb_render_free_picture(c, source);
  return picture;
}

// Attached by a descriptor, which has to come through.
Picture bySharedMemory(XClient& client, xcb_drawable_t drawable) {
  xcb_connection_t* c = client.connection();
  (void)waitForReply(c, xcb_shm_query_version_reply, xcb_shm_query_version(c));
  const std::size_t size = std::size_t{4} * screen.width * screen.height;
  const int memory = ::memfd_create("picture", MFD_CLOEXEC);
  EXPECT_EQ(::ftruncate(memory, static_cast<off_t>(size)), 0);
  void* mapped = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
  const xcb_shm_seg_t segment = xcb_generate_id(c);
  xcb_shm_attach_fd(c, segment, memory, 0);
  const auto reply = waitForReply(
      c, xcb_shm_get_image_reply,
      xcb_shm_get_image(c, drawable, 0, 0, screen.width, screen.height, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0));
  EXPECT_TRUE(reply);
  std::vector<std::uint32_t> pixels(size / 4);
  std::memcpy(pixels.data(), mapped, size);
  for (std::uint32_t& pixel : pixels) pixel &= 0xffffffU;
  ::munmap(mapped, size);
  return {screen.width, screen.height, std::move(pixels)};
}

Picture byGetImage(XClient& client, xcb_drawable_t drawable) { return client.contents(drawable, screen); }

using Reading = Picture (*)(XClient&, xcb_drawable_t);
const std::map<std::string, Reading> readings{{"GetImage", byGetImage},
                                              {"CopyArea", byCopyArea},
                                              {"CopyPlane", byCopyPlane},
                                              {"Render", byRender},
                                              {"SharedMemory", bySharedMemory}};

class ScreenReads : public testing::Test {
 protected:
  ScreenReads() {
    board_ = client_.createWindow({.frame = screen});
    client_.setBackgroundChecks(board_, 20, 0x20507a, 0xe8e0d0);
    client_.createWindow({.frame = {300, 200, 200, 100}, .color = 0xffaa3311, .border = 4});
    client_.sync();
  }

  // What another process of the product would show there; that process keeps what lies beneath off-screen.
  void showMirror() {
    platform::linux::scene::redirectSubwindows(*product_);
    mark_.emplace(*product_, std::array{product_->resourceBase()});
    window_ = product_->newId();
    const std::array<std::uint32_t, 2> values{mirrorColor, 1};
    xcb_create_window(product_->get(), XCB_COPY_FROM_PARENT, window_, product_->root(), mirror.x, mirror.y,
                      mirror.width, mirror.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(product_->get(), window_);
    ASSERT_TRUE(product_->synchronize(10'000));
    // A compositing manager takes its time.
    ASSERT_TRUE(support::waitUntil([&] { return client_.screenshot().count(mirrorColor) == std::size_t{400} * 300; }));
  }

  // Off-screen, whatever lies above it.
  bool isKept(xcb_window_t window) {
    xcb_connection_t* c = client_.connection();
    const xcb_void_cookie_t named = xcb_composite_name_window_pixmap_checked(c, window, xcb_generate_id(c));
    const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(xcb_request_check(c, named), &std::free);
    return error == nullptr;
  }

  support::XServer server_;
  XClient client_{server_.display()};
  xcb_window_t board_ = XCB_NONE;
  std::unique_ptr<platform::linux::xcb::Connection> product_ = platform::linux::connectTo(server_.display());
  std::optional<platform::linux::scene::ProductMark> mark_;
  xcb_window_t window_ = XCB_NONE;
};

class EveryReading : public ScreenReads, public testing::WithParamInterface<std::string> {
 protected:
  Picture read(XClient& client) { return readings.at(GetParam())(client, client.root()); }
};

TEST_P(EveryReading, GivesTheScreenAsItIsWhereThereIsNothingToLeaveOut) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  EXPECT_EQ(read(*program), read(client_));
}

TEST_P(EveryReading, GivesWhatLiesBeneathTheMirror) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const Picture truth = read(client_);
  showMirror();
  EXPECT_EQ(read(*program), truth);
  EXPECT_NE(read(client_), truth);
  xcb_unmap_window(product_->get(), window_);
  ASSERT_TRUE(product_->synchronize(10'000));
  EXPECT_EQ(read(*program), truth);
}

TEST_P(EveryReading, IsAsFreshAsItWouldBeWithoutTheLens) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  showMirror();
  const xcb_window_t own = program->createWindow({.frame = {250, 200, 60, 60}, .color = 0xff000000});
  const xcb_window_t foreign = client_.createWindow({.frame = {400, 300, 60, 60}, .color = 0xff000000});
  for (const std::uint32_t color : {0xff0000U, 0x00ff00U, 0x0000ffU, 0x10f0f0U}) {
    // The others have finished drawing; the program itself has only just sent its request.
    client_.fill(foreign, {0, 0, 60, 60}, 0xff000000 | color);
    client_.sync();
    program->fill(own, {0, 0, 60, 60}, 0xff000000 | color);
    const Picture seen = read(*program);
    const std::uint32_t expected = GetParam() != "CopyPlane" ? color : (color & 0x10U) != 0 ? 0xffffff : 0;
    EXPECT_EQ(seen.count(expected, {250, 200, 60, 60}), 3600U);
    EXPECT_EQ(seen.count(expected, {400, 300, 60, 60}), 3600U);
  }
}

INSTANTIATE_TEST_SUITE_P(Requests, EveryReading,
                         testing::Values("GetImage", "CopyArea", "CopyPlane", "Render", "SharedMemory"),
                         [](const auto& reading) { return reading.param; });

TEST_F(ScreenReads, UntilAProgramReadsOnlyALensThatLeavesOutOthersKeepsWindows) {
  {
    const OpenLens open(server_.display());
    const auto program = open.connect();
    EXPECT_FALSE(isKept(board_)) << "drawing would be dearer for all";
    (void)byGetImage(*program, program->root());
    EXPECT_TRUE(isKept(board_));
  }
  EXPECT_TRUE(support::waitUntil([&] { return !isKept(board_); })) << "the lens has ended";
  const OpenLens open(server_.display(), "clean");
  EXPECT_TRUE(isKept(board_)) << "what an overlay hides now could not be had later";
}

TEST_F(ScreenReads, TheOverlayWindowOfACompositingManagerIsTheScreenToo) {
  const support::CompositingManager manager(server_.display());
  const OpenLens open(server_.display());
  const auto program = open.connect();
  showMirror();
  const auto overlay = waitForReply(program->connection(), xcb_composite_get_overlay_window_reply,
                                    xcb_composite_get_overlay_window(program->connection(), program->root()));
  ASSERT_TRUE(overlay);
  for (const auto& [name, reading] : readings) {
    const Picture seen = reading(*program, overlay->overlay_win);
    EXPECT_EQ(seen, reading(*program, program->root())) << name;
    EXPECT_EQ(seen.count(mirrorColor), 0U) << name;
  }
}

TEST_F(ScreenReads, UnderACompositingManagerThePictureIsTheScreens) {
  const support::CompositingManager manager(server_.display());
  const OpenLens open(server_.display());
  const auto program = open.connect();
  ASSERT_TRUE(support::waitUntil([&] { return client_.screenshot() == program->screenshot(); }));
  const Picture truth = client_.screenshot();
  showMirror();
  // picom draws no shadow in these tests: nothing differs.
  EXPECT_EQ(program->screenshot().differences(truth), 0U);
}

// Screen lockers take the overlay window, and what lies beneath must then not be seen.
TEST_F(ScreenReads, NothingIsSeenWhileTheServerItselfHidesTheScreen) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const Picture before = program->screenshot();
  ASSERT_LT(before.count(0), std::size_t{10'000});
  {
    XClient locker(server_.display());
    ASSERT_TRUE(waitForReply(locker.connection(), xcb_composite_get_overlay_window_reply,
                             xcb_composite_get_overlay_window(locker.connection(), locker.root())));
    EXPECT_EQ(program->screenshot().count(0), std::size_t{1280} * 800);
  }
  EXPECT_TRUE(support::waitUntil([&] { return program->screenshot() == before; }));

  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client_.sync();
  EXPECT_EQ(program->screenshot().count(0), std::size_t{1280} * 800);
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_RESET);
  client_.sync();
  EXPECT_EQ(program->screenshot(), before);
}

TEST_F(ScreenReads, ALensThatStartsWhileTheServerItselfHidesTheScreenShowsNothingEither) {
  const Picture before = client_.screenshot();
  std::optional<XClient> locker(server_.display());
  ASSERT_TRUE(waitForReply(locker->connection(), xcb_composite_get_overlay_window_reply,
                           xcb_composite_get_overlay_window(locker->connection(), locker->root())));
  for (const std::string view : {"unmirrored", "clean"}) {
    const OpenLens open(server_.display(), view);
    EXPECT_EQ(open.connect()->screenshot().count(0), std::size_t{1280} * 800) << view;
  }
  const OpenLens open(server_.display());
  const auto program = open.connect();
  EXPECT_EQ(program->screenshot().count(0), std::size_t{1280} * 800);
  locker.reset();
  EXPECT_TRUE(support::waitUntil([&] { return program->screenshot() == before; }));

  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client_.sync();
  const OpenLens another(server_.display());
  const auto other = another.connect();
  EXPECT_EQ(other->screenshot().count(0), std::size_t{1280} * 800);
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_RESET);
  client_.sync();
  EXPECT_EQ(other->screenshot(), before);
}

TEST_F(ScreenReads, ImagesOfEverySizeArriveComplete) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const Picture truth = client_.screenshot();
  for (int height = 20; height <= screen.height; height += 13) {
    const PixelRect part{0, 0, screen.width, height};
    const Picture read = program->screenshot(part);
    ASSERT_EQ(read.width(), part.width);
    ASSERT_EQ(read.height(), height);
    EXPECT_EQ(read.at(5, height - 1), truth.at(5, height - 1));
  }
}

TEST_F(ScreenReads, AReadKeepsTheNumbersOfLaterRequests) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const xcb_window_t own = program->createWindow({.frame = {0, 0, 50, 50}});
  program->selectInput(own, XCB_EVENT_MASK_PROPERTY_CHANGE);
  for (int i = 0; i < 300; ++i) {
    // A request that the server has yet to carry out, then the read, then one that fails and is noticed.
    program->setText(own, "NOTE", "STRING", std::to_string(i));
    EXPECT_EQ(program->screenshot({0, 0, 4, 4}).width(), 4);
    const auto failing = xcb_unmap_window_checked(program->connection(), 0x7fffffff);
    const support::Reply<xcb_generic_error_t> error(xcb_request_check(program->connection(), failing));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->full_sequence, failing.sequence);
    EXPECT_EQ(program->text(own, "NOTE"), std::to_string(i));
  }
  EXPECT_TRUE(program->isConnected());
}

TEST_F(ScreenReads, AReadThatTheServerRefusesIsRefused) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  xcb_generic_error_t* error = nullptr;
  const support::Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
      program->connection(),
      xcb_get_image(program->connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, program->root(), 1270, 0, 100, 10, ~0U), &error));
  const support::Reply<xcb_generic_error_t> owned(error);
  EXPECT_FALSE(reply);
  ASSERT_TRUE(error != nullptr);
  EXPECT_EQ(error->error_code, XCB_MATCH);
  EXPECT_EQ(program->screenshot(), client_.screenshot());
}

TEST_F(ScreenReads, AnImageOfTheScreenNamesTheScreensVisual) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  const auto visual = [](XClient& client) {
    const auto reply =
        waitForReply(client.connection(), xcb_get_image_reply,
                     xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(), 0, 0, 8, 8, ~0U));
    return reply ? reply->visual : 0U;
  };
  EXPECT_NE(visual(client_), 0U);
  EXPECT_EQ(visual(*program), visual(client_));
}

TEST_F(ScreenReads, WhoDrawsToAPictureOfTheScreenDrawsToTheScreen) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  xcb_connection_t* c = program->connection();
  const xcb_render_picture_t picture = xcb_generate_id(c);
  const std::uint32_t includeInferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  xcb_render_create_picture(c, picture, program->root(), formatOfDepth24(*program), XCB_RENDER_CP_SUBWINDOW_MODE,
                            &includeInferiors);
  const xcb_rectangle_t part{10, 10, 30, 20};
  xcb_render_fill_rectangles(c, XCB_RENDER_PICT_OP_SRC, picture, {0xffff, 0, 0, 0xffff}, 1, &part);
  program->sync();
  EXPECT_EQ(client_.screenshot().count(0xff0000), 600U);
}

}  // namespace
}  // namespace lens
