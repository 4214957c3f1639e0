// Which windows are kept off-screen: only those have pixels that can be named.
#include "Platform/Linux/Scene/Redirection.h"

#include <gtest/gtest.h>
#include <xcb/composite.h>

#include "Platform/Linux/Scene/Scene.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::scene {
namespace {

class RedirectionTest : public ::testing::Test {
 protected:
  void redirect() {
    scene.emplace(*connection);
    redirection.emplace(*connection, scene->windows(),
                        std::vector<std::uint32_t>{xcb_get_setup(own.connection())->resource_id_base});
    takeIn();
  }

  void takeIn() {
    ASSERT_TRUE(connection->synchronize(10'000));
    while (const xcb::Event event = connection->nextEvent()) redirection->handle(*event);
    ASSERT_TRUE(connection->synchronize(10'000));
  }

  bool isRedirected(xcb_window_t window) {
    xcb_connection_t* c = connection->get();
    const xcb::Reply<xcb_generic_error_t> refused(
        xcb_request_check(c, xcb_composite_name_window_pixmap_checked(c, window, connection->newId())));
    return refused == nullptr;
  }

  xcb_window_t make(support::XClient& owner) {
    const auto window = owner.createWindow({.frame = {10, 10, 50, 50}});
    owner.sync();
    return window;
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  support::XClient own{server.display()};
  std::unique_ptr<xcb::Connection> connection = connectTo(server.display());
  std::optional<Scene> scene;
  std::optional<Redirection> redirection;
};

TEST_F(RedirectionTest, WindowsThatAreThereAndWindowsToComeAreKeptOffScreenButNotOurOwn) {
  const auto early = make(client);
  const auto ownEarly = make(own);
  redirect();
  EXPECT_TRUE(isRedirected(early));
  EXPECT_FALSE(isRedirected(ownEarly));
  const auto late = make(client);
  const auto ownLate = make(own);
  takeIn();
  EXPECT_TRUE(isRedirected(late));
  EXPECT_FALSE(isRedirected(ownLate));
}

TEST_F(RedirectionTest, InsideAFrameItIsTheFrameThatIsKeptOffScreen) {
  const auto window = make(client);
  redirect();
  support::XClient manager(server.display());
  const auto frame = make(manager);
  xcb_reparent_window(manager.connection(), window, frame, 5, 5);
  manager.sync();
  takeIn();
  EXPECT_TRUE(isRedirected(frame));
  EXPECT_FALSE(isRedirected(window));
  xcb_reparent_window(manager.connection(), window, manager.root(), 5, 5);
  manager.sync();
  takeIn();
  EXPECT_TRUE(isRedirected(window));
}

TEST_F(RedirectionTest, DrawingInAHiddenWindowIsKeptEvenIfItWasHiddenFirst) {
  redirect();
  // Over everything, like a cover.
  own.createWindow({.frame = {0, 0, 400, 300}, .color = 0xff808080});
  own.sync();
  const auto window = client.createWindow({.frame = {10, 10, 50, 50}, .color = 0xff00aa00});
  client.lower(window);
  client.sync();
  takeIn();
  Composition composition(server.display(), {0, 0, 400, 300}, {}, {xcb_get_setup(own.connection())->resource_id_base});
  composition.update();
  EXPECT_EQ(composition.picture().count(0x00aa00), std::size_t{50} * 50);
  client.fill(window, {0, 0, 20, 20}, 0xaa0000);
  client.sync();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().count(0xaa0000), std::size_t{20} * 20);
}

TEST_F(RedirectionTest, WindowsThatComeAndGoDoNoHarm) {
  redirect();
  for (int round = 0; round < 100; ++round) {
    const auto window = client.createWindow({.frame = {10, 10, 50, 50}});
    if (round % 2 == 0) takeIn();
    client.destroy(window);
    client.sync();
  }
  takeIn();
}

}  // namespace
}  // namespace platform::linux::scene
