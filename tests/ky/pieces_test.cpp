// SPDX-License-Identifier: Apache-2.0
#include "wire/pieces.h"

#include <gtest/gtest.h>

#include <random>

using namespace Ky;

namespace {

Message decoded(const Parts& parts) {
  return decode(parts.text.data(), parts.text.size(), parts.attachments, {});
}

std::optional<Joined> add(Joiner& joiner, const Parts& piece) {
  return joiner.add(decoded(piece), piece.attachments);
}

Parts message(std::size_t text, const std::vector<std::size_t>& attachments) {
  std::mt19937 random(7);
  Parts parts;
  for (std::size_t i = 0; i < text; ++i) parts.text += static_cast<char>(random());
  for (const std::size_t size : attachments) {
    std::vector<std::uint8_t> bytes(size);
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    parts.attachments.emplace_back(std::move(bytes));
  }
  return parts;
}

std::string textOf(const KyBinary& binary) {
  return {reinterpret_cast<const char*>(binary.data()), binary.size()};
}

Message pieceOf(KyValue::Array sizes) {
  return pieceMessage(10, std::move(sizes));
}

struct Case {
  std::size_t text;
  std::vector<std::size_t> attachments;
  std::size_t length;
};

class PiecesOf : public testing::TestWithParam<Case> {};

INSTANTIATE_TEST_SUITE_P(Messages, PiecesOf,
                         testing::Values(Case{1, {}, 1}, Case{100, {}, 7}, Case{100, {5000}, 1000},
                                         Case{10, {5000, 1, 4097, 6000}, 4096},
                                         Case{50, {3000}, 3050}, Case{50, {3000}, 50},
                                         Case{3, std::vector<std::size_t>(250, 5), 100000}));

}  // namespace

TEST_P(PiecesOf, AreWholeAgainAtTheOtherEnd) {
  const Parts whole = message(GetParam().text, GetParam().attachments);
  Cutter cutter(whole);
  Joiner joiner({});
  std::optional<Joined> joined;
  std::uint64_t before = 0;
  for (int i = 0; i < 10'000 && cutter.left() > 0; ++i) {
    ASSERT_FALSE(joined);
    const Parts piece = cutter.piece(GetParam().length, before);
    cutter.sent(piece);
    before += bytesOf(piece.attachments);
    joined = add(joiner, piece);
  }
  ASSERT_TRUE(joined);
  EXPECT_EQ(textOf(joined->text), whole.text);
  EXPECT_EQ(joined->attachments, whole.attachments);
}

TEST(Pieces, ThatWereNotSentCanBeCutAgainInAnotherLength) {
  const Parts whole = message(10, {9000});
  Cutter cutter(whole);
  cutter.piece(5000, 0);
  EXPECT_EQ(cutter.left(), 9010U);
  const Parts first = cutter.piece(100, 0);
  cutter.sent(first);
  Joiner joiner({});
  EXPECT_FALSE(add(joiner, first));
  const Parts rest = cutter.piece(100'000, 100);
  const auto joined = add(joiner, rest);
  ASSERT_TRUE(joined);
  EXPECT_EQ(joined->attachments, whole.attachments);
}

TEST(Pieces, AMessageThatIsBegunAnewForgetsTheOneBefore) {
  Joiner joiner({});
  Cutter broken(message(10, {9000}));
  add(joiner, broken.piece(100, 0));
  const Parts whole = message(20, {5000});
  Cutter cutter(whole);
  const auto joined = add(joiner, cutter.piece(100'000, 100));
  ASSERT_TRUE(joined);
  EXPECT_EQ(textOf(joined->text), whole.text);
}

TEST(Pieces, BehindAHoleAreRefusedUntilAMessageBegins) {
  Joiner joiner({});
  Cutter cutter(message(10, {9000}));
  std::vector<Parts> pieces;
  std::uint64_t before = 0;
  while (cutter.left() > 0) {
    pieces.push_back(cutter.piece(3000, before));
    cutter.sent(pieces.back());
    before += bytesOf(pieces.back().attachments);
  }
  ASSERT_EQ(pieces.size(), 4U);
  add(joiner, pieces[0]);
  EXPECT_THROW(add(joiner, pieces[2]), KyError);
  EXPECT_THROW(add(joiner, pieces[3]), KyError);
  Cutter next(message(20, {100}));
  EXPECT_TRUE(add(joiner, next.piece(1000, before + 50)));
}

TEST(Pieces, OfNothingAreRefused) {
  Joiner joiner({});
  const std::vector<KyBinary> tenBytes = {KyBinary::copyOf("0123456789", 10)};
  EXPECT_THROW(joiner.add(pieceOf({}), tenBytes), KyError) << "not begun";
  EXPECT_THROW(joiner.add(pieceOf({9}), tenBytes), KyError) << "too much";
  EXPECT_THROW(joiner.add(pieceOf({}), tenBytes), KyError) << "forgotten";
  EXPECT_THROW(joiner.add(pieceOf({20}), {}), KyError) << "empty";
  EXPECT_THROW(joiner.add(pieceOf({0, 20}), tenBytes), KyError) << "an empty part";
  EXPECT_THROW(joiner.add(pieceOf({-5, 20}), tenBytes), KyError) << "less than nothing";
  EXPECT_THROW(joiner.add(pieceOf({"20"}), tenBytes), KyError) << "no number";
  EXPECT_THROW(joiner.add(pieceOf(KyValue::Array(257, KyValue(1))), tenBytes), KyError) << "parts";
}

TEST(Pieces, OfMoreThanAMessageMayHaveAreRefusedBeforeTheyArrive) {
  Joiner joiner({});
  const std::vector<KyBinary> tenBytes = {KyBinary::copyOf("0123456789", 10)};
  const std::int64_t most = 32 << 20;
  EXPECT_THROW(joiner.add(pieceOf({most + 1}), tenBytes), KyError);
  EXPECT_THROW(joiner.add(pieceOf({most, 1}), tenBytes), KyError);
  EXPECT_THROW(joiner.add(pieceOf({INT64_MAX, INT64_MAX}), tenBytes), KyError);
  EXPECT_NO_THROW(joiner.add(pieceOf({most - 1, 1}), tenBytes));
}
