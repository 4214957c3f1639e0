#include "Quillfade/Cover/MirrorView.h"

#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using platform::Rect;

class MirrorViewTest : public OnDesktop {
 protected:
  std::shared_ptr<MirrorView> make(bool outline) {
    made = MirrorView::make(desktop.views(), outline);
    view = std::dynamic_pointer_cast<simulated::View>(made->view());
    return made;
  }

  std::shared_ptr<MirrorView> made;
  std::shared_ptr<simulated::View> view;
};

TEST_F(MirrorViewTest, TheBackgroundIsBlack) {
  make(false);
  EXPECT_EQ(view->background(), platform::colors::black);
  EXPECT_EQ(view->frame(), Rect{});
}

TEST_F(MirrorViewTest, ThePictureIsStretchedToTheBounds) {
  make(false);
  ASSERT_EQ(view->sublayers().size(), 1U);
  EXPECT_EQ(view->sublayers().front()->videoGravity(), platform::VideoGravity::resize);
  EXPECT_EQ(&made->displayLayer(), view->sublayers().front().get());
}

TEST_F(MirrorViewTest, TheStatusTextWaitsVisiblyFromTheStart) {
  make(false);
  const auto& label = *view->subviews().front();
  EXPECT_EQ(label.text(), waitingText);
  EXPECT_FALSE(label.isHidden());
}

TEST_F(MirrorViewTest, TheStatusTextIsMediumAndAlmostWhite) {
  make(false);
  const platform::TextStyle expected{{15, platform::FontWeight::medium, platform::FontDesign::system},
                                     {platform::ColorRole::fixed, 1, 1, 1, 0.65}};
  EXPECT_EQ(view->subviews().front()->style(), expected);
}

TEST_F(MirrorViewTest, TheStatusTextStaysCentred) {
  make(false);
  const auto& label = *view->subviews().front();
  EXPECT_TRUE(label.isCentered());
  for (const platform::Size size : {platform::Size{400, 300}, platform::Size{1000, 50}}) {
    view->setFrame({{0, 0}, size});
    EXPECT_DOUBLE_EQ(label.frame().midX(), size.width / 2);
    EXPECT_DOUBLE_EQ(label.frame().midY(), size.height / 2);
  }
}

TEST_F(MirrorViewTest, SettingAStatusShowsIt) {
  make(false);
  made->hideStatus();
  EXPECT_TRUE(view->subviews().front()->isHidden());
  made->setStatus("Something else");
  EXPECT_EQ(view->subviews().front()->text(), "Something else");
  EXPECT_FALSE(view->subviews().front()->isHidden());
}

TEST_F(MirrorViewTest, WithoutAnOutlineThereIsOnlyTheText) {
  make(false);
  EXPECT_EQ(view->subviews().size(), 1U);
}

TEST_F(MirrorViewTest, TheOutlineIsAHairlineAboveTheText) {
  make(true);
  ASSERT_EQ(view->subviews().size(), 2U);
  const auto& border = *view->subviews().back();
  const simulated::LayerBorder expected{1.0, {platform::ColorRole::label, 0, 0, 0, 0.16}};
  EXPECT_EQ(border.border(), expected);
  EXPECT_EQ(border.background(), std::nullopt);
  EXPECT_EQ(border.resizeMask(), 18U);
}

TEST_F(MirrorViewTest, LayoutFillsTheBoundsWithoutAnimation) {
  make(true);
  view->setFrame({{30, 40}, {640, 360}});
  const Rect bounds{{0, 0}, {640, 360}};
  EXPECT_EQ(view->sublayers().front()->frame(), bounds);
  EXPECT_EQ(view->subviews().back()->frame(), bounds);
  EXPECT_FALSE(view->sublayers().front()->didAnimate());
}

TEST_F(MirrorViewTest, LayoutWithoutAnOutlineSizesThePicture) {
  make(false);
  view->setFrame({{0, 0}, {640, 360}});
  EXPECT_EQ(view->sublayers().front()->frame(), (Rect{{0, 0}, {640, 360}}));
  EXPECT_FALSE(view->sublayers().front()->didAnimate());
}

}  // namespace
}  // namespace quillfade
