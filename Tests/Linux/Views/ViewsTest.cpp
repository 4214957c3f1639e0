#include "Platform/Linux/Views/Views.h"

#include <gtest/gtest.h>

#include "Platform/Linux/Views/DisplayLayerNode.h"
#include "Platform/Linux/Views/OverlayDescription.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::views;

namespace {

class RecordingHost : public ViewHost {
 public:
  void viewsChanged() override { ++changes; }
  bool presentSample(std::shared_ptr<const SampleBuffer> sample) override {
    shown = std::move(sample);
    return accepts;
  }
  void forgetSamples() override { shown.reset(); }
  [[nodiscard]] Rect windowFrame() const override { return {{-1280, 30}, {800, 600}}; }

  int changes = 0;
  bool accepts = true;
  std::shared_ptr<const SampleBuffer> shown;
};

class Sample : public SampleBuffer {
 public:
  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override { return std::nullopt; }
};

class FillingResponder : public ViewResponder {
 public:
  void layout() override {
    ++layouts;
    if (view && layer) layer->setFrame(view->bounds());
  }
  View* view = nullptr;
  std::shared_ptr<DisplayLayer> layer;
  int layouts = 0;
};

constexpr unsigned followBoth = resizemask::widthSizable | resizemask::heightSizable;
constexpr Color outline = colors::label.withAlpha(0.16);

}  // namespace

TEST(Views, AViewWithoutSizeThatFollowsItsSuperviewFillsItOnceInAWindow) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  const auto border = views.makeView({});
  border->setResizeMask(followBoth);
  root->addSubview(border);
  nodeOf(*root)->enterWindow(host, {520, 340});
  EXPECT_EQ(root->bounds(), (Rect{{0, 0}, {520, 340}}));
  EXPECT_EQ(border->bounds(), (Rect{{0, 0}, {520, 340}}));
  nodeOf(*root)->leaveWindow();
}

TEST(Views, AViewFollowsOnlyTheEdgesOfItsMask) {
  DesktopViews views;
  const auto root = views.makeView({{0, 0}, {100, 100}});
  const auto wide = views.makeView({{10, 10}, {50, 50}});
  const auto fixed = views.makeView({{10, 10}, {50, 50}});
  wide->setResizeMask(resizemask::widthSizable);
  root->addSubview(wide);
  root->addSubview(fixed);
  root->setFrame({{0, 0}, {150, 180}});
  EXPECT_EQ(wide->bounds(), (Rect{{0, 0}, {100, 50}}));
  EXPECT_EQ(fixed->bounds(), (Rect{{0, 0}, {50, 50}}));
}

TEST(Views, TheResponderLaysOutWhenTheSizeIsKnownAndWheneverItChanges) {
  DesktopViews views;
  RecordingHost host;
  const auto responder = std::make_shared<FillingResponder>();
  const auto root = views.makeView({{0, 0}, {64, 64}}, responder);
  responder->view = root.get();
  responder->layer = views.makeDisplayLayer();
  root->addSublayer(responder->layer);
  EXPECT_EQ(responder->layouts, 0);
  nodeOf(*root)->enterWindow(host, {64, 64});
  EXPECT_GE(responder->layouts, 1);
  EXPECT_EQ(describe(*nodeOf(*root)).pictureLayer, (Rect{{0, 0}, {64, 64}}));
  nodeOf(*root)->setFrame({{0, 0}, {640, 480}});
  EXPECT_EQ(describe(*nodeOf(*root)).pictureLayer, (Rect{{0, 0}, {640, 480}}));
  nodeOf(*root)->leaveWindow();
}

TEST(Views, ADestroyedResponderDoesNoHarm) {
  DesktopViews views;
  const auto root = views.makeView({}, std::make_shared<FillingResponder>());
  root->setFrame({{0, 0}, {10, 10}});
  EXPECT_EQ(root->bounds().size, (Size{10, 10}));
}

TEST(Views, PointsAndRectanglesAreConvertedThroughEverySuperview) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  const auto middle = views.makeView({{100, 50}, {300, 300}});
  const auto inner = views.makeView({{10, 20}, {100, 100}});
  root->addSubview(middle);
  middle->addSubview(inner);
  EXPECT_FALSE(inner->isInWindow());
  nodeOf(*root)->enterWindow(host, {800, 600});
  EXPECT_TRUE(inner->isInWindow());
  EXPECT_EQ(inner->convertFromWindow({110, 70}), (Point{0, 0}));
  EXPECT_EQ(inner->convertToWindow({{1, 2}, {3, 4}}), (Rect{{111, 72}, {3, 4}}));
  EXPECT_EQ(inner->convertWindowRectToScreen({{111, 72}, {3, 4}}), (Rect{{-1169, 102}, {3, 4}}));
  nodeOf(*root)->leaveWindow();
  EXPECT_FALSE(inner->isInWindow());
}

TEST(Views, EveryVisibleChangeReachesTheWindow) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  const auto label = views.makeLabel("one");
  root->addSubview(label);
  nodeOf(*root)->enterWindow(host, {10, 10});
  const auto changesAfter = [&](const auto& change) {
    host.changes = 0;
    change();
    return host.changes;
  };
  EXPECT_GT(changesAfter([&] { label->setText("two"); }), 0);
  EXPECT_GT(changesAfter([&] { label->setHidden(true); }), 0);
  EXPECT_EQ(changesAfter([&] { label->setHidden(true); }), 0);
  EXPECT_GT(changesAfter([&] { root->setLayerBackground(colors::black); }), 0);
  EXPECT_GT(changesAfter([&] { root->setNeedsDisplay(); }), 0);
  nodeOf(*root)->leaveWindow();
  EXPECT_EQ(changesAfter([&] { root->setNeedsDisplay(); }), 0);
}

TEST(Views, ASubviewMayOutliveItsSuperview) {
  DesktopViews views;
  RecordingHost host;
  auto root = views.makeView({});
  const auto label = views.makeLabel("text");
  const auto layer = views.makeDisplayLayer();
  root->addSubview(label);
  root->addSublayer(layer);
  nodeOf(*root)->enterWindow(host, {10, 10});
  root.reset();
  host.changes = 0;
  label->setText("other");
  layer->setFrame({{0, 0}, {1, 1}});
  EXPECT_EQ(host.changes, 0);
}

TEST(DisplayLayer, FramesGoToTheWindowThatHostsTheView) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  const auto layer = views.makeDisplayLayer();
  root->addSublayer(layer);
  SampleBufferRenderer& renderer = layer->sampleBufferRenderer();
  renderer.enqueue(std::make_shared<Sample>());
  EXPECT_EQ(renderer.status(), RendererStatus::unknown);  // nobody could see it
  nodeOf(*root)->enterWindow(host, {10, 10});
  const auto sample = std::make_shared<Sample>();
  renderer.enqueue(sample);
  EXPECT_EQ(host.shown, sample);
  EXPECT_EQ(renderer.status(), RendererStatus::rendering);
  nodeOf(*root)->leaveWindow();
}

TEST(DisplayLayer, AFrameThatCannotBeShownFailsTheRendererUntilItIsFlushed) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  const auto layer = views.makeDisplayLayer();
  root->addSublayer(layer);
  nodeOf(*root)->enterWindow(host, {10, 10});
  SampleBufferRenderer& renderer = layer->sampleBufferRenderer();
  host.accepts = false;
  renderer.enqueue(std::make_shared<Sample>());
  EXPECT_EQ(renderer.status(), RendererStatus::failed);
  host.accepts = true;
  const auto refused = std::make_shared<Sample>();
  renderer.enqueue(refused);
  EXPECT_NE(host.shown, refused);
  renderer.flush();
  EXPECT_EQ(renderer.status(), RendererStatus::unknown);
  EXPECT_EQ(host.shown, nullptr);
  renderer.enqueue(refused);
  EXPECT_EQ(host.shown, refused);
  nodeOf(*root)->leaveWindow();
}

TEST(OverlayDescription, AMirrorShowsBackgroundPictureTextAndOutline) {
  DesktopViews views;
  RecordingHost host;
  const auto root = views.makeView({});
  root->setLayerBackground(colors::black);
  const auto layer = views.makeDisplayLayer();
  layer->setFrame({{0, 0}, {520, 340}});
  root->addSublayer(layer);
  const auto label = views.makeLabel("Waiting");
  const TextStyle style{{15, FontWeight::medium, FontDesign::system}, colors::white.withAlpha(0.65)};
  label->setStyle(style);
  root->addSubview(label);
  root->centerSubview(*label);
  const auto border = views.makeView({});
  border->setResizeMask(followBoth);
  border->setLayerBorder(1, outline);
  root->addSubview(border);
  nodeOf(*root)->enterWindow(host, {520, 340});

  const OverlayContent expected{colors::black, Rect{{0, 0}, {520, 340}}, LabelContent{"Waiting", style},
                                BorderContent{1, outline}};
  EXPECT_EQ(describe(*nodeOf(*root)), expected);
  label->setHidden(true);
  EXPECT_EQ(describe(*nodeOf(*root)).label, std::nullopt);
  EXPECT_EQ(describe(*nodeOf(*root)).border, expected.border);
  nodeOf(*root)->leaveWindow();
}

TEST(OverlayDescription, AViewWithoutBackgroundLeavesTheWindowsOwn) {
  DesktopViews views;
  const auto root = views.makeView({{0, 0}, {10, 10}});
  EXPECT_EQ(describe(*nodeOf(*root)), OverlayContent{});
  EXPECT_EQ(describe(*nodeOf(*root)).background, colors::clear);
}

TEST(OverlayDescription, WhatLiesOnTopCountsAndAHiddenViewHidesItsSubviews) {
  DesktopViews views;
  const auto root = views.makeView({});
  const auto lower = views.makeLabel("lower");
  const auto group = views.makeView({});
  const auto upper = views.makeLabel("upper");
  root->addSubview(lower);
  root->addSubview(group);
  group->addSubview(upper);
  EXPECT_EQ(describe(*nodeOf(*root)).label->text, "upper");
  group->setHidden(true);
  EXPECT_EQ(describe(*nodeOf(*root)).label->text, "lower");
}
