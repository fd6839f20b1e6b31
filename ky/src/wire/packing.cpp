// SPDX-License-Identifier: Apache-2.0
#include "wire/packing.h"

#include <bit>
#include <limits>
#include <msgpack.hpp>
#include <optional>

namespace Ky {
namespace {

class Writer {
 public:
  explicit Writer(const KyLimits& limits) : fLimits(limits), fPacker(*this) {}

  // What the packer writes to.
  void write(const char* data, std::size_t size) { fParts.text.append(data, size); }

  Parts finish(const KyValue& value) {
    pack(value, 0);
    return std::move(fParts);
  }

 private:
  void pack(const KyValue& value, int depth);
  void packFloat(double value);
  void packBinary(const KyBinary& binary);
  void packArray(const KyValue::Array& elements, int depth);
  void requireRoom() const;

  const KyLimits& fLimits;
  Parts fParts;
  std::size_t fAttached = 0;  // bytes
  std::size_t fValues = 0;
  msgpack::packer<Writer> fPacker;
};

void Writer::requireRoom() const {
  if (fParts.text.size() > fLimits.packedBytes || fAttached > fLimits.messageBytes ||
      fParts.text.size() + fAttached > fLimits.messageBytes || fValues > fLimits.values)
    throw KyError("the value is too large to be sent: at most " +
                  std::to_string(fLimits.messageBytes) + " bytes in all, " +
                  std::to_string(fLimits.packedBytes) + " without its large binaries, in " +
                  std::to_string(fLimits.values) + " values");
}

void Writer::pack(const KyValue& value, int depth) {
  if (depth > fLimits.depth)
    throw KyError("the value is too deep to be sent: at most " + std::to_string(fLimits.depth) +
                  " arrays inside each other");
  ++fValues;
  switch (value.type()) {
    case KyType::Nothing:
      fPacker.pack_nil();
      break;
    case KyType::Bool:
      value.asBool() ? fPacker.pack_true() : fPacker.pack_false();
      break;
    case KyType::Int:
      fPacker.pack_int64(value.asInt64());
      break;
    case KyType::Float:
      packFloat(value.asDouble());
      break;
    case KyType::String:
      if (value.asString().size() <= fLimits.packedBytes) {
        fPacker.pack_str(static_cast<std::uint32_t>(value.asString().size()));
        fPacker.pack_str_body(value.asString().data(),
                              static_cast<std::uint32_t>(value.asString().size()));
      } else {
        fValues = fLimits.values + 1;
      }
      break;
    case KyType::Binary:
      packBinary(value.asBinary());
      break;
    case KyType::Array:
      packArray(value.asArray(), depth);
      break;
  }
  requireRoom();
}

// By hand: the packer turns whole numbers into ints, and 1.0 must arrive as a float.
void Writer::packFloat(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  char bytes[9] = {static_cast<char>(0xCB)};
  for (int i = 0; i < 8; ++i) bytes[i + 1] = static_cast<char>(bits >> (56 - 8 * i));
  write(bytes, sizeof bytes);
}

void Writer::packBinary(const KyBinary& binary) {
  if (binary.size() <= kInlineBytes) {
    fPacker.pack_bin(static_cast<std::uint32_t>(binary.size()));
    fPacker.pack_bin_body(reinterpret_cast<const char*>(binary.data()),
                          static_cast<std::uint32_t>(binary.size()));
    return;
  }
  const auto index = static_cast<std::uint32_t>(fParts.attachments.size());
  const char bytes[4] = {static_cast<char>(index >> 24), static_cast<char>(index >> 16),
                         static_cast<char>(index >> 8), static_cast<char>(index)};
  fPacker.pack_ext(sizeof bytes, kAttachmentType);
  fPacker.pack_ext_body(bytes, sizeof bytes);
  fParts.attachments.push_back(binary);
  fAttached += binary.size();
}

void Writer::packArray(const KyValue::Array& elements, int depth) {
  if (elements.size() > fLimits.values) {
    fValues = elements.size();
    requireRoom();
  }
  fPacker.pack_array(static_cast<std::uint32_t>(elements.size()));
  for (const KyValue& element : elements) pack(element, depth + 1);
}

// Called by the parser for every element; builds the value and says no to what is too much. The
// names are the parser's.
class Reader {
 public:
  Reader(const std::vector<KyBinary>& attachments, const KyLimits& limits)
      : fAttachments(attachments), fLimits(limits) {}

  // What of the outermost array has come; nothing of what it holds half.
  KyValue::Array begun() const { return fOpen.empty() ? KyValue::Array() : fOpen.front(); }

  KyValue take() {
    if (!fProblem.empty()) throw KyError("malformed value: " + fProblem);
    if (!fRoot) throw KyError("malformed value: it is cut off");
    return std::move(*fRoot);
  }

  bool visit_nil() { return add({}); }
  bool visit_boolean(bool value) { return add(value); }
  bool visit_positive_integer(std::uint64_t value) {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
      return refuse("an integer beyond 63 bits");
    return add(value);
  }
  bool visit_negative_integer(std::int64_t value) { return add(value); }
  bool visit_float32(float value) { return add(value); }
  bool visit_float64(double value) { return add(value); }
  bool visit_str(const char* text, std::uint32_t size) { return add(std::string(text, size)); }
  bool visit_bin(const char* bytes, std::uint32_t size) {
    return add(KyBinary::copyOf(bytes, size));
  }
  bool visit_ext(const char* bytes, std::uint32_t size) {
    // The type stands before the bytes.
    if (size != 5 || bytes[0] != kAttachmentType) return refuse("an unknown extension");
    std::size_t index = 0;
    for (int i = 1; i <= 4; ++i) index = index << 8 | static_cast<unsigned char>(bytes[i]);
    if (index >= fAttachments.size()) return refuse("an attachment that is not there");
    return add(fAttachments[index]);
  }
  bool start_array(std::uint32_t elements) {
    if (fOpen.size() >= static_cast<std::size_t>(fLimits.depth)) return refuse("arrays too deep");
    if (elements > fLimits.values - fValues) return refuse("too many values");
    fOpen.emplace_back();
    fOpen.back().reserve(elements);
    return true;
  }
  bool end_array() {
    KyValue closed(std::move(fOpen.back()));
    fOpen.pop_back();
    return add(std::move(closed));
  }
  bool start_map(std::uint32_t) { return refuse("a map"); }

  bool start_array_item() { return true; }
  bool end_array_item() { return true; }
  bool start_map_key() { return true; }
  bool end_map_key() { return true; }
  bool start_map_value() { return true; }
  bool end_map_value() { return true; }
  bool end_map() { return true; }
  void parse_error(std::size_t, std::size_t) { refuse("no MessagePack"); }
  void insufficient_bytes(std::size_t, std::size_t) { refuse("it is cut off"); }

 private:
  bool add(KyValue value) {
    if (++fValues > fLimits.values) return refuse("too many values");
    if (fOpen.empty())
      fRoot = std::move(value);
    else
      fOpen.back().push_back(std::move(value));
    return true;
  }
  bool refuse(const char* why) {
    if (fProblem.empty()) fProblem = why;
    return false;
  }

  const std::vector<KyBinary>& fAttachments;
  const KyLimits& fLimits;
  std::vector<KyValue::Array> fOpen;  // arrays begun and not ended, outermost first
  std::size_t fValues = 0;
  std::optional<KyValue> fRoot;
  std::string fProblem;
};

}  // namespace

std::size_t Parts::bytes() const {
  std::size_t sum = text.size();
  for (const KyBinary& attachment : attachments) sum += attachment.size();
  return sum;
}

Parts pack(const KyValue& value, const KyLimits& limits) {
  return Writer(limits).finish(value);
}

KyValue unpack(const char* text, std::size_t size, const std::vector<KyBinary>& attachments,
               const KyLimits& limits, KyValue::Array* begun) {
  if (size > limits.packedBytes) throw KyError("malformed value: too many packed bytes");
  Reader reader(attachments, limits);
  std::size_t offset = 0;
  msgpack::parse(text, size, offset, reader);
  if (begun != nullptr) *begun = reader.begun();
  KyValue value = reader.take();
  if (offset != size) throw KyError("malformed value: bytes behind its end");
  return value;
}

}  // namespace Ky
