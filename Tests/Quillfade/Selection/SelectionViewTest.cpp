#include "Quillfade/Selection/SelectionView.h"

#include <cmath>
#include <limits>

#include "Quillfade/Selection/SelectionWindow.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::Color;
using platform::ColorRole;
using platform::Point;
using platform::Rect;
using simulated::DrawnText;
using simulated::EvenOddFill;
using simulated::RoundedFill;
using simulated::Stroke;
using testing::ElementsAre;
using testing::SizeIs;

const std::string instruction = "Drag to select the area to keep covered    Esc to cancel";
const platform::TextStyle instructionStyle{{15, platform::FontWeight::medium, platform::FontDesign::system},
                                           {ColorRole::fixed, 1, 1, 1, 0.92}};
const platform::TextStyle readoutStyle{{12, platform::FontWeight::semibold, platform::FontDesign::monospacedDigits},
                                       {ColorRole::fixed, 1, 1, 1, 1}};
constexpr Color dimming{ColorRole::fixed, 0, 0, 0, 0.38};
constexpr Color instructionBacking{ColorRole::fixed, 0, 0, 0, 0.55};
constexpr Color accent{ColorRole::fixed, 0.925, 0.216, 0.314, 1.0};
constexpr Rect screenFrame{{0, 0}, {1000, 800}};

class SelectionViewTest : public OnDesktop {
 protected:
  void SetUp() override { make(screenFrame); }

  // Makes a selection window with its view, on a screen with this frame.
  void make(const Rect& frame) {
    selection = SelectionWindow::make(desktop, frame);
    selection.window->setContentView(selection.view->view());
    view().setOnFinish([this](std::optional<Rect> rect) { reports.push_back(rect); });
  }

  [[nodiscard]] SelectionView& view() const { return *selection.view; }
  [[nodiscard]] const simulated::View& shown() const {
    return dynamic_cast<const simulated::View&>(*selection.view->view());
  }

  // In window coordinates.
  void dragTo(Point from, Point to) {
    view().mouseDown(from);
    view().mouseDragged(to);
  }
  void select(Point from, Point to) {
    dragTo(from, to);
    view().mouseUp(to);
  }

  SelectionWindow selection;
  std::vector<std::optional<Rect>> reports;
};

TEST_F(SelectionViewTest, TheWindowIsTransparentAndTakesTheKeyboard) {
  const auto& attributes = desktop.windows().made().back()->attributes;
  EXPECT_EQ(attributes.contentRect, screenFrame);
  EXPECT_EQ(attributes.style, platform::WindowStyle::borderless);
  EXPECT_EQ(attributes.backing, platform::BackingStore::buffered);
  EXPECT_FALSE(attributes.isDeferred);
  EXPECT_EQ(attributes.level, 1000);
  EXPECT_EQ(attributes.collectionBehavior, 273U);
  EXPECT_FALSE(attributes.hasShadow);
  EXPECT_FALSE(attributes.isOpaque);
  EXPECT_EQ(attributes.backgroundColor, platform::colors::clear);
  EXPECT_EQ(attributes.animationBehavior, platform::AnimationBehavior::none);
  EXPECT_TRUE(attributes.canBecomeKey);
  EXPECT_TRUE(attributes.canBecomeMain);
  EXPECT_FALSE(attributes.ignoresMouseEvents);
}

TEST_F(SelectionViewTest, TheInstructionIsInTheUsersLanguage) {
  desktop.texts().translations = {{instruction, "Ziehen"}};
  make(screenFrame);
  const auto steps = shown().render();
  EXPECT_TRUE(std::ranges::any_of(steps, [](const simulated::DrawingStep& step) {
    const auto* text = std::get_if<simulated::DrawnText>(&step);
    return text != nullptr && text->text == "Ziehen";
  }));
}

TEST_F(SelectionViewTest, AFreshViewHasNoDrag) {
  EXPECT_EQ(view().startPoint(), std::nullopt);
  EXPECT_EQ(view().currentRect(), std::nullopt);
}

TEST_F(SelectionViewTest, AcceptsTheKeyboardAndShowsACrosshair) {
  EXPECT_TRUE(view().acceptsFirstResponder());
  EXPECT_EQ(view().cursor(), platform::Cursor::crosshair);
}

TEST_F(SelectionViewTest, TheViewFillsItsScreenFromItsOwnOrigin) {
  make({{-1920, 200}, {1920, 1080}});
  EXPECT_EQ(shown().bounds(), (Rect{{0, 0}, {1920, 1080}}));
}

TEST_F(SelectionViewTest, PressingStartsADrag) {
  view().mouseDown({100, 200});
  EXPECT_EQ(view().startPoint(), (Point{100, 200}));
  EXPECT_EQ(view().currentRect(), std::nullopt);
  EXPECT_EQ(shown().displayRequests(), 1);
}

TEST_F(SelectionViewTest, DraggingSpansTheRectangle) {
  dragTo({100, 200}, {300, 500});
  EXPECT_EQ(view().currentRect(), (Rect{{100, 200}, {200, 300}}));
  EXPECT_EQ(shown().displayRequests(), 2);
}

TEST_F(SelectionViewTest, EveryDirectionGivesTheSameRectangle) {
  const Rect expected{{100, 200}, {200, 300}};
  const Point corners[][2] = {
      {{100, 200}, {300, 500}}, {{300, 500}, {100, 200}}, {{100, 500}, {300, 200}}, {{300, 200}, {100, 500}}};
  for (const auto& [from, to] : corners) {
    dragTo(from, to);
    EXPECT_EQ(view().currentRect(), expected);
  }
}

TEST_F(SelectionViewTest, ADragMayLeaveTheScreen) {
  dragTo({900, 100}, {1500, -50});
  EXPECT_EQ(view().currentRect(), (Rect{{900, -50}, {600, 150}}));
}

TEST_F(SelectionViewTest, DraggingWithoutPressingDoesNothing) {
  view().mouseDragged({50, 50});
  EXPECT_EQ(view().currentRect(), std::nullopt);
  EXPECT_EQ(shown().displayRequests(), 0);
}

TEST_F(SelectionViewTest, PressingAgainForgetsTheRectangle) {
  dragTo({100, 200}, {300, 500});
  view().mouseDown({10, 10});
  EXPECT_EQ(view().currentRect(), std::nullopt);
  EXPECT_EQ(view().startPoint(), (Point{10, 10}));
}

TEST_F(SelectionViewTest, ReleasingReportsTheRectangleOnceAndKeepsIt) {
  select({100, 200}, {300, 500});
  EXPECT_THAT(reports, ElementsAre(Rect{{100, 200}, {200, 300}}));
  EXPECT_EQ(view().currentRect(), (Rect{{100, 200}, {200, 300}}));
  EXPECT_EQ(view().startPoint(), (Point{100, 200}));
}

TEST_F(SelectionViewTest, TheReportIsInGlobalCoordinates) {
  make({{-1920, 150}, {1920, 1080}});
  select({10, 20}, {110, 220});
  EXPECT_THAT(reports, ElementsAre(Rect{{-1910, 170}, {100, 200}}));
}

TEST_F(SelectionViewTest, AClickWithoutADragReportsNothing) {
  view().mouseDown({100, 100});
  view().mouseUp({100, 100});
  EXPECT_THAT(reports, ElementsAre(std::nullopt));
}

TEST_F(SelectionViewTest, ReleasingWithoutPressingReportsNothing) {
  view().mouseUp({100, 100});
  EXPECT_THAT(reports, ElementsAre(std::nullopt));
}

TEST_F(SelectionViewTest, ADragThatIsTooSmallReportsNothing) {
  select({0, 0}, {23.9, 200});
  select({0, 0}, {200, 23.9});
  EXPECT_THAT(reports, ElementsAre(std::nullopt, std::nullopt));
}

TEST_F(SelectionViewTest, ADragOfExactlyTwentyFourPointsIsAccepted) {
  select({0, 0}, {24, 24});
  EXPECT_THAT(reports, ElementsAre(Rect{{0, 0}, {24, 24}}));
}

TEST_F(SelectionViewTest, OutsideAWindowADragReportsNothing) {
  const auto loose = SelectionView::make(desktop.views(), screenFrame, desktop.texts());
  loose->setOnFinish([this](std::optional<Rect> rect) { reports.push_back(rect); });
  loose->mouseDown({0, 0});
  loose->mouseDragged({100, 100});
  loose->mouseUp({100, 100});
  EXPECT_THAT(reports, ElementsAre(std::nullopt));
}

TEST_F(SelectionViewTest, EscapeReportsNothingAndGoesNoFurther) {
  dragTo({0, 0}, {100, 100});
  EXPECT_TRUE(view().keyDown({53}));
  EXPECT_THAT(reports, ElementsAre(std::nullopt));
}

TEST_F(SelectionViewTest, OtherKeysArePassedOn) {
  for (const std::uint16_t code : {std::uint16_t{0}, std::uint16_t{36}, std::uint16_t{52}, std::uint16_t{54}}) {
    EXPECT_FALSE(view().keyDown({code}));
  }
  EXPECT_THAT(reports, SizeIs(0));
}

TEST_F(SelectionViewTest, TheCancelCommandReportsNothing) {
  view().cancelOperation();
  EXPECT_THAT(reports, ElementsAre(std::nullopt));
}

TEST_F(SelectionViewTest, WithoutAListenerReportsGoNowhere) {
  view().setOnFinish(nullptr);
  select({0, 0}, {100, 100});
  view().cancelOperation();
  EXPECT_TRUE(view().keyDown({53}));
  EXPECT_THAT(reports, SizeIs(0));
}

// The steps that draw the instruction on a view of this size.
std::vector<simulated::DrawingStep> instructionSteps(platform::Size size) {
  const platform::Size text = simulated::textSize(instruction, instructionStyle.font);
  const Point origin{size.width / 2 - 0.5 * text.width, size.height - 74};
  return {RoundedFill{{{origin.x - 18, origin.y - 11}, {text.width + 36, text.height + 22}}, 11, instructionBacking},
          DrawnText{instruction, origin, instructionStyle}};
}

TEST_F(SelectionViewTest, AnIdleViewIsDimmedAndInstructs) {
  std::vector<simulated::DrawingStep> expected{EvenOddFill{{screenFrame}, dimming}};
  for (const auto& step : instructionSteps(screenFrame.size)) expected.push_back(step);
  EXPECT_EQ(shown().render(), expected);
}

// Of grey levels from 0 to 1, as accessibility guidelines for contrast define it.
double luminance(double grey) { return grey <= 0.04045 ? grey / 12.92 : std::pow((grey + 0.055) / 1.055, 2.4); }
double over(double below, const Color& ink) { return below + (ink.red - below) * ink.alpha; }

TEST_F(SelectionViewTest, TheInstructionStandsOutOnAnyScreen) {
  const auto steps = shown().render();
  const auto& dimmed = std::get<EvenOddFill>(steps.at(0)).color;
  const auto& backing = std::get<RoundedFill>(steps.at(1)).color;
  const auto& ink = std::get<DrawnText>(steps.at(2)).style.color;
  for (const double screen : {0.0, 0.5, 1.0}) {
    const double ground = over(over(screen, dimmed), backing);
    const double contrast = (luminance(over(ground, ink)) + 0.05) / (luminance(ground) + 0.05);
    EXPECT_GE(contrast, 4.5) << "on a screen of " << screen;
  }
}

TEST_F(SelectionViewTest, TheInstructionIsCentredBelowTheTopOfAnyScreen) {
  for (const platform::Size size : {platform::Size{640, 480}, platform::Size{3840.5, 2160}}) {
    make({{-500, 300}, size});
    const auto steps = shown().render();
    EXPECT_THAT(std::vector(steps.begin() + 1, steps.end()), testing::ElementsAreArray(instructionSteps(size)));
  }
}

TEST_F(SelectionViewTest, ADragLeavesAHoleABorderAndAReadout) {
  dragTo({100, 200}, {740.9, 560.2});
  const Rect rect{{100, 200}, {740.9 - 100, 560.2 - 200}};
  const std::string readout = "640 \xC3\x97 360";
  const platform::Size text = simulated::textSize(readout, readoutStyle.font);
  std::vector<simulated::DrawingStep> expected{EvenOddFill{{screenFrame, rect}, dimming}};
  for (const auto& step : instructionSteps(screenFrame.size)) expected.push_back(step);
  expected.emplace_back(Stroke{rect, 2, accent});
  expected.emplace_back(RoundedFill{{{108, 208}, {text.width + 16, text.height + 8}}, 6, accent});
  expected.emplace_back(DrawnText{readout, {116, 212}, readoutStyle});
  EXPECT_EQ(shown().render(), expected);
}

TEST_F(SelectionViewTest, AThinDragIsAHoleWithoutABorderOrReadout) {
  for (const Point to : {Point{101, 250}, Point{150, 201}}) {
    dragTo({100, 200}, to);
    const auto steps = shown().render();
    ASSERT_THAT(steps, SizeIs(3));
    EXPECT_THAT(std::get<EvenOddFill>(steps.front()).rects, SizeIs(2));
  }
  dragTo({100, 200}, {101.1, 201.1});
  EXPECT_THAT(shown().render(), SizeIs(6));
}

using SelectionViewDeathTest = SelectionViewTest;

TEST_F(SelectionViewDeathTest, AReadoutThatDoesNotFitEndsTheProcess) {
  dragTo({0, 0}, {std::numeric_limits<double>::infinity(), 100});
  EXPECT_DEATH(static_cast<void>(shown().render()), "fatal error");
}

}  // namespace
}  // namespace quillfade
