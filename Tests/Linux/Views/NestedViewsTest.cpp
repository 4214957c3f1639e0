// Nested views in a widget window: what is painted where, and which of them gets a press.

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "Platform/Linux/Views/Views.h"
#include "Platform/Linux/Widgets/WidgetWindow.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XClient.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::views;

namespace {

constexpr Color red{ColorRole::fixed, 1, 0, 0, 1};
constexpr Color green{ColorRole::fixed, 0, 1, 0, 1};

class Pressed : public ViewResponder {
 public:
  void mouseDown(Point point) override { at = point; }
  std::optional<Point> at;
};

// A red view over the whole window, and in it a green one of 100 x 50, (20, 30) from its bottom-left corner.
class NestedViews : public qt::Test {
 public:
  ~NestedViews() override {
    window_.reset();
    qt::runPending();
  }

 protected:
  NestedViews() {
    outer_ = views_.makeView({{0, 0}, {400, 300}}, outerResponder_);
    outer_->setLayerBackground(red);
    inner_ = views_.makeView({{20, 30}, {100, 50}}, innerResponder_);
    inner_->setLayerBackground(green);
    outer_->addSubview(inner_);
    WindowAttributes attributes;
    attributes.contentRect = {{100, 200}, {400, 300}};  // x 100 to 500, y 300 to 600 in pixels
    attributes.isOpaque = true;
    attributes.backgroundColor = colors::black;
    window_ = std::make_unique<widgets::WidgetWindow>(attributes, screens_, focus_, nullptr);
    window_->setContentView(outer_);
    window_->orderFrontRegardless();
    qt::runPending();
  }
  [[nodiscard]] bool shows(std::uint32_t color, std::size_t count) {
    return qt::runUntil([&] { return client_.screenshot().count(color) == count; });
  }

  [[nodiscard]] xcb_window_t focused() {
    return support::waitForReply(client_.connection(), xcb_get_input_focus_reply,
                                 xcb_get_input_focus(client_.connection()))
        ->focus;
  }

  support::XClient client_{qt::display()};
  support::Input input_{qt::display()};
  toolkit::DesktopScreens screens_;
  input::KeyboardFocus focus_;
  DesktopViews views_;
  std::shared_ptr<Pressed> outerResponder_ = std::make_shared<Pressed>();
  std::shared_ptr<Pressed> innerResponder_ = std::make_shared<Pressed>();
  std::shared_ptr<View> outer_;
  std::shared_ptr<View> inner_;
  std::unique_ptr<widgets::WidgetWindow> window_;
};

}  // namespace

TEST_F(NestedViews, AreShownInsideEachOtherUnlessHidden) {
  EXPECT_TRUE(shows(0x00ff00, 100 * 50));
  EXPECT_EQ(client_.screenshot().count(0x00ff00, {120, 520, 100, 50}), 100U * 50U);
  EXPECT_TRUE(shows(0xff0000, 400 * 300 - 100 * 50));
  inner_->setHidden(true);
  EXPECT_TRUE(shows(0x00ff00, 0));
  EXPECT_TRUE(shows(0xff0000, 400 * 300));
}

TEST_F(NestedViews, HaveBordersInsideTheirEdges) {
  inner_->setLayerBorder(2, red);
  EXPECT_TRUE(shows(0x00ff00, 96 * 46));
}

TEST_F(NestedViews, AreCentredOnRequest) {
  outer_->centerSubview(*inner_);
  EXPECT_TRUE(qt::runUntil([&] { return client_.screenshot().count(0x00ff00, {250, 425, 100, 50}) == 100U * 50U; }));
}

TEST_F(NestedViews, ReceivePressesOnThem) {
  input_.click(125, 525, 1);
  EXPECT_TRUE(qt::runUntil([&] { return innerResponder_->at.has_value(); }));
  EXPECT_EQ(innerResponder_->at, (Point{25, 75}));
  EXPECT_FALSE(outerResponder_->at);
  input_.click(300, 400, 1);
  EXPECT_TRUE(qt::runUntil([&] { return outerResponder_->at == Point{200, 200}; }));
}

TEST_F(NestedViews, ReceivePressesOnTheirOutermostPixelsAndNoneBesideThem) {
  // x 120 to 220, y 520 to 570 in pixels.
  for (const auto& [x, y] : {std::pair{120, 520}, {219, 520}, {120, 569}, {219, 569}}) {
    innerResponder_->at.reset();
    input_.click(x, y, 1);
    EXPECT_TRUE(qt::runUntil([&] { return innerResponder_->at.has_value(); }, std::chrono::seconds(2)))
        << x << "," << y;
  }
  innerResponder_->at.reset();
  for (const auto& [x, y] : {std::pair{150, 519}, {150, 570}, {119, 540}, {220, 540}}) {
    outerResponder_->at.reset();
    input_.click(x, y, 1);
    EXPECT_TRUE(qt::runUntil([&] { return outerResponder_->at.has_value(); }, std::chrono::seconds(2)))
        << x << "," << y;
  }
  EXPECT_FALSE(innerResponder_->at);
}

TEST_F(NestedViews, LetPressesThroughWhileHidden) {
  inner_->setHidden(true);
  input_.click(125, 525, 1);
  EXPECT_TRUE(qt::runUntil([&] { return outerResponder_->at == Point{25, 75}; }));
  EXPECT_FALSE(innerResponder_->at);
}

TEST_F(NestedViews, FollowTheWindow) {
  window_->setFrame({{300, 400}, {200, 200}}, true);
  EXPECT_TRUE(shows(0xff0000, 200 * 200 - 100 * 50));
  EXPECT_EQ(client_.screenshot().count(0x00ff00, {320, 320, 100, 50}), 100U * 50U);
}

TEST_F(NestedViews, GetNoPressThatIsMadeOnAViewWhichWantsNone) {
  const auto plain = views_.makeView({{0, 0}, {400, 300}});
  plain->addSubview(inner_);
  window_->setContentView(plain);
  input_.click(300, 400, 1);
  input_.click(125, 525, 1);
  EXPECT_TRUE(qt::runUntil([&] { return innerResponder_->at.has_value(); }));
  EXPECT_FALSE(outerResponder_->at);
}

TEST_F(NestedViews, MayGoWhileAButtonIsHeldOnThem) {
  input_.moveTo(125, 525);
  input_.buttonDown();
  EXPECT_TRUE(qt::runUntil([&] { return innerResponder_->at.has_value(); }));
  innerResponder_ = nullptr;
  window_->setContentView(views_.makeView({{0, 0}, {400, 300}}, outerResponder_));
  outer_ = nullptr;
  inner_ = nullptr;
  input_.moveTo(130, 530);
  input_.buttonUp();
  input_.click(300, 400, 1);
  EXPECT_TRUE(qt::runUntil([&] { return outerResponder_->at == Point{200, 200}; }));
}

TEST_F(NestedViews, LeaveTheKeyboardToOthersInAWindowThatIsNotForKeys) {
  const auto before = focused();
  window_->makeKey();
  window_->makeFirstResponder(*inner_);
  qt::runPending();
  EXPECT_EQ(focused(), before);
}
