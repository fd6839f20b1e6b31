// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/label_places.h"

#include <gtest/gtest.h>

#include <random>

#include "viewer/stage/overlays/taken_cells.h"

namespace {

constexpr QRect kView(0, 0, 640, 480);
constexpr QSize kLabel(60, 16);
constexpr int kGap = 4;

std::vector<LabelPlace> placed(LabelPlaces& places, const std::vector<LabelWish>& wishes) {
  TakenCells taken(kView);
  for (const LabelWish& wish : wishes) taken.take(wish.mark);
  return places.place(wishes, taken, kGap);
}

std::vector<LabelWish> wishesFor(const std::vector<QRectF>& marks) {
  std::vector<LabelWish> wishes;
  for (const QRectF& mark : marks) wishes.push_back({wishes.size(), mark, kLabel});
  return wishes;
}

TEST(TakenCells, KnowWhatTouchesWhatIsTaken) {
  TakenCells taken(QRect(10, 20, 200, 100));
  EXPECT_TRUE(taken.isFree({10, 20, 200, 100}));
  EXPECT_FALSE(taken.isFree({9, 20, 10, 10}));
  EXPECT_FALSE(taken.isFree({200, 20, 11, 10}));
  taken.take({90, 60, 20, 8});
  EXPECT_FALSE(taken.isFree({100, 62, 1, 1}));
  EXPECT_FALSE(taken.isFree({10, 20, 200, 100}));
  EXPECT_FALSE(taken.isFree({60, 50, 31, 20}));
  EXPECT_TRUE(taken.isFree({10, 20, 80, 100}));
  EXPECT_TRUE(taken.isFree({110, 20, 100, 100}));
  EXPECT_TRUE(taken.isFree({10, 20, 200, 40}));
  EXPECT_TRUE(taken.isFree({10, 68, 200, 52}));
}

TEST(TakenCells, LeaveTheMiddleOfARingFree) {
  TakenCells taken(QRect(0, 0, 400, 400));
  taken.takeRing({200, 200}, 95, 105);
  EXPECT_TRUE(taken.isFree({140, 160, 120, 80}));
  EXPECT_TRUE(taken.isFree({0, 0, 120, 120}));
  for (int degrees = 0; degrees < 360; degrees += 5) {
    const double angle = degrees * 3.14159265 / 180;
    for (const double radius : {95.5, 100.0, 104.5})
      EXPECT_FALSE(taken.isFree({static_cast<int>(200 + radius * std::cos(angle)),
                                 static_cast<int>(200 + radius * std::sin(angle)), 1, 1}))
          << degrees << " " << radius;
  }
}

TEST(TakenCells, TakeNothingOfWhatIsOutOfView) {
  TakenCells taken(QRect(0, 0, 400, 400));
  for (const QRectF& rect : {QRectF(-50, 0, 50, 400), QRectF(400, 0, 1e12, 400),
                             QRectF(0, -1e12, 400, 1e12), QRectF(0, 400, 400, 5)})
    taken.take(rect);
  taken.takeRing({-1e9, 0}, 5, 10);
  taken.takeRing({200, 200}, 5000, 1e9);
  EXPECT_TRUE(taken.isFree({0, 0, 400, 400}));
}

TEST(LabelPlaces, AreBesideTheirMarksWhereverThereIsRoom) {
  struct Case {
    QRectF mark;
    QPoint from;  // the mark's middle to the label's: the sign of each counts
  };
  const Case table[] = {
      {{300, 200, 40, 40}, {1, 0}},  {{595, 200, 40, 40}, {-1, 0}}, {{10, 0, 620, 40}, {0, 1}},
      {{10, 440, 620, 40}, {0, -1}}, {{320, 240, 0, 0}, {1, 0}},    {{639, 240, 0, 0}, {-1, 0}},
  };
  for (const Case& one : table) {
    LabelPlaces places;
    const LabelPlace place = placed(places, wishesFor({one.mark})).at(0);
    EXPECT_FALSE(place.isFar);
    EXPECT_FALSE(QRectF(place.rect).intersects(one.mark));
    const QPointF off = QRectF(place.rect).center() - one.mark.center();
    if (one.from.x() != 0) {
      EXPECT_GT(off.x() * one.from.x(), one.mark.width() / 2);
    }
    if (one.from.y() != 0) {
      EXPECT_GT(off.y() * one.from.y(), one.mark.height() / 2);
    }
  }
}

TEST(LabelPlaces, CoverNeitherMarksNorEachOther) {
  std::mt19937 random(5);
  const auto anywhere = [&](int most) { return static_cast<double>(random() % most); };
  for (int round = 0; round < 200; ++round) {
    std::vector<QRectF> marks;
    const int count = 1 + round % 120, size = 5 + round % 60;
    for (int i = 0; i < count; ++i)
      marks.emplace_back(anywhere(640), anywhere(480), 1 + anywhere(size), 1 + anywhere(size));
    LabelPlaces places;
    const auto found = placed(places, wishesFor(marks));
    ASSERT_EQ(found.size(), marks.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (found[i].rect.isNull()) continue;
      EXPECT_TRUE(kView.contains(found[i].rect));
      EXPECT_EQ(found[i].rect.size(), kLabel);
      for (const QRectF& mark : marks) EXPECT_FALSE(QRectF(found[i].rect).intersects(mark));
      for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(found[i].rect.intersects(found[j].rect));
    }
  }
}

TEST(LabelPlaces, AreFoundForAllOfARow) {
  std::vector<QRectF> marks;
  for (int i = 0; i < 20; ++i) marks.emplace_back(30 + 28 * i, 200, 20, 20);
  LabelPlaces places;
  for (const LabelPlace& place : placed(places, wishesFor(marks)))
    EXPECT_FALSE(place.rect.isNull());
}

TEST(LabelPlaces, StayWhereTheyWereWhenTheirMarksMove) {
  std::mt19937 random(5);
  std::vector<QRectF> marks;
  for (int i = 0; i < 60; ++i)
    marks.emplace_back(random() % 560 + 40.0, random() % 420 + 30.0, 12, 12);
  LabelPlaces places;
  auto before = placed(places, wishesFor(marks));
  int jumps = 0;
  for (int step = 0; step < 40; ++step) {
    // All drift together: nothing is in anybody's way that wasn't before.
    for (QRectF& mark : marks) mark.translate(step % 2 == 0 ? 3 : -3, 0);
    const auto now = placed(places, wishesFor(marks));
    for (std::size_t i = 0; i < now.size(); ++i)
      if (!now[i].rect.isNull() && !before[i].rect.isNull() && !now[i].isFar && !before[i].isFar)
        jumps += (now[i].rect.center() - before[i].rect.center()).manhattanLength() > 10 ? 1 : 0;
    before = now;
  }
  EXPECT_LE(jumps, 40);
}

TEST(LabelPlaces, AreNotTakenByOneThatComesLater) {
  const QRectF second(300, 200, 20, 20);
  LabelPlaces places;
  std::vector<LabelWish> wishes = {{2, second, kLabel}};
  const QRect alone = placed(places, wishes).at(0).rect;
  // Its own favourite place is the same.
  wishes.insert(wishes.begin(), {1, {300, 188, 20, 12}, kLabel});
  const auto both = placed(places, wishes);
  EXPECT_EQ(both.at(1).rect, alone);
  EXPECT_FALSE(both.at(0).rect.isNull());
}

TEST(LabelPlaces, StandApartWhereThereIsNoRoomBeside) {
  TakenCells taken(kView);
  taken.take({280, 180, 80, 80});
  LabelPlaces places;
  const LabelPlace place = places.place({{1, {310, 210, 20, 20}, {40, 20}}}, taken, kGap).at(0);
  EXPECT_TRUE(place.isFar);
  EXPECT_FALSE(place.rect.intersects({280, 180, 80, 80}));
  taken.take({0, 0, 640, 480});
  EXPECT_TRUE(places.place({{1, {310, 210, 20, 20}, kLabel}}, taken, kGap).at(0).rect.isNull());
}

TEST(LabelPlaces, AreInsideAMarkThatFillsTheView) {
  TakenCells taken(kView);
  taken.takeRing({320, 240}, 300, 310);
  LabelPlaces places;
  const LabelPlace place = places.place({{1, {10, -70, 620, 620}, kLabel}}, taken, kGap).at(0);
  ASSERT_FALSE(place.rect.isNull());
  EXPECT_FALSE(place.isFar);
}

}  // namespace
