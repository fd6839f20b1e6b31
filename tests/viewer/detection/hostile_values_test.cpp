// SPDX-License-Identifier: Apache-2.0
// A broken robot can write anything under a watched key.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/viewer/detection/decode.h"

using Ky::KyValue;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

struct Case {
  const char* what;
  const char* key;
  KyValue value;
};

KyValue record(std::size_t wrongElement, KyValue wrong) {
  auto elements = KyValue::array({0.5, 0.5, 20, 2, 0, 1, 2, 3, "text"}).asArray();
  elements[wrongElement] = std::move(wrong);
  return KyValue::array({std::move(elements)});
}

KyValue nested(int depth) {
  KyValue value;
  for (int i = 0; i < depth; ++i) value = KyValue::array({value, value.isNothing() ? 0 : 1});
  return value;
}

std::vector<Case> wrongShapes() {
  std::vector<Case> cases;
  for (const char* key : {"LandmarkDetected", "FaceDetected", "LogoDetected", "PictureDetected",
                          "BallDetected", "duck"}) {
    cases.push_back({"an int", key, 7});
    cases.push_back({"a float", key, kNaN});
    cases.push_back({"a bool", key, true});
    cases.push_back({"a text", key, "text"});
    cases.push_back({"a binary", key, Ky::KyBinary({1, 2, 3})});
    cases.push_back({"entries that are no array", key, KyValue::array({0, 7})});
    cases.push_back({"entries that are a text", key, KyValue::array({0, "text"})});
    cases.push_back({"an entry that is no array", key, result({1, 2})});
    cases.push_back({"an entry that is nothing", key, result({KyValue(), KyValue()})});
    cases.push_back({"an empty entry", key, result({KyValue::array(), KyValue::array()})});
    cases.push_back({"a short entry", key, result({KyValue::array({KyValue::array({1})}), 0})});
    cases.push_back({"nested arrays", key, result({nested(12), nested(12)})});
  }
  cases.push_back(
      {"texts for angles", "LandmarkDetected",
       result({KyValue::array({KyValue::array({0, "a", "b", "c"}), KyValue::array({1})})})});
  cases.push_back({"no mark id", "LandmarkDetected",
                   result({KyValue::array({KyValue::array({0, 1, 1, 1}), KyValue::array()})})});
  cases.push_back({"labels that are no texts", "PictureDetected", result({picture({7}, {})})});
  cases.push_back({"labels that are no array", "PictureDetected",
                   result({KyValue::array({"label", 0, 0, KyValue::array()})})});
  cases.push_back({"points of one number", "PictureDetected",
                   result({picture({"a"}, {KyValue::array({0.5})})})});
  for (const char* key : {"k", "DuckDetected"}) {
    cases.push_back({"nothing", key, KyValue()});
    cases.push_back({"an int", key, 7});
    cases.push_back({"a text", key, "[[0.5,0.5,20,2,0,0,0,0,\"\"]]"});
    cases.push_back({"a record that is no array", key, KyValue::array({7})});
    cases.push_back({"an empty record", key, KyValue::array({KyValue::array()})});
    cases.push_back(
        {"eight elements", key, KyValue::array({KyValue::array({0.5, 0.5, 20, 2, 0, 1, 2, 3})})});
    cases.push_back({"nested arrays", key, KyValue::array({nested(12)})});
    for (std::size_t element = 0; element < 8; ++element)
      cases.push_back({"a text for a number", key, record(element, "7")});
    for (std::size_t element = 3; element < 8; ++element) {
      cases.push_back({"a float for an int", key, record(element, 1.0)});
      cases.push_back({"an int of 33 bits", key, record(element, std::int64_t{1} << 32)});
      cases.push_back(
          {"the least int", key, record(element, std::numeric_limits<std::int64_t>::min())});
    }
    cases.push_back({"a number for a text", key, record(8, 7)});
    cases.push_back({"a binary for a text", key, record(8, Ky::KyBinary({0xFF}))});
  }
  return cases;
}

}  // namespace

TEST(HostileValues, OfTheWrongShapeAreRefusedByEveryDecoder) {
  for (const Case& wrong : wrongShapes()) {
    Items items;
    EXPECT_ANY_THROW(decoderFor(wrong.key)(wrong.value, kUnitField, items))
        << wrong.key << ": " << wrong.what;
    EXPECT_TRUE(items.empty()) << wrong.key << ": " << wrong.what;
  }
}

TEST(HostileValues, LeaveTheEntriesBeforeTheWrongOne) {
  EXPECT_EQ(decode("LogoDetected", result({shape(0, 0)})).size(), 1u);
  Items items;
  EXPECT_ANY_THROW(decodeLogos(result({shape(0, 0), "wrong", shape(0, 0)}), kUnitField, items));
  EXPECT_EQ(descriptions(items), std::vector<std::string>{"logo 0"});

  Items custom;
  const KyValue good = KyValue::array({0, 0, 1, 1, 0, 0, 0, 0, "good"});
  EXPECT_ANY_THROW(
      decodeCustomObjects(KyValue::array({good, KyValue::array({1}), good}), kUnitField, custom));
  EXPECT_EQ(descriptions(custom), std::vector<std::string>{"good"});
}

TEST(HostileValues, NumbersBeyondAllBoundsBecomeTheNearestInt) {
  const struct {
    double number;
    int diameter;
  } kCases[] = {{kNaN, 0},
                {kInfinity, std::numeric_limits<int>::max()},
                {-kInfinity, std::numeric_limits<int>::min()},
                {1e300, std::numeric_limits<int>::max()},
                {-3e9, std::numeric_limits<int>::min()}};
  for (const auto& [number, diameter] : kCases) {
    EXPECT_EQ(listed(decode("k", record(2, number))).at(0).diameter, diameter);
    const auto radius = static_cast<float>(number);
    EXPECT_EQ(listed(decode("BallDetected", result({ball(0, 0, radius)}))).at(0).diameter,
              diameter);
    EXPECT_EQ(
        listed(decode("LandmarkDetected", result({landmark(0, 0, radius, 1)}))).at(0).diameter,
        diameter);
  }
}

TEST(HostileValues, AnIntBeyondAllPicturesIsAPlaceLikeAnyOther) {
  const auto items = listed(decode("k", record(0, std::numeric_limits<std::int64_t>::max())));
  EXPECT_GT(items.at(0).x, 9e18);
}

TEST(HostileValues, AFieldOfViewWithoutExtentIsNoDisaster) {
  const FieldOfView none{};
  EXPECT_EQ(decode("LandmarkDetected", result({landmark(1, 1, 1, 1)}), none).size(), 1u);
  EXPECT_EQ(listed(decode("LandmarkDetected", result({landmark(0, 0, 0, 1)}), none)).at(0).diameter,
            0);
  EXPECT_EQ(decode("BallDetected", result({ball(0, 0, 1)}), none).size(), 1u);
  const auto pictures =
      listed(decode("PictureDetected", result({picture({"a"}, {KyValue::array({0, 0})})}), none));
  EXPECT_EQ(pictures.at(0).x, 0.0);
}

TEST(HostileValues, TextsAreKeptAsTheyAre) {
  const std::string invalid = "\xFF\xFE\xC0 \xED\xA0\x80";
  EXPECT_EQ(listed(decode("k", record(8, invalid))).at(0).description, invalid);
  const std::string nul("a\0b", 3);
  EXPECT_EQ(listed(decode("k", record(8, nul))).at(0).description, nul);
  const std::string long_(4 << 20, 'x');
  EXPECT_EQ(listed(decode("k", record(8, long_))).at(0).description, long_);
  EXPECT_EQ(descriptions(decode("PictureDetected", result({picture({invalid, long_}, {})}))),
            (std::vector<std::string>{invalid, long_}));
}

TEST(HostileValues, ManyEntriesAreDecodedLikeFew) {
  KyValue::Array entries(20000, shape(0.5f, 0.5f));
  EXPECT_EQ(decode("LogoDetected", result(entries)).size(), entries.size());
}
