// SPDX-License-Identifier: Apache-2.0
// A large message in pieces, and whole again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "wire/message.h"
#include "wire/packing.h"

namespace Ky {

// Cuts a message; its bytes are not copied. Thread-bound.
class Cutter {
 public:
  explicit Cutter(Parts message);

  std::size_t left() const { return fLeft; }  // bytes
  // The next piece, of at most `bytes`, but at least one. `before`: bytes of all pieces that went
  // out over the connection before.
  Parts piece(std::size_t bytes, std::uint64_t before) const;
  void sent(const Parts& piece);

 private:
  bool isBegun() const { return fFrame > 0 || fOffset > 0; }

  std::vector<KyBinary> fFrames;  // the first is the packed text
  std::size_t fLeft = 0;
  std::size_t fFrame = 0;   // the first that is not sent whole
  std::size_t fOffset = 0;  // what of it is
};

// Of the message's bytes that a piece brings.
std::size_t bytesOf(const std::vector<KyBinary>& slices);

// What pieces were made of.
struct Joined {
  KyBinary text;
  std::vector<KyBinary> attachments;
};

// Joins the pieces that come in over one connection. Thread-bound.
class Joiner {
 public:
  explicit Joiner(const KyLimits& limits) : fLimits(limits) {}

  // Takes a message of the kind Piece and what came with it. The message of which it is the last;
  // nothing until then. Holds no more than has arrived. Throws KyError for what is no piece of
  // anything, does not follow the piece before, or is of a message beyond the limits: what has been
  // begun is forgotten then.
  std::optional<Joined> add(const Message& piece, std::vector<KyBinary> slices);
  // What has been begun will not be ended.
  void clear();

 private:
  void begin(const KyValue::Array& sizes);
  Joined join();

  const KyLimits fLimits;
  std::uint64_t fPosition = 0;      // of the newest piece
  std::vector<std::size_t> fSizes;  // of the frames
  std::size_t fLeft = 0;            // bytes to come
  std::vector<KyBinary> fSlices;
};

}  // namespace Ky
