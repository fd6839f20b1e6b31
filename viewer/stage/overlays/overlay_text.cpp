// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/overlay_text.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <string_view>

#include "viewer/stage/overlays/overlay_source.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMinute = 60 * kSecond;

struct Name {
  std::string_view key;
  const char* name;
};

constexpr std::array<Name, 7> kNames{{
    {"BallDetected", QT_TRANSLATE_NOOP("StageOverlays", "Balls")},
    {"DuckDetected", QT_TRANSLATE_NOOP("StageOverlays", "Ducks")},
    {"duck", QT_TRANSLATE_NOOP("StageOverlays", "Ducks")},
    {"FaceDetected", QT_TRANSLATE_NOOP("StageOverlays", "Faces")},
    {"LandmarkDetected", QT_TRANSLATE_NOOP("StageOverlays", "Landmarks")},
    {"LogoDetected", QT_TRANSLATE_NOOP("StageOverlays", "Logos")},
    {"PictureDetected", QT_TRANSLATE_NOOP("StageOverlays", "Pictures")},
}};

struct Words {
  Q_DECLARE_TR_FUNCTIONS(StageOverlays)
};

// A long text may have been cut within a character.
QByteArray withoutTornEnd(const std::string& bytes) {
  std::size_t end = bytes.size();
  for (int i = 0; i < 4 && bytes.size() >= kLongestText && end > 0; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[end - 1]);
    if (byte < 0x80) break;
    --end;
    if (byte < 0xC0) continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
    if (bytes.size() - end >= length) end = bytes.size();
    break;
  }
  return {bytes.data(), static_cast<qsizetype>(end)};
}

}  // namespace

QString textOf(const std::string& bytes) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = decoder(withoutTornEnd(bytes));
  if (decoder.hasError())
    text = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
  for (QChar& character : text)
    if (character.category() == QChar::Other_Control ||
        character.category() == QChar::Other_Format || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator)
      character = u' ';
  return text;
}

QString sourceName(const std::string& key) {
  const auto* found =
      std::find_if(kNames.begin(), kNames.end(), [&](const Name& name) { return name.key == key; });
  return found != kNames.end() ? Words::tr(found->name) : textOf(key);
}

QString ageText(std::int64_t age) {
  const double seconds = static_cast<double>(age) / kSecond;
  if (age < 10 * kSecond) return Words::tr("%1 s ago").arg(QLocale().toString(seconds, 'f', 1));
  if (age < 2 * kMinute) return Words::tr("%1 s ago").arg(age / kSecond);
  return Words::tr("%1 min ago").arg(age / kMinute);
}
