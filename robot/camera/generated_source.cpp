// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/generated_source.h"

#include <charconv>
#include <cmath>

#include "ky/error.h"
#include "zu/os.h"

namespace robot {
namespace {

constexpr const char* kWord = "generated";
constexpr double kLastSecond = 253402300799;  // of the year 9999, for the clock

std::optional<std::int64_t> momentIn(const std::string& text) {
  if (text == kWord) return std::nullopt;
  const char* const end = text.data() + text.size();
  double seconds = -1;
  const auto [rest, error] = std::from_chars(text.data() + std::string(kWord).size() + 1, end,
                                             seconds, std::chars_format::fixed);
  if (error != std::errc() || rest != end || !(seconds >= 0 && seconds <= kLastSecond))
    throw Ky::KyError("\"" + text +
                      "\" names no moment; write it in seconds since 1970, such as "
                      "generated:1700000000.5");
  return std::llround(seconds * 1e6);
}

}  // namespace

GeneratedSource::GeneratedSource(const std::string& text, int camera)
    : fName(text), fMoment(momentIn(text)), fScene(camera) {
}

bool GeneratedSource::isMeantBy(const std::string& text) {
  return text == kWord || text.rfind(std::string(kWord) + ":", 0) == 0;
}

SourcePicture GeneratedSource::next() {
  const std::int64_t now = zu::os::nowMicroseconds();
  if (!fMoment) return {fScene.render(now), now};
  if (fStill.empty()) fStill = fScene.render(*fMoment);
  return {fStill, now};
}

}  // namespace robot
