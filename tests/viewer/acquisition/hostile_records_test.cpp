// SPDX-License-Identifier: Apache-2.0
// Image records of a robot that is broken or hostile: the model stays consistent, the log says what
// happened.
#include <gtest/gtest.h>

#include "viewer.h"
#include "viewer/acquisition/yuv_conversion.h"

namespace {

using Lines = std::vector<std::string>;
const Lines kWrongNumber = {"error getNext: Wrong number of elements"};

// Nothing reached the model, and the view was not asked to repaint.
void expectNothingShown(const Viewer& viewer) {
  EXPECT_EQ(viewer.model->fWidth, 160);
  EXPECT_EQ(viewer.model->fHeight, 120);
  EXPECT_EQ(viewer.model->fTimestamp, 0);
  EXPECT_EQ(viewer.pixel(0), 0x96969696U);
  EXPECT_EQ(viewer.gui.fUpdates, 0);
}

// A size that no camera has, or too few pixels: refused with an explanation before it is read.
void expectRefused(const Ky::KyValue& record, const std::string& explanation) {
  Viewer viewer;
  viewer.show(record);
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NE(lines[0].find(explanation), std::string::npos) << lines[0];
  EXPECT_EQ(lines[1], kWrongNumber[0]);
  expectNothingShown(viewer);
}

// A record with one element of a wrong type, which ends the reading.
void expectReadingEnds(Viewer& viewer, std::size_t element, const Ky::KyValue& wrong) {
  Ky::KyValue::Array elements = longer(record(4, 2, 0, pixels(8)), 12).asArray();
  elements[element] = wrong;
  viewer.show(Ky::KyValue(elements));
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 1U) << "element " << element;
  EXPECT_EQ(lines[0].rfind("error getNext: ", 0), 0U) << lines[0];
  EXPECT_EQ(viewer.gui.fUpdates, 1) << "the widget is told all the same";
  EXPECT_EQ(viewer.pixel(0), 0x96969696U) << "no pixel was converted";
}

}  // namespace

TEST(HostileRecord, OfTooFewElementsIsNotShown) {
  for (std::size_t count = 0; count < 7; ++count) {
    Viewer viewer;
    Ky::KyValue::Array elements = record(4, 2, 0, pixels(8)).asArray();
    elements.resize(count);
    viewer.show(Ky::KyValue(elements));
    EXPECT_EQ(viewer.log.lines(), kWrongNumber) << count;
    expectNothingShown(viewer);
  }
}

TEST(HostileRecord, ThatIsNoArrayIsNotShown) {
  for (const Ky::KyValue& value :
       {Ky::KyValue(), Ky::KyValue(7), Ky::KyValue("seven!!"), pixels(7), Ky::KyValue(true)}) {
    Viewer viewer;
    viewer.show(value);
    EXPECT_EQ(viewer.log.lines(), kWrongNumber) << value.toString();
    expectNothingShown(viewer);
  }
}

TEST(HostileRecord, WithASideBeyondTheLargestFrameIsRefused) {
  expectRefused(record(1281, 1, 0, pixels(1281)), "width of 1281");
  expectRefused(record(1, 961, 0, pixels(961)), "height of 961");
  expectRefused(record(1 << 30, 1 << 30, 13, pixels(8)), "width of 1073741824");
  expectRefused(record(std::int64_t{1} << 40, 1, 0, pixels(8)), "width of 1099511627776");
}

TEST(HostileRecord, WithANegativeSideIsRefused) {
  expectRefused(record(-1, 120, 0, pixels(8)), "width of -1");
  expectRefused(record(160, -120, 9, pixels(8)), "height of -120");
  expectRefused(record(-4, -2, 0, pixels(8)), "width of -4");
}

TEST(HostileRecord, WithTooFewPixelsIsRefused) {
  expectRefused(record(1280, 960, 9, pixels(1280 * 960 * 2 - 1)), "2457599 bytes");
  expectRefused(record(160, 120, 9, pixels(0)), "0 bytes");
  expectRefused(record(4, 2, 0, pixels(7)), "7 bytes");
  expectRefused(record(4, 2, 10, pixels(23)), "23 bytes");
}

TEST(HostileRecord, WithTooManyPixelsIsShownWithoutTheRest) {
  Viewer viewer;
  viewer.show(record(4, 2, 0, pixels(1000, 235)));
  EXPECT_TRUE(viewer.log.lines().empty());
  EXPECT_EQ(viewer.pixel(7), 0xFFFEFEFEU);
  EXPECT_EQ(viewer.pixel(8), 0x96969696U);
}

TEST(HostileRecord, OfNoPixelsEmptiesTheFrame) {
  for (const int colorSpace : {0, 9, 10}) {
    Viewer viewer;
    viewer.show(record(0, 0, colorSpace, pixels(0)));
    EXPECT_TRUE(viewer.log.lines().empty());
    EXPECT_EQ(viewer.model->fWidth, 0);
    EXPECT_EQ(viewer.model->fHeight, 0);
    EXPECT_EQ(viewer.pixel(0), 0x96969696U);
    EXPECT_EQ(viewer.gui.fUpdates, 1);
    viewer.show(record(0, 120, colorSpace, pixels(0)));
    viewer.show(record(160, 0, colorSpace, pixels(0)));
    EXPECT_EQ(viewer.model->fWidth, 160);
    EXPECT_EQ(viewer.gui.fUpdates, 3);
  }
}

TEST(HostileRecord, OfAnImpossibleColourSpaceIsNotConverted) {
  for (const int colorSpace : {-1, 1, 11, 13, 255, 256, 1 << 30}) {
    Viewer viewer;
    viewer.show(record(1280, 960, colorSpace, pixels(1)));
    EXPECT_TRUE(viewer.log.lines().empty());
    EXPECT_EQ(viewer.model->fWidth, 1280);
    EXPECT_EQ(viewer.pixel(0), 0x96969696U);
  }
}

TEST(HostileRecord, WithPixelsThatAreNoneChangesNothing) {
  Viewer viewer;
  expectReadingEnds(viewer, 6, "pixels");
  EXPECT_EQ(viewer.model->fWidth, 160);
  EXPECT_EQ(viewer.model->fTimestamp, 0);
}

TEST(HostileRecord, KeepsWhatWasReadBeforeAWrongElement) {
  {
    Viewer viewer;
    expectReadingEnds(viewer, 0, "wide");
    EXPECT_EQ(viewer.model->fWidth, 160);
    EXPECT_EQ(viewer.model->fHeight, 120);
  }
  {
    Viewer viewer;
    expectReadingEnds(viewer, 1, 2.0);
    EXPECT_EQ(viewer.model->fWidth, 4);
    EXPECT_EQ(viewer.model->fHeight, 120);
  }
  {
    Viewer viewer;
    expectReadingEnds(viewer, 3, true);
    EXPECT_EQ(viewer.model->fHeight, 2);
    EXPECT_EQ(viewer.model->fTimestamp, 0);
  }
  {
    Viewer viewer;
    expectReadingEnds(viewer, 5, Ky::KyValue());
    EXPECT_EQ(viewer.model->fTimestamp, 0);
  }
  {
    Viewer viewer;
    expectReadingEnds(viewer, 7, "left");
    EXPECT_EQ(viewer.model->fTimestamp, 1331040000250000);
    EXPECT_EQ(viewer.model->fCamera, 0);
    EXPECT_EQ(viewer.model->fAngles[0], 0.0F);
  }
  {
    Viewer viewer;
    expectReadingEnds(viewer, 10, pixels(1));
    EXPECT_EQ(viewer.model->fCamera, 1);
    EXPECT_EQ(viewer.model->fAngles[1], 0.2F);
    EXPECT_EQ(viewer.model->fAngles[2], 0.0F);
  }
}

TEST(HostileRecord, OfATimeBeyondAllClocksIsShown) {
  Viewer viewer;
  Ky::KyValue::Array elements = record(4, 2, 0, pixels(8)).asArray();
  elements[4] = INT64_MAX;
  elements[5] = INT64_MIN;
  viewer.show(Ky::KyValue(elements));
  EXPECT_EQ(viewer.model->fWidth, 4);
  EXPECT_TRUE(viewer.log.lines().empty());
}

TEST(HostileRecord, DoesNotSpoilTheNextGoodOne) {
  Viewer viewer;
  viewer.show(record(-1, 120, 9, pixels(8)));
  viewer.show(Ky::KyValue("nonsense"));
  viewer.log.clear();
  viewer.show(record(4, 2, 0, pixels(8, 235)));
  EXPECT_TRUE(viewer.log.lines().empty());
  EXPECT_EQ(viewer.model->fWidth, 4);
  EXPECT_EQ(viewer.pixel(7), 0xFFFEFEFEU);
}
