// SPDX-License-Identifier: Apache-2.0
#include "wire/pieces.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace Ky {
namespace {

// Of one piece: some frames are tiny.
constexpr std::size_t kMostSlices = 200;
constexpr std::size_t kMostFrames = 256;

KyBinary toBinary(std::string text) {
  const auto owner = std::make_shared<const std::string>(std::move(text));
  return {owner, reinterpret_cast<const std::uint8_t*>(owner->data()), owner->size()};
}

KyBinary slice(const KyBinary& whole, std::size_t offset, std::size_t size) {
  return {whole.owner(), whole.data() + offset, size};
}

}  // namespace

std::size_t bytesOf(const std::vector<KyBinary>& slices) {
  std::size_t bytes = 0;
  for (const KyBinary& part : slices) bytes += part.size();
  return bytes;
}

// ---- cutting

Cutter::Cutter(Parts message) : fLeft(message.bytes()) {
  fFrames.push_back(toBinary(std::move(message.text)));
  for (KyBinary& attachment : message.attachments) fFrames.push_back(std::move(attachment));
}

Parts Cutter::piece(std::size_t bytes, std::uint64_t before) const {
  std::vector<KyBinary> slices;
  std::size_t offset = fOffset;
  for (std::size_t frame = fFrame; frame < fFrames.size() && bytes > 0; ++frame) {
    const std::size_t size = std::min(bytes, fFrames[frame].size() - offset);
    slices.push_back(slice(fFrames[frame], offset, size));
    if (slices.size() == kMostSlices) break;
    bytes -= size;
    offset = 0;
  }
  KyValue::Array sizes;
  if (!isBegun())
    for (const KyBinary& frame : fFrames) sizes.emplace_back(frame.size());
  Parts piece = encode(pieceMessage(before + bytesOf(slices), std::move(sizes)), {});
  piece.attachments = std::move(slices);
  return piece;
}

void Cutter::sent(const Parts& piece) {
  for (const KyBinary& part : piece.attachments) {
    fLeft -= part.size();
    fOffset += part.size();
    if (fOffset < fFrames[fFrame].size()) continue;
    ++fFrame;
    fOffset = 0;
  }
}

// ---- joining

std::optional<Joined> Joiner::add(const Message& piece, std::vector<KyBinary> slices) {
  const auto position = static_cast<std::uint64_t>(piece.fields[0].asInt64());
  const KyValue::Array& sizes = piece.fields[1].asArray();
  const std::size_t bytes = bytesOf(slices);
  const bool isNext = position == fPosition + bytes;
  fPosition = position;
  try {
    if (!sizes.empty()) begin(sizes);
    if (fSizes.empty()) throw KyError("a piece of a message that was not begun");
    // One that begins a message may follow whatever was lost.
    if (sizes.empty() && !isNext) throw KyError("a piece before this one is missing");
    if (bytes == 0 || bytes > fLeft)
      throw KyError("a piece of " + std::to_string(bytes) + " bytes where " +
                    std::to_string(fLeft) + " were left");
  } catch (const KyError&) {
    clear();
    throw;
  }
  fLeft -= bytes;
  for (KyBinary& part : slices) fSlices.push_back(std::move(part));
  return fLeft == 0 ? std::optional(join()) : std::nullopt;
}

void Joiner::clear() {
  fSizes.clear();
  fSlices.clear();
  fLeft = 0;
}

void Joiner::begin(const KyValue::Array& sizes) {
  clear();
  if (sizes.size() > kMostFrames)
    throw KyError("a message of " + std::to_string(sizes.size()) + " parts; " +
                  std::to_string(kMostFrames) + " are possible");
  for (const KyValue& size : sizes) {
    const std::int64_t bytes = size.asInt64();
    const auto room = static_cast<std::int64_t>(fLimits.messageBytes - fLeft);
    if (bytes < 1 || bytes > room)
      throw KyError("a message in pieces of more than " + std::to_string(fLimits.messageBytes) +
                    " bytes, or of less than nothing");
    fSizes.push_back(static_cast<std::size_t>(bytes));
    fLeft += fSizes.back();
  }
}

// A frame that came in one slice is taken as it is.
Joined Joiner::join() {
  std::vector<KyBinary> frames;
  auto next = fSlices.begin();
  std::size_t used = 0;  // of *next
  for (const std::size_t size : fSizes) {
    if (used == 0 && next->size() == size) {
      frames.push_back(*next++);
      continue;
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(size);
    while (bytes.size() < size) {
      const std::size_t count = std::min(size - bytes.size(), next->size() - used);
      bytes.insert(bytes.end(), next->data() + used, next->data() + used + count);
      used += count;
      if (used < next->size()) continue;
      ++next;
      used = 0;
    }
    frames.emplace_back(std::move(bytes));
  }
  clear();
  Joined joined{frames[0], {}};
  joined.attachments.assign(frames.begin() + 1, frames.end());
  return joined;
}

}  // namespace Ky
