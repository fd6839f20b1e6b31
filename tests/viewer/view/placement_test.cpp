// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/placement.h"

#include <gtest/gtest.h>

namespace {

struct Case {
  int width, height;
  bool scaled;
  QSize picture;
  QPoint origin;
  QRect timestamp, date, note;
};

// From left, top, right and bottom, all inclusive.
QRect box(int left, int top, int right, int bottom) {
  return QRect(QPoint(left, top), QPoint(right, bottom));
}

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.width << " x " << c.height;
}

class PlacementTable : public testing::TestWithParam<Case> {};

TEST_P(PlacementTable, SaysWhereEverythingStands) {
  const Case& expected = GetParam();
  const Placement placement = placementFor(expected.width, expected.height);
  EXPECT_EQ(placement.scaled, expected.scaled);
  EXPECT_EQ(placement.pictureSize, expected.picture);
  EXPECT_EQ(placement.origin, expected.origin);
  EXPECT_EQ(placement.timestampLine, expected.timestamp);
  EXPECT_EQ(placement.dateLine, expected.date);
  EXPECT_EQ(placement.noteLine, expected.note);
}

INSTANTIATE_TEST_SUITE_P(Frames, PlacementTable,
                         testing::Values(Case{160,
                                              120,
                                              true,
                                              {320, 240},
                                              {160, 120},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         Case{160,
                                              100,
                                              true,
                                              {320, 200},
                                              {160, 140},
                                              box(160, 340, 479, 369),
                                              box(160, 355, 479, 384),
                                              box(160, 395, 479, 434)},
                                         Case{320,
                                              240,
                                              false,
                                              {320, 240},
                                              {160, 120},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         Case{320,
                                              241,
                                              false,
                                              {320, 241},
                                              {160, 119},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         // Taller than the view: towards zero, not downwards.
                                         Case{320,
                                              483,
                                              false,
                                              {320, 483},
                                              {160, -1},
                                              box(160, 481, 479, 510),
                                              box(160, 496, 479, 525),
                                              box(160, 536, 479, 575)},
                                         Case{640,
                                              480,
                                              true,
                                              {320, 240},
                                              {160, 120},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         Case{640,
                                              240,
                                              true,
                                              {320, 120},
                                              {160, 180},
                                              box(160, 300, 479, 329),
                                              box(160, 315, 479, 344),
                                              box(160, 355, 479, 394)},
                                         // Halves are kept until the end: 120.5 below, 359.5 above.
                                         Case{640,
                                              481,
                                              true,
                                              {320, 240},
                                              {160, 119},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         Case{640,
                                              478,
                                              true,
                                              {320, 239},
                                              {160, 120},
                                              box(160, 359, 479, 388),
                                              box(160, 374, 479, 403),
                                              box(160, 414, 479, 453)},
                                         Case{1280,
                                              960,
                                              true,
                                              {320, 240},
                                              {160, 120},
                                              box(160, 360, 479, 389),
                                              box(160, 375, 479, 404),
                                              box(160, 415, 479, 454)},
                                         Case{800,
                                              600,
                                              true,
                                              {200, 150},
                                              {220, 165},
                                              box(220, 315, 419, 344),
                                              box(220, 330, 419, 359),
                                              box(220, 370, 419, 409)},
                                         Case{322,
                                              242,
                                              true,
                                              {80, 60},
                                              {279, 209},
                                              box(279, 270, 358, 299),
                                              box(279, 285, 358, 314),
                                              box(279, 325, 358, 364)},
                                         Case{3,
                                              2,
                                              true,
                                              {1, 1},
                                              {319, 239},
                                              box(319, 240, 319, 269),
                                              box(319, 255, 319, 284),
                                              box(319, 295, 319, 334)}));

}  // namespace
