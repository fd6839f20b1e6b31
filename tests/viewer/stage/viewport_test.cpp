// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/viewport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

Viewport viewportOf(QSize picture, QSize view) {
  Viewport viewport;
  viewport.setPicture(picture);
  viewport.setView(view);
  return viewport;
}

void expectNear(QPointF actual, QPointF expected, double tolerance = 1e-6) {
  EXPECT_NEAR(actual.x(), expected.x(), tolerance);
  EXPECT_NEAR(actual.y(), expected.y(), tolerance);
}

struct Fit {
  QSize picture;
  QSize view;
  int quarters;
  QRectF shown;
};

class FittedPicture : public testing::TestWithParam<Fit> {};

TEST_P(FittedPicture, IsAsLargeAsThereIsRoomAndKeepsItsAspect) {
  Viewport viewport = viewportOf(GetParam().picture, GetParam().view);
  viewport.turn(GetParam().quarters);
  const QRectF shown = viewport.pictureRect();
  expectNear(shown.topLeft(), GetParam().shown.topLeft());
  expectNear(shown.bottomRight(), GetParam().shown.bottomRight());
}

INSTANTIATE_TEST_SUITE_P(, FittedPicture,
                         testing::Values(Fit{{320, 240}, {640, 480}, 0, {0, 0, 640, 480}},
                                         Fit{{320, 240}, {1000, 480}, 0, {180, 0, 640, 480}},
                                         Fit{{320, 240}, {640, 600}, 0, {0, 60, 640, 480}},
                                         Fit{{1280, 960}, {640, 480}, 0, {0, 0, 640, 480}},
                                         Fit{{320, 240}, {480, 640}, 1, {0, 0, 480, 640}},
                                         Fit{{320, 240}, {480, 640}, 3, {0, 0, 480, 640}},
                                         Fit{{320, 240}, {640, 480}, 2, {0, 0, 640, 480}}));

TEST(Viewport, WithoutAPictureOrAViewHasScaleOne) {
  EXPECT_DOUBLE_EQ(Viewport().scale(), 1);
  EXPECT_DOUBLE_EQ(viewportOf({}, {640, 480}).scale(), 1);
  EXPECT_DOUBLE_EQ(viewportOf({320, 240}, {}).scale(), 1);
}

TEST(Viewport, ZoomsAroundThePointThatItIsGiven) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  const QPointF at(100, 300);
  const QPointF before = viewport.toPicture().map(at);
  viewport.zoomBy(3, at);
  EXPECT_DOUBLE_EQ(viewport.scale(), 6);
  expectNear(viewport.toPicture().map(at), before, 0.1);  // whole pixels of the screen
}

TEST(Viewport, KeepsTheScaleWithinItsLimits) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  viewport.zoomBy(1e9, {0, 0});
  EXPECT_DOUBLE_EQ(viewport.scale(), Viewport::kMostScale);
  viewport.zoomBy(1e-9, {0, 0});
  EXPECT_DOUBLE_EQ(viewport.scale(), Viewport::kLeastScale);
  viewport.zoomBy(std::numeric_limits<double>::quiet_NaN(), {0, 0});
  EXPECT_DOUBLE_EQ(viewport.scale(), Viewport::kLeastScale);
}

TEST(Viewport, NeverLeavesMarginsAroundAPictureThatIsLargerThanTheView) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  viewport.zoomTo(4, {320, 240});
  viewport.panBy({1e6, -1e6});
  EXPECT_DOUBLE_EQ(viewport.pictureRect().left(), 0);
  EXPECT_DOUBLE_EQ(viewport.pictureRect().bottom(), 480);
}

TEST(Viewport, CentresAPictureThatIsSmallerThanTheView) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  viewport.zoomTo(1, {0, 0});
  EXPECT_EQ(viewport.pictureRect(), QRectF(160, 120, 320, 240));
  viewport.panBy({50, 50});
  EXPECT_EQ(viewport.pictureRect(), QRectF(160, 120, 320, 240));
}

TEST(Viewport, MovesTheDraggedPixelWithThePointer) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  viewport.zoomTo(8, {320, 240});
  const QPointF held = viewport.toPicture().map(QPointF(200, 200));
  viewport.panBy({40, -24});
  expectNear(viewport.toPicture().map(QPointF(240, 176)), held, 0.1);
}

TEST(Viewport, BeginsPixelsOnThoseOfTheScreenWhereItIsExact) {
  Viewport viewport = viewportOf({321, 241}, {640, 480});
  viewport.zoomTo(1, {0, 0});
  const QRectF shown = viewport.pictureRect();
  EXPECT_TRUE(viewport.isExact());
  EXPECT_EQ(shown, QRectF(shown.toRect()));
}

TEST(Viewport, IsExactAtOneToOneAndFromFourToOneOn) {
  Viewport viewport = viewportOf({320, 240}, {640, 480});
  const auto isExactAt = [&](double scale) {
    viewport.zoomTo(scale, {0, 0});
    return viewport.isExact();
  };
  EXPECT_TRUE(isExactAt(1));
  EXPECT_TRUE(isExactAt(4));
  EXPECT_TRUE(isExactAt(17.3));
  EXPECT_FALSE(isExactAt(0.5));
  EXPECT_FALSE(isExactAt(1.5));
  EXPECT_FALSE(isExactAt(3.9));
}

struct Turning {
  int quarters;
  bool mirrored;
  QPointF corner;  // where the picture's top-left corner stands, in a view of its turned size
};

class TurnedPicture : public testing::TestWithParam<Turning> {};

TEST_P(TurnedPicture, HasItsFirstCornerThere) {
  const QSize view = GetParam().quarters % 2 == 0 ? QSize(320, 240) : QSize(240, 320);
  Viewport viewport = viewportOf({320, 240}, view);
  viewport.turn(GetParam().quarters);
  viewport.setMirrored(GetParam().mirrored);
  expectNear(viewport.toView().map(QPointF(0, 0)), GetParam().corner);
  expectNear(viewport.toPicture().map(GetParam().corner), {0, 0});
}

INSTANTIATE_TEST_SUITE_P(, TurnedPicture,
                         testing::Values(Turning{0, false, {0, 0}}, Turning{1, false, {240, 0}},
                                         Turning{2, false, {320, 240}}, Turning{3, false, {0, 320}},
                                         Turning{-1, false, {0, 320}}, Turning{0, true, {320, 0}},
                                         Turning{1, true, {0, 0}}, Turning{5, false, {240, 0}}));

TEST(Viewport, KeepsWhatStandsInTheMiddleWhenItIsTurned) {
  Viewport viewport = viewportOf({320, 240}, {200, 200});
  viewport.zoomTo(8, {10, 180});
  const QPointF middle = viewport.toPicture().map(QPointF(100, 100));
  viewport.turn(1);
  expectNear(viewport.toPicture().map(QPointF(100, 100)), middle, 0.2);
  viewport.setMirrored(true);
  expectNear(viewport.toPicture().map(QPointF(100, 100)), middle, 0.2);
}

TEST(Viewport, GivesItsStateToAnother) {
  Viewport first = viewportOf({320, 240}, {200, 200});
  first.turn(3);
  first.setMirrored(true);
  first.zoomTo(5, {20, 30});
  Viewport second = viewportOf({320, 240}, {200, 200});
  second.setState(first.state());
  expectNear(second.toView().map(QPointF(17, 230)), first.toView().map(QPointF(17, 230)), 1e-3);
  first.fit();
  second.setState(first.state());
  EXPECT_TRUE(second.isFitted());
  EXPECT_EQ(second.state(), first.state());
}

TEST(Viewport, TakesNonsenseForAStateAsFarAsItCan) {
  Viewport viewport = viewportOf({320, 240}, {200, 200});
  const double nothing = std::numeric_limits<double>::quiet_NaN();
  viewport.setState({nothing, {0.5, 0.5}, -7, false});
  EXPECT_TRUE(viewport.isFitted());
  EXPECT_EQ(viewport.quarters(), 1);
  viewport.setState({1e300, {nothing, 1e300}, 0, false});
  EXPECT_DOUBLE_EQ(viewport.scale(), Viewport::kMostScale);
  EXPECT_TRUE(std::isfinite(viewport.pictureRect().left()));
}

TEST(Viewport, KeepsItsPlaceWhenThePictureGetsAnotherResolution) {
  Viewport viewport = viewportOf({320, 240}, {320, 240});
  viewport.zoomTo(4, {0, 0});
  const QPointF before = viewport.toPicture().map(QPointF(160, 120)) / 320;
  viewport.setPicture({640, 480});
  expectNear(viewport.toPicture().map(QPointF(160, 120)) / 640, before, 1e-2);
}

}  // namespace
