// SPDX-License-Identifier: Apache-2.0
// What each extractor's result looks like over the picture.
#include <gtest/gtest.h>

#include "tests/viewer/detection/decode.h"

using Ky::KyValue;

namespace {

void expectLooks(const displayObject& item, int diameter, int thickness, int shapeNumber,
                 std::uint32_t colour) {
  EXPECT_EQ(item.diameter, diameter);
  EXPECT_EQ(item.thickness, thickness);
  EXPECT_EQ(item.shape, shapeNumber);
  EXPECT_EQ(item.colour, colour);
}

const char* const kExtractorKeys[] = {"LandmarkDetected", "FaceDetected", "LogoDetected",
                                      "PictureDetected",  "BallDetected", "duck"};

}  // namespace

TEST(FieldOfView, PutsItsEdgesAtTheEdgesOfThePicture) {
  const FieldOfView field{0.46f, -0.35f, -0.46f, 0.35f};
  EXPECT_EQ(field.x(0.46f), 0.0);
  EXPECT_EQ(field.y(-0.35f), 0.0);
  EXPECT_EQ(field.x(-0.46f), 1.0);
  EXPECT_EQ(field.y(0.35f), 1.0);
}

TEST(FieldOfView, DividesInSinglePrecisionAndDoesNotClamp) {
  const FieldOfView field{0.1f, 0.0f, 0.7f, 1.0f};
  EXPECT_EQ(field.x(0.3f), static_cast<double>((0.3f - 0.1f) / (0.7f - 0.1f)));
  EXPECT_LT(field.x(-5.0f), 0.0);
  EXPECT_GT(field.x(5.0f), 1.0);
}

TEST(Decoders, SeeNothingInFewerThanTwoElements) {
  for (const char* key : kExtractorKeys) {
    EXPECT_TRUE(decode(key, KyValue()).empty()) << key;
    EXPECT_TRUE(decode(key, KyValue::array()).empty()) << key;
    EXPECT_TRUE(decode(key, KyValue::array({KyValue::array({1, 2})})).empty()) << key;
    EXPECT_TRUE(decode(key, result({})).empty()) << key;
  }
}

TEST(LandmarkDecoder, DrawsACircleWithTheMarksNumber) {
  const auto items = listed(decode("LandmarkDetected", result({landmark(0.25f, 1.0f, 0.5f, 84)})));
  ASSERT_EQ(items.size(), 1u);
  expectLooks(items[0], 160, 2, 0, 0x0000C8);
  EXPECT_EQ(items[0].x, 0.25);
  EXPECT_EQ(items[0].y, 0.5);
  EXPECT_EQ(items[0].description, "mark 84");
}

TEST(LandmarkDecoder, ScalesATenthOfTheFieldTo32Pixels) {
  const auto items = listed(decode("LandmarkDetected", result({landmark(0, 0, 0.1f, 1)})));
  EXPECT_EQ(items.at(0).diameter, 32);
}

TEST(LandmarkDecoder, CutsTheDiameterAndKeepsItsSign) {
  const FieldOfView mirrored{0.5f, 0.0f, -0.5f, 1.0f};
  const auto items =
      listed(decode("LandmarkDetected", result({landmark(0, 0, 0.128f, 1)}), mirrored));
  EXPECT_EQ(items.at(0).diameter, -40);
}

TEST(LandmarkDecoder, PrintsTheNumberAsTheValueDoes) {
  EXPECT_EQ(descriptions(decode("LandmarkDetected",
                                result({landmark(0, 0, 0, 0.5), landmark(0, 0, 0, "a")}))),
            (std::vector<std::string>{"mark 0.5", "mark \"a\""}));
}

TEST(FaceDecoder, DrawsCrossesCountedFromZeroAndSkipsTheLastEntry) {
  const auto items = listed(
      decode("FaceDetected", result({shape(0.5f, 1.0f), shape(0.75f, 1.5f), KyValue("summary")})));
  ASSERT_EQ(items.size(), 2u);
  expectLooks(items[0], 25, 2, 1, 0x0000C8);
  EXPECT_EQ(items[0].description, "face 0");
  EXPECT_EQ(items[1].description, "face 1");
  EXPECT_EQ(items[1].x, 0.75);
  EXPECT_EQ(items[1].y, 0.75);
}

TEST(LogoDecoder, DrawsCrossesCountedFromZero) {
  const auto items =
      listed(decode("LogoDetected", result({shape(0.5f, 1.0f), shape(0.25f, 0.5f)})));
  ASSERT_EQ(items.size(), 2u);
  expectLooks(items[0], 50, 2, 1, 0x0000C8);
  EXPECT_EQ(items[0].description, "logo 0");
  EXPECT_EQ(items[1].description, "logo 1");
  EXPECT_EQ(items[1].x, 0.25);
  EXPECT_EQ(items[1].y, 0.25);
}

TEST(BallDecoder, DrawsThinCirclesInItsOwnBlueCountedFromOne) {
  const auto items =
      listed(decode("BallDetected", result({ball(0.5f, 1.0f, 10.7f), ball(0.25f, 0.5f, 3)})));
  ASSERT_EQ(items.size(), 2u);
  expectLooks(items[0], 21, 1, 0, 0x0003B6);
  EXPECT_EQ(items[0].x, 0.5);
  EXPECT_EQ(items[0].y, 0.5);
  EXPECT_EQ(items[0].description, "ball 1");
  EXPECT_EQ(items[1].description, "ball 2");
  EXPECT_EQ(items[1].diameter, 6);
}

TEST(DuckDecoder, CrossesTheHeadsCountedFromOne) {
  const auto items = listed(decode("duck", result({duck(0.5f, 1.0f), duck(0.25f, 0.5f)})));
  ASSERT_EQ(items.size(), 2u);
  expectLooks(items[0], 5, 2, 1, 0x0000C8);
  EXPECT_EQ(items[0].x, 0.5);
  EXPECT_EQ(items[0].y, 0.5);
  EXPECT_EQ(items[0].description, "duck head  1");
  EXPECT_EQ(items[1].description, "duck head  2");
}

TEST(DuckDecoder, ComplainsOfTheFirstElementThatIsNoFloat) {
  const struct {
    std::size_t element;
    const char* complaint;
  } kCases[] = {
      {0, "x angle for the center of the head should float"},
      {1, "y angle for the center of the head should float"},
      {3, "x angle for the center of the body should float"},
      {4, "y angle for the center of the body should float"},
      {5, "left angle for the body should float"},
      {6, "top angle for the body should float"},
      {7, "right angle for the body should float"},
      {8, "bottom angle for the body should float"},
  };
  for (const auto& wrong : kCases) {
    // An int is not taken for a float here, and of several wrong elements the first counts.
    auto elements = duck(0.5f, 1.0f).asArray();
    for (std::size_t i = wrong.element; i < elements.size(); ++i) elements[i] = 1;
    Items items;
    try {
      decodeDucks(result({duck(0.5f, 1.0f), elements, duck(0, 0)}), kUnitField, items);
      ADD_FAILURE() << wrong.complaint;
    } catch (const ExtractorComplaint& complaint) {
      EXPECT_STREQ(complaint.what(), wrong.complaint);
    }
    EXPECT_EQ(descriptions(items), std::vector<std::string>{"duck head  1"});
  }
}

TEST(PictureDecoder, StacksTheLabelsBelowTheMiddleOfTheBoundary) {
  const auto items =
      listed(decode("PictureDetected",
                    result({picture({"book", "page 3", "left"},
                                    {KyValue::array({0.25f, 0.5f}), KyValue::array({0.75f, 1.0f}),
                                     KyValue::array({0.5f, 1.5f})})})));
  ASSERT_EQ(items.size(), 3u);
  expectLooks(items[0], 2, 2, 0, 0x0000C8);
  expectLooks(items[1], 0, 0, 0, 0x0000C8);
  expectLooks(items[2], 0, 0, 0, 0x0000C8);
  for (std::size_t line = 0; line < 3; ++line) {
    EXPECT_EQ(items[line].x, 0.5);
    EXPECT_EQ(items[line].y, 0.5 + static_cast<double>(line) * 0.05);
  }
  EXPECT_EQ(items[0].description, "book");
  EXPECT_EQ(items[1].description, "page 3");
  EXPECT_EQ(items[2].description, "left");
}

TEST(PictureDecoder, PutsAPictureWithoutBoundaryAtTheOriginAndOneWithoutLabelsNowhere) {
  const auto items =
      listed(decode("PictureDetected", result({picture({"a"}, {}), picture({}, {})})));
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].x, 0.0);
  EXPECT_EQ(items[0].y, 0.0);
}

TEST(PictureDecoder, KeepsSeveralPicturesApart) {
  const KyValue::Array corner{KyValue::array({0.0f, 0.0f})};
  EXPECT_EQ(descriptions(decode("PictureDetected",
                                result({picture({"a", "b"}, corner), picture({"c"}, corner)}))),
            (std::vector<std::string>{"a", "b", "c"}));
}

TEST(CustomDecoder, DrawsTheNineValuesOfARecord) {
  const auto items = listed(
      decode("myObjects",
             KyValue::array({KyValue::array({0.5, 0.7, 20, 2, 0, 0, 0, 0, "this is a test"})})));
  ASSERT_EQ(items.size(), 1u);
  expectLooks(items[0], 20, 2, 0, 0xFF000000);
  EXPECT_FLOAT_EQ(static_cast<float>(items[0].x), 0.5f);
  EXPECT_FLOAT_EQ(static_cast<float>(items[0].y), 0.7f);
  EXPECT_EQ(items[0].description, "this is a test");
}

TEST(CustomDecoder, CutsTheDiameterAndTakesTheLowBitsOfColours) {
  const auto items = listed(decode(
      "k", KyValue::array({KyValue::array({0, 1, 20.9, 0, 7, 300, -1, 0x1FF, ""}),
                           KyValue::array({2.5, -1, -3.9, -4, -5, 1, 2, 3, "b", "further"})})));
  ASSERT_EQ(items.size(), 2u);
  expectLooks(items[0], 20, 0, 7, 0xFF000000 | 44u << 16 | 0xFF00 | 0xFF);
  expectLooks(items[1], -3, -4, -5, 0xFF010203);
  EXPECT_EQ(items[1].x, 2.5);
  EXPECT_EQ(items[1].y, -1.0);
}

TEST(CustomDecoder, ServesEveryKeyThatIsNoExtractors) {
  for (const char* key : {"DuckDetected", "landmarkdetected", "Duck", "", "BallDetected "})
    EXPECT_EQ(decoderFor(key), &decodeCustomObjects) << key;
}

TEST(Decoders, AreChosenByTheExactKey) {
  EXPECT_EQ(decoderFor("LandmarkDetected"), &decodeLandmarks);
  EXPECT_EQ(decoderFor("FaceDetected"), &decodeFaces);
  EXPECT_EQ(decoderFor("LogoDetected"), &decodeLogos);
  EXPECT_EQ(decoderFor("PictureDetected"), &decodePictures);
  EXPECT_EQ(decoderFor("BallDetected"), &decodeBalls);
  EXPECT_EQ(decoderFor("duck"), &decodeDucks);
}

TEST(CustomDecoder, PaintsInTheOrderOfTheRecords) {
  KyValue::Array records;
  std::vector<std::string> wanted;
  for (int i = 0; i < 1200; ++i) {
    wanted.push_back("n" + std::to_string(i));
    records.push_back(KyValue::array({0, 0, 1, 1, 0, 0, 0, 0, wanted.back()}));
  }
  EXPECT_EQ(descriptions(decode("k", records)), wanted);
}
