// SPDX-License-Identifier: Apache-2.0
// Whatever a robot writes under a watched key becomes items or a refusal, never a crash.
#include "value_from_bytes.h"
#include "viewer/detection/decoder.h"

namespace {

constexpr const char* kKeys[] = {
    "LandmarkDetected", "FaceDetected", "LogoDetected", "PictureDetected",
    "BallDetected",     "duck",         "custom"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ValueFromBytes bytes(data, size);
  const std::uint8_t choice = bytes.byte();
  const char* key = kKeys[choice % std::size(kKeys)];
  const FieldOfView field =
      choice < 128 ? FieldOfView{0.46f, -0.35f, -0.46f, 0.35f} : FieldOfView{};
  Items items;
  try {
    decoderFor(key)(bytes.value(), field, items);
  } catch (const Ky::KyError&) {
  } catch (const ExtractorComplaint&) {
  }
  return 0;
}
