// SPDX-License-Identifier: Apache-2.0
#include "proxies/picture_chain.h"

#include "ky/error.h"

namespace Ky {
namespace {

constexpr std::size_t kPixels = 6;  // their place in a record

}  // namespace

std::optional<KyValue> PictureChain::picture(const KyValue& item) {
  if (!fBroken.empty()) return std::nullopt;
  try {
    const std::int64_t number = item[2].asInt64();
    if (item[4].asInt64() <= 0) throw KyError("a video packet has no bit rate");
    if (number <= fNumber) return std::nullopt;
    KyValue record = decode(item[1], number, item[3].asBool());
    fNumber = number;
    return record;
  } catch (const KyError& error) {
    fBroken = error.what();
    return std::nullopt;
  }
}

void PictureChain::restart() {
  fDecoder.reset();
  fNumber = 0;
  fBroken.clear();
}

KyValue PictureChain::decode(const KyValue& record, std::int64_t number, bool isKey) {
  if (!isKey && number != fNumber + 1)
    throw KyError("packet " + std::to_string(number) + " came after packet " +
                  std::to_string(fNumber) + "; those between are missing");
  if (!fDecoder || isKey) fDecoder = std::make_unique<PictureDecoder>();
  KyValue::Array elements = record.asArray();
  elements.at(kPixels) = fDecoder->decode(record[kPixels].asBinary(), record[0].asInt(),
                                          record[1].asInt(), record[3].asInt());
  return elements;
}

}  // namespace Ky
