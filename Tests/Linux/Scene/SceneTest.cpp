// The scene against a real X server: what it knows from events alone must be what the server answers when asked.
#include "Platform/Linux/Scene/Scene.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Scene/WindowStorm.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::scene {
namespace {

using support::XClient;
using support::XServer;

// What the server says about its top-level windows, bottom to top. Generations exist in the scene only.
std::vector<SceneWindow> askServer(xcb_connection_t* c, xcb_window_t root, std::uint32_t mask) {
  std::vector<SceneWindow> windows;
  const auto tree = xcb::awaitReply(c, xcb_query_tree_reply, xcb_query_tree(c, root));
  for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
    const xcb_window_t id = xcb_query_tree_children(tree.get())[index];
    if ((id & ~mask) == 0) continue;
    const auto attributes = xcb::awaitReply(c, xcb_get_window_attributes_reply, xcb_get_window_attributes(c, id));
    const auto geometry = xcb::awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, id));
    const auto extents = xcb::awaitReply(c, xcb_shape_query_extents_reply, xcb_shape_query_extents(c, id));
    const int border = geometry->border_width;
    SceneWindow window;
    window.id = id;
    window.outer = {geometry->x, geometry->y, geometry->width + 2 * border, geometry->height + 2 * border};
    window.border = border;
    window.depth = geometry->depth;
    window.visual = attributes->visual;
    window.isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
    window.isOverrideRedirect = attributes->override_redirect != 0;
    window.isViewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    window.isShaped = extents->bounding_shaped != 0;
    window.isDescribed = true;
    windows.push_back(window);
  }
  return windows;
}

class SceneTest : public ::testing::Test {
 protected:
  // Handles everything that other clients have synchronised with the server before.
  void catchUp() {
    // Each round may send questions about new windows; the next round handles the replies.
    for (int round = 0; round < 3; ++round) {
      ASSERT_TRUE(connection->synchronize(10'000));
      while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
      scene->collectReplies();
    }
  }

  void expectSceneIsWhatTheServerSays() {
    std::vector<SceneWindow> known(scene->windows().begin(), scene->windows().end());
    for (SceneWindow& window : known) window.generation = 0;
    const auto asked = askServer(connection->get(), connection->root(), connection->resourceMask());
    ASSERT_EQ(known.size(), asked.size());
    for (std::size_t index = 0; index < known.size(); ++index) {
      SCOPED_TRACE("window " + std::to_string(index) + " from the bottom");
      EXPECT_EQ(known[index].id, asked[index].id);
      EXPECT_EQ(known[index].outer, asked[index].outer);
      EXPECT_EQ(known[index].isViewable, asked[index].isViewable);
      EXPECT_EQ(known[index].isShaped, asked[index].isShaped);
      EXPECT_EQ(known[index], asked[index]);
    }
  }

  XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  XClient client{server.display()};
  std::unique_ptr<xcb::Connection> connection = connectTo(server.display());
  std::optional<Scene> scene;
};

TEST_F(SceneTest, WindowsThatExistedBeforeAreKnownWithoutFurtherEvents) {
  client.createWindow({.frame = {5, 6, 70, 80}, .border = 3});
  client.createWindow({.frame = {-5, 16, 30, 20}, .depth = 32, .overrideRedirect = false});
  client.createWindow({.frame = {50, 16, 30, 20}, .mapped = false});
  client.createWindow({.frame = {0, 0, 10, 10}, .inputOnly = true});
  const auto shaped = client.createWindow({.frame = {100, 100, 50, 50}});
  const xcb_rectangle_t part{10, 10, 20, 20};
  client.setBoundingShape(shaped, {&part, 1});
  client.sync();
  scene.emplace(*connection);
  EXPECT_EQ(scene->windows().size(), 5U);
  EXPECT_EQ(scene->windows().front().outer, (xcb::PixelRect{5, 6, 76, 86}));
  EXPECT_TRUE(scene->find(shaped)->isShaped);
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, WhatHappenedBeforeItWasBuiltIsNotAppliedTwice) {
  // Somebody else on the same connection already listens to the root window.
  connection->addRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  ASSERT_TRUE(connection->synchronize(10'000));
  const auto first = client.createWindow({});
  const auto second = client.createWindow({});
  client.raise(first);
  client.sync();
  scene.emplace(*connection);
  while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
  expectSceneIsWhatTheServerSays();
  EXPECT_EQ(scene->windows().back().id, first);
  EXPECT_LT(scene->find(second)->generation, 3U) << "its creation was taken in again";
}

TEST_F(SceneTest, AnAnswerDoesNotUndoWhatHappenedAfterIt) {
  scene.emplace(*connection);
  const auto window = client.createWindow({.frame = {1, 2, 30, 40}, .mapped = false});
  client.sync();
  ASSERT_TRUE(connection->synchronize(10'000));
  while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
  // The replies have arrived, but are not handled yet, when the next changes come.
  ASSERT_TRUE(connection->synchronize(10'000));
  client.map(window);
  client.setFrame(window, {5, 6, 70, 80});
  client.sync();
  ASSERT_TRUE(connection->synchronize(10'000));
  while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
  scene->collectReplies();
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, AWindowThatAppearsIsDescribed) {
  scene.emplace(*connection);
  const auto window = client.createWindow({.frame = {5, 6, 70, 80}, .border = 1, .depth = 32});
  client.sync();
  catchUp();
  ASSERT_NE(scene->find(window), nullptr);
  EXPECT_EQ(scene->find(window)->depth, 32);
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, WindowsInsideOthersAreNotTopLevel) {
  const auto frame = client.createWindow({.frame = {5, 6, 70, 80}});
  const auto window = client.createWindow({.frame = {5, 6, 70, 80}});
  client.sync();
  scene.emplace(*connection);
  xcb_reparent_window(client.connection(), window, frame, 0, 0);
  client.sync();
  catchUp();
  EXPECT_EQ(scene->find(window), nullptr);
  expectSceneIsWhatTheServerSays();
  xcb_reparent_window(client.connection(), window, client.root(), 30, 40);
  client.sync();
  catchUp();
  ASSERT_NE(scene->find(window), nullptr);
  EXPECT_EQ(scene->find(window)->outer, (xcb::PixelRect{30, 40, 70, 80}));
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, AnIdThatIsUsedAgainIsAnotherGeneration) {
  scene.emplace(*connection);
  const auto window = client.createWindow({});
  client.sync();
  catchUp();
  const std::uint64_t before = scene->find(window)->generation;
  client.destroy(window);
  xcb_create_window(client.connection(), XCB_COPY_FROM_PARENT, window, client.root(), 1, 2, 3, 4, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  client.sync();
  catchUp();
  EXPECT_GT(scene->find(window)->generation, before);
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, TheServersOwnWindowsNeverEnter) {
  scene.emplace(*connection);
  const support::CompositingManager manager(server.display());
  catchUp();
  for (const SceneWindow& window : scene->windows()) EXPECT_FALSE(connection->isServerOwned(window.id));
  expectSceneIsWhatTheServerSays();
}

TEST_F(SceneTest, ACompositingManagerIsNoticedWhenItComesAndGoes) {
  scene.emplace(*connection);
  EXPECT_FALSE(scene->hasCompositingManager());
  const auto catchUpUntil = [&](bool isRunning) {
    return support::waitUntil([&] {
      catchUp();
      return scene->hasCompositingManager() == isRunning;
    });
  };
  {
    support::CompositingManager manager(server.display());
    EXPECT_TRUE(catchUpUntil(true));
    const auto second = connectTo(server.display());
    EXPECT_TRUE(Scene(*second).hasCompositingManager());
    manager.stop();
  }
  EXPECT_TRUE(catchUpUntil(false));
}

TEST_F(SceneTest, AMessageThatPretendsToBeAnEventIsIgnored) {
  const auto window = client.createWindow({});
  client.sync();
  scene.emplace(*connection);
  xcb_unmap_notify_event_t event{};
  event.response_type = XCB_UNMAP_NOTIFY;
  event.event = client.root();
  event.window = window;
  xcb_send_event(client.connection(), 0, client.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  client.sync();
  catchUp();
  EXPECT_TRUE(scene->find(window)->isViewable);
}

TEST_F(SceneTest, FollowsThousandsOfRandomChanges) {
  scene.emplace(*connection);
  WindowStorm storm(client, 20'240'517);
  for (int round = 0; round < 40; ++round) {
    for (int change = 0; change < 150; ++change) storm.change();
    client.sync();
    catchUp();
    ASSERT_NO_FATAL_FAILURE(expectSceneIsWhatTheServerSays()) << "round " << round;
    if (HasFailure()) return;
  }
}

TEST_F(SceneTest, IsRightEvenIfItIsBuiltDuringChanges) {
  for (unsigned round = 0; round < 25; ++round) {
    std::atomic<bool> isEnough = false;
    std::thread other([&] {
      XClient own(server.display());
      WindowStorm storm(own, 7 + round);
      while (!isEnough) {
        storm.change();
        xcb_flush(own.connection());
      }
      own.sync();
      // The windows must still exist when they are compared.
      storm.keepWindows();
    });
    scene.emplace(*connection);
    for (int batch = 0; batch < 5; ++batch) {
      ASSERT_TRUE(connection->synchronize(10'000));
      while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
      scene->collectReplies();
    }
    isEnough = true;
    other.join();
    catchUp();
    expectSceneIsWhatTheServerSays();
    if (HasFailure()) return;
    scene.reset();
  }
}

TEST_F(SceneTest, ALostServerLeavesTheSceneAsItIs) {
  client.createWindow({});
  client.sync();
  scene.emplace(*connection);
  server.kill();
  ASSERT_TRUE(support::waitUntil([&] {
    while (const xcb::Event event = connection->nextEvent()) scene->handle(*event);
    scene->collectReplies();
    return connection->isBroken();
  }));
  EXPECT_EQ(scene->windows().size(), 1U);
}

}  // namespace
}  // namespace platform::linux::scene
