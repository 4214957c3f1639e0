// The model of the window stack on its own: plain events in, changes out.
#include "Platform/Linux/Scene/SceneModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform::linux::scene {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Recorder final : public SceneListener {
 public:
  void windowAdded(const SceneWindow& window) override { note("added", window.id); }
  void windowRemoved(const SceneWindow& window, Departure departure) override {
    note(departure == Departure::destroyed ? "destroyed" : "left", window.id);
  }
  void windowChanged(const SceneWindow& before, const SceneWindow& after) override {
    EXPECT_NE(before, after);
    lastBefore = before;
    lastAfter = after;
    note("changed", after.id);
  }
  void windowReshaped(const SceneWindow& window) override { note("reshaped", window.id); }
  void windowRestacked(const SceneWindow& window) override { note("restacked", window.id); }
  void compositingManagerChanged(bool isRunning) override {
    changes.emplace_back(isRunning ? "manager" : "no manager");
  }

  std::vector<std::string> changes;
  SceneWindow lastBefore;
  SceneWindow lastAfter;

 private:
  void note(const std::string& what, xcb_window_t window) { changes.push_back(what + " " + std::to_string(window)); }
};

// Three windows, 1 to 3 from the bottom, and a listener that was added after their creation.
class SceneModelTest : public ::testing::Test {
 protected:
  SceneModelTest() {
    for (const xcb_window_t id : {1U, 2U, 3U}) model.created(id, place, false);
    model.addListener(recorder);
  }

  std::vector<xcb_window_t> order() const {
    std::vector<xcb_window_t> ids;
    for (const SceneWindow& window : model.windows()) ids.push_back(window.id);
    return ids;
  }

  const WindowGeometry place{{10, 20, 104, 54}, 2};
  SceneModel model;
  Recorder recorder;
};

TEST_F(SceneModelTest, ANewWindowIsOnTop) {
  model.created(4, place, true);
  EXPECT_THAT(order(), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(recorder.changes, ElementsAre("added 4"));
  EXPECT_EQ(model.find(4)->outer, place.outer);
  EXPECT_EQ(model.find(4)->border, 2);
  EXPECT_TRUE(model.find(4)->isOverrideRedirect);
  EXPECT_FALSE(model.find(4)->isViewable);
  EXPECT_FALSE(model.find(4)->isDescribed);
}

TEST_F(SceneModelTest, AWindowRaisedAboveAnotherIsListedAfterIt) {
  model.restacked(1, 2);
  EXPECT_THAT(order(), ElementsAre(2, 1, 3));
  EXPECT_THAT(recorder.changes, ElementsAre("restacked 1"));
}

TEST_F(SceneModelTest, AWindowLoweredToAboveAnotherIsListedAfterIt) {
  model.restacked(3, 1);
  EXPECT_THAT(order(), ElementsAre(1, 3, 2));
  EXPECT_THAT(recorder.changes, ElementsAre("restacked 3"));
}

TEST_F(SceneModelTest, AWindowAboveNoSiblingIsAtTheBottom) {
  model.restacked(3, std::nullopt);
  EXPECT_THAT(order(), ElementsAre(3, 1, 2));
}

TEST_F(SceneModelTest, AWindowThatStaysInPlaceIsNotRestacked) {
  model.restacked(2, 1);
  model.restacked(1, std::nullopt);
  model.raised(3);
  EXPECT_THAT(order(), ElementsAre(1, 2, 3));
  EXPECT_THAT(recorder.changes, IsEmpty());
}

TEST_F(SceneModelTest, AWindowAboveAnUnknownSiblingIsOnTop) {
  model.restacked(1, 99);
  EXPECT_THAT(order(), ElementsAre(2, 3, 1));
}

TEST_F(SceneModelTest, AWindowNamedAsItsOwnSiblingStays) {
  model.restacked(2, 2);
  EXPECT_THAT(order(), ElementsAre(1, 2, 3));
}

TEST_F(SceneModelTest, ARaisedWindowIsOnTop) {
  model.raised(1);
  EXPECT_THAT(order(), ElementsAre(2, 3, 1));
}

TEST_F(SceneModelTest, AnUnknownWindowIsAdoptedOnce) {
  model.adopt(7);
  model.adopt(7);
  EXPECT_THAT(order(), ElementsAre(1, 2, 3, 7));
  EXPECT_THAT(recorder.changes, ElementsAre("added 7"));
}

TEST_F(SceneModelTest, EventsAboutUnknownWindowsChangeNothing) {
  model.mapped(9, false);
  model.unmapped(9);
  model.configured(9, place, false);
  model.moved(9, 1, 1);
  model.restacked(9, 1);
  model.raised(9);
  model.reshaped(9, true);
  model.removed(9, Departure::destroyed);
  EXPECT_THAT(order(), ElementsAre(1, 2, 3));
  EXPECT_THAT(recorder.changes, IsEmpty());
}

TEST_F(SceneModelTest, AMappedWindowIsViewableUntilItIsUnmapped) {
  model.mapped(2, true);
  EXPECT_TRUE(model.find(2)->isViewable);
  EXPECT_TRUE(model.find(2)->isOverrideRedirect);
  model.unmapped(2);
  EXPECT_FALSE(model.find(2)->isViewable);
  model.unmapped(2);
  EXPECT_THAT(recorder.changes, ElementsAre("changed 2", "changed 2"));
}

TEST_F(SceneModelTest, AChangeReportsBothStates) {
  model.configured(2, {{0, 0, 300, 200}, 0}, false);
  EXPECT_EQ(recorder.lastBefore.outer, place.outer);
  EXPECT_EQ(recorder.lastBefore.border, 2);
  EXPECT_EQ(recorder.lastAfter.outer, (xcb::PixelRect{0, 0, 300, 200}));
  EXPECT_EQ(recorder.lastAfter.border, 0);
}

TEST_F(SceneModelTest, AMovedWindowKeepsItsSize) {
  model.moved(2, -5, 7);
  EXPECT_EQ(model.find(2)->outer, (xcb::PixelRect{-5, 7, 104, 54}));
  EXPECT_THAT(recorder.changes, ElementsAre("changed 2"));
}

TEST_F(SceneModelTest, ANewShapeIsReportedEvenIfTheWindowWasShapedBefore) {
  model.reshaped(2, true);
  model.reshaped(2, true);
  EXPECT_THAT(recorder.changes, ElementsAre("changed 2", "reshaped 2", "reshaped 2"));
}

TEST_F(SceneModelTest, ADestroyedWindowLeaves) {
  model.removed(2, Departure::destroyed);
  EXPECT_THAT(order(), ElementsAre(1, 3));
  EXPECT_EQ(model.find(2), nullptr);
  EXPECT_THAT(recorder.changes, ElementsAre("destroyed 2"));
}

TEST_F(SceneModelTest, AWindowThatIsReparentedAwayAndBackIsAnotherGenerationOnTop) {
  const std::uint64_t before = model.find(1)->generation;
  model.removed(1, Departure::reparented);
  model.created(1, place, false);
  EXPECT_THAT(order(), ElementsAre(2, 3, 1));
  EXPECT_NE(model.find(1)->generation, before);
  EXPECT_THAT(recorder.changes, ElementsAre("left 1", "added 1"));
}

TEST_F(SceneModelTest, AnIdThatIsUsedAgainIsAnotherGeneration) {
  const std::uint64_t before = model.find(2)->generation;
  model.removed(2, Departure::destroyed);
  model.created(2, place, false);
  EXPECT_GT(model.find(2)->generation, before);
}

TEST_F(SceneModelTest, AnIdThatIsCreatedAgainReplacesItsUnseenPredecessor) {
  model.created(2, place, false);
  EXPECT_THAT(order(), ElementsAre(1, 3, 2));
  EXPECT_THAT(recorder.changes, ElementsAre("destroyed 2", "added 2"));
}

TEST_F(SceneModelTest, AWindowIsDescribedWhenEveryAnswerIsIn) {
  const auto stubs = model.takeStubs();
  ASSERT_EQ(stubs.size(), 3U);
  EXPECT_THAT(model.takeStubs(), IsEmpty());
  model.describeShape(stubs[1], true);
  model.describeGeometry(stubs[1], {{1, 2, 3, 4}, 0}, 24);
  EXPECT_FALSE(model.find(2)->isDescribed);
  model.describeAttributes(stubs[1],
                           {.visual = 33, .isInputOnly = false, .isOverrideRedirect = true, .isViewable = true});
  const SceneWindow& window = *model.find(2);
  EXPECT_TRUE(window.isDescribed);
  EXPECT_TRUE(window.isShaped);
  EXPECT_TRUE(window.isViewable);
  EXPECT_TRUE(window.isOverrideRedirect);
  EXPECT_EQ(window.outer, (xcb::PixelRect{1, 2, 3, 4}));
  EXPECT_EQ(window.depth, 24);
  EXPECT_EQ(window.visual, 33U);
  EXPECT_FALSE(model.find(1)->isDescribed);
}

TEST_F(SceneModelTest, AnAnswerAboutAnEarlierGenerationIsIgnored) {
  const SceneModel::Stub old = model.takeStubs()[1];
  model.removed(2, Departure::destroyed);
  model.created(2, place, false);
  model.describeGeometry(old, {{0, 0, 1, 1}, 0}, 32);
  EXPECT_EQ(model.find(2)->outer, place.outer);
  EXPECT_EQ(model.find(2)->depth, 0);
}

TEST_F(SceneModelTest, AWindowThatIsGoneIsNotAskedAbout) {
  model.removed(2, Departure::destroyed);
  std::vector<xcb_window_t> asked;
  for (const SceneModel::Stub& stub : model.takeStubs()) asked.push_back(stub.id);
  EXPECT_THAT(asked, ElementsAre(1, 3));
}

TEST_F(SceneModelTest, TheCompositingManagerIsReportedOncePerChange) {
  EXPECT_FALSE(model.hasCompositingManager());
  model.compositingManagerIs(7);
  model.compositingManagerIs(7);
  EXPECT_TRUE(model.hasCompositingManager());
  model.compositingManagerIs(8);
  EXPECT_EQ(model.compositingManager(), 8U);
  model.compositingManagerIs(XCB_NONE);
  EXPECT_THAT(recorder.changes, ElementsAre("manager", "manager", "no manager"));
}

}  // namespace
}  // namespace platform::linux::scene
